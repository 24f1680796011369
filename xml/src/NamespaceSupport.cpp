#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include <algorithm>
#include <utility>

namespace Tamo::XML {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

} // namespace

NamespaceSupport::NamespaceSupport() {
    _bindings.reserve(4);
    _contexts.reserve(4);
    clear();
}

void NamespaceSupport::reset() {
    if (_bindings.size() > MOST_KEPT) {
        clear();
        return;
    }
    while (_count > 1) {
        removeLast();
    }
    _contexts.assign(1, Context{1, 0, 0});
    _state = _bindings[0].stateAfter;
    _lowestChange = NONE;
}

// Nothing but `xml`, which no context has declared. Numbers of states are never used again.
void NamespaceSupport::clear() {
    _prefixes.clear();
    _uris.clear();
    _otherUses.clear();
    _bindings.clear();
    _count = 0;
    _state = ++_lastState;
    _lowestChange = NONE;
    _prefixes.intern({});
    _contexts.assign(1, Context{0, 0, 0});
    append(XML_NAMESPACE_PREFIX, XML_NAMESPACE, NONE);
    _contexts.back().first = 1;
}

void NamespaceSupport::popDeclaring() {
    tamo_assert(_contexts.size() > 1);
    const std::size_t first = _contexts.back().first;
    while (_count > first) {
        removeLast();
    }
    _contexts.pop_back();
}

bool NamespaceSupport::declarePrefix(const std::string& prefix, const std::string& uri) {
    if (prefix == XML_NAMESPACE_PREFIX) {
        return false;
    }
    const UInt32 i = findPrefix(prefix);
    if (i == NONE || i < first()) {
        append(prefix, uri, i);
        return true;
    }
    Binding& binding = _bindings[i];
    if (_uris.text(binding.uri) != uri) {
        const StringPool::Id changed = _uris.intern(uri);
        removeUse(i);
        _uris.release(std::exchange(binding.uri, changed));
        addUse(i);
        binding.stateAfter = ++_lastState;
        if (i + 1 == _count) {
            _state = binding.stateAfter;
        } else {
            changedBelow(i);
        }
    }
    return true;
}

bool NamespaceSupport::undeclarePrefix(const std::string& prefix) {
    const UInt32 i = findPrefix(prefix);
    if (i == NONE || i < first()) {
        return false;
    }
    Context& context = _contexts.back();
    if (i + 1 != _count) {
        remove(i);
        ++context.dead;
        // Long alternation of declaring and undeclaring in one context must not fill it with dead bindings.
        if (context.dead > 8 && context.dead > (_count - context.first) / 2) {
            compact();
        }
        return true;
    }
    removeLast();
    while (_count > context.first && !_bindings[_count - 1].live) {
        removeLast();
        --context.dead;
    }
    return true;
}

bool NamespaceSupport::isDeclared(std::string_view prefix) const {
    const UInt32 i = findPrefix(prefix);
    return i != NONE && i >= first();
}

const std::string& NamespaceSupport::getURI(std::string_view prefix) const {
    const UInt32 i = findPrefix(prefix);
    return i == NONE ? EMPTY : _uris.text(_bindings[i].uri);
}

const std::string& NamespaceSupport::getPrefix(const std::string& uri) const {
    if (uri.empty() || getURI(std::string_view()) == uri) {
        return EMPTY;
    }
    return getAttributePrefix(uri);
}

const std::string& NamespaceSupport::getAttributePrefix(const std::string& uri) const {
    const StringPool::Id id = uri.empty() ? NONE : _uris.find(uri);
    const UInt32 i = id == NONE ? NONE : _uris.mark(id);
    return i == NONE ? EMPTY : _prefixes.text(_bindings[i].prefix);
}

bool NamespaceSupport::isMapped(const std::string& uri) const {
    const StringPool::Id id = _uris.find(uri);
    const UInt32 i = _prefixes.mark(NO_PREFIX);
    return id != NONE && (_uris.mark(id) != NONE || (i != NONE && _bindings[i].uri == id));
}

std::vector<std::string> NamespaceSupport::getDeclaredPrefixes() const {
    std::vector<std::string> prefixes;
    visitDeclared([&](const std::string& prefix, const std::string&) { prefixes.push_back(prefix); });
    return prefixes;
}

UInt32 NamespaceSupport::findPrefix(std::string_view prefix) const {
    if (prefix.empty()) {
        return _prefixes.mark(NO_PREFIX);
    }
    const StringPool::Id id = _prefixes.find(prefix);
    return id == NONE ? NONE : _prefixes.mark(id);
}

void NamespaceSupport::append(std::string_view prefix, std::string_view uri, UInt32 outer) {
    Context& context = _contexts.back();
    if (context.emptyAbove != 0) { // the current one, which declares something now
        _contexts.push_back({static_cast<UInt32>(_count), 0, 0});
        --_contexts[_contexts.size() - 2].emptyAbove;
    }
    if (_count == _bindings.size()) {
        _bindings.emplace_back();
    }
    Binding& binding = _bindings[_count];
    const bool isKnown = binding.stateBefore == _state && _prefixes.text(binding.prefix) == prefix &&
                         _uris.text(binding.uri) == uri;
    if (!isKnown) {
        binding.stateBefore = 0; // should there be no memory
        for (auto [pPool, pId, text] :
             {std::tuple{&_prefixes, &binding.prefix, prefix}, std::tuple{&_uris, &binding.uri, uri}}) {
            const StringPool::Id id = pPool->intern(text);
            if (*pId != NONE) {
                pPool->release(*pId);
            }
            *pId = id;
        }
        binding.stateAfter = ++_lastState;
        binding.stateBefore = _state;
    }
    binding.outer = outer;
    binding.changes = _changes;
    binding.live = true;
    bind(static_cast<UInt32>(_count));
    ++_count;
    _state = binding.stateAfter;
}

void NamespaceSupport::removeLast() {
    const auto last = static_cast<UInt32>(_count - 1);
    const Binding& binding = _bindings[last];
    if (binding.live) {
        unbind(last);
        // What was below has perhaps changed since.
        _state = binding.changes != _changes && last > _lowestChange ? ++_lastState : binding.stateBefore;
    }
    --_count;
    if (_lowestChange != NONE && _count <= _lowestChange + 1) {
        _lowestChange = NONE;
    }
}

// A binding that has others above it.
void NamespaceSupport::remove(UInt32 i) {
    unbind(i);
    _bindings[i].live = false;
    changedBelow(i);
}

// A binding that has others above it has changed: what these stood upon is no more.
void NamespaceSupport::changedBelow(UInt32 i) {
    ++_changes;
    _lowestChange = std::min(_lowestChange, i);
    _state = ++_lastState;
}

void NamespaceSupport::compact() {
    Context& context = _contexts.back();
    auto to = static_cast<UInt32>(context.first);
    for (auto from = to; from < _count; ++from) {
        if (_bindings[from].live) {
            if (to != from) {
                removeUse(from);
                std::swap(_bindings[to], _bindings[from]);
                _prefixes.mark(_bindings[to].prefix) = to;
                addUse(to);
            }
            ++to;
        }
    }
    _count = to;
    context.dead = 0;
    changedBelow(context.first - 1);
}

// A binding that comes into force takes the place of the one that it hides.
void NamespaceSupport::bind(UInt32 i) {
    addUse(i);
    if (_bindings[i].outer != NONE) {
        removeUse(_bindings[i].outer);
    }
    _prefixes.mark(_bindings[i].prefix) = i;
}

void NamespaceSupport::unbind(UInt32 i) {
    removeUse(i);
    _prefixes.mark(_bindings[i].prefix) = _bindings[i].outer;
    if (_bindings[i].outer != NONE) {
        addUse(_bindings[i].outer);
    }
}

void NamespaceSupport::addUse(UInt32 i) {
    const Binding& binding = _bindings[i];
    if (binding.prefix == NO_PREFIX) {
        return;
    }
    UInt32& last = _uris.mark(binding.uri);
    if (last == NONE) {
        last = i;
    } else {
        _otherUses.emplace(binding.uri, std::min(last, i));
        last = std::max(last, i);
    }
}

void NamespaceSupport::removeUse(UInt32 i) {
    const Binding& binding = _bindings[i];
    if (binding.prefix == NO_PREFIX) {
        return;
    }
    UInt32& last = _uris.mark(binding.uri);
    if (last != i) {
        _otherUses.erase({binding.uri, i});
        return;
    }
    last = NONE;
    if (!_otherUses.empty()) {
        auto it = _otherUses.upper_bound({binding.uri, NONE});
        if (it != _otherUses.begin() && (--it)->first == binding.uri) {
            last = it->second;
            _otherUses.erase(it);
        }
    }
}

} // namespace Tamo::XML
