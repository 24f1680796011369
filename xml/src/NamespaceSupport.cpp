#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/Bugcheck.h"
#include <functional>
#include <utility>

namespace Tamo::XML {

namespace {

const std::string EMPTY;

std::size_t bucket(std::string_view text, std::size_t buckets) {
    return std::hash<std::string_view>()(text) & (buckets - 1);
}

} // namespace

NamespaceSupport::NamespaceSupport() {
    _bindings.reserve(4);
    _contexts.reserve(16);
    reset();
}

void NamespaceSupport::reset() {
    _count = 0;
    _prefixHeads.clear();
    _uriHeads.clear();
    _contexts.clear();
    append(XML_NAMESPACE_PREFIX, XML_NAMESPACE, NONE);
    _contexts.push_back({1, 0}); // behind `xml`, which no context has declared
}

void NamespaceSupport::removeContext() {
    const std::size_t first = _contexts.back().first;
    while (_count > first) {
        removeLast();
    }
}

bool NamespaceSupport::declarePrefix(const std::string& prefix, const std::string& uri) {
    if (prefix == XML_NAMESPACE_PREFIX) {
        return false;
    }
    const UInt32 i = findPrefix(prefix);
    if (i != NONE && i >= _contexts.back().first) {
        if (_bindings[i].uri != uri) {
            unlink(i);
            _bindings[i].uri = uri;
            link(i);
            changeStates(i, _bindings[i].stateBefore);
        }
    } else {
        append(prefix, uri, i);
    }
    return true;
}

bool NamespaceSupport::undeclarePrefix(const std::string& prefix) {
    const UInt32 i = findPrefix(prefix);
    Context& context = _contexts.back();
    if (i == NONE || i < context.first) {
        return false;
    }
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
    return i != NONE && i >= _contexts.back().first;
}

const std::string& NamespaceSupport::getURI(std::string_view prefix) const {
    const UInt32 i = findPrefix(prefix);
    return i == NONE ? EMPTY : _bindings[i].uri;
}

const std::string& NamespaceSupport::getPrefix(const std::string& uri) const {
    if (uri.empty() || getURI(std::string_view()) == uri) {
        return EMPTY;
    }
    return getAttributePrefix(uri);
}

const std::string& NamespaceSupport::getAttributePrefix(const std::string& uri) const {
    const UInt32 i = uri.empty() ? NONE : findURI(uri, true);
    return i == NONE ? EMPTY : _bindings[i].prefix;
}

bool NamespaceSupport::isMapped(const std::string& uri) const {
    return findURI(uri, false) != NONE;
}

std::vector<std::string> NamespaceSupport::getDeclaredPrefixes() const {
    std::vector<std::string> prefixes;
    visitDeclared([&](const std::string& prefix, const std::string&) { prefixes.push_back(prefix); });
    return prefixes;
}

UInt32 NamespaceSupport::findPrefix(std::string_view prefix) const {
    if (!indexed()) {
        for (std::size_t i = _count; i-- > 0;) {
            if (_bindings[i].live && _bindings[i].prefix == prefix) {
                return static_cast<UInt32>(i);
            }
        }
        return NONE;
    }
    UInt32 i = _prefixHeads[bucket(prefix, _prefixHeads.size())];
    while (i != NONE && _bindings[i].prefix != prefix) {
        i = _bindings[i].nextPrefix;
    }
    return i;
}

UInt32 NamespaceSupport::findURI(const std::string& uri, bool nonEmptyPrefix) const {
    const auto matches = [&](const Binding& binding) {
        return binding.live && binding.inForce && binding.uri == uri &&
               !(nonEmptyPrefix && binding.prefix.empty());
    };
    if (!indexed()) {
        for (std::size_t i = _count; i-- > 0;) {
            if (matches(_bindings[i])) {
                return static_cast<UInt32>(i);
            }
        }
        return NONE;
    }
    UInt32 i = _uriHeads[bucket(uri, _uriHeads.size())];
    while (i != NONE && !matches(_bindings[i])) {
        i = _bindings[i].nextURI;
    }
    return i;
}

void NamespaceSupport::append(const std::string& prefix, const std::string& uri, UInt32 outer) {
    if (_count == _bindings.size()) {
        _bindings.emplace_back();
    }
    Binding& binding = _bindings[_count];
    if (binding.stateBefore != _state || binding.prefix != prefix || binding.uri != uri) {
        binding.stateBefore = 0; // should a copy fail
        binding.prefix = prefix;
        binding.uri = uri;
        binding.stateAfter = ++_lastState;
        binding.stateBefore = _state;
    }
    binding.outer = outer;
    binding.live = true;
    binding.inForce = true;
    if (outer != NONE) {
        _bindings[outer].inForce = false;
    }
    ++_count;
    _state = binding.stateAfter;
    if (indexed() && _count <= _prefixHeads.size()) {
        link(static_cast<UInt32>(_count - 1));
    } else if (_count > SCAN_LIMIT) {
        rebuildIndex();
    }
}

void NamespaceSupport::removeLast() {
    const UInt32 last = static_cast<UInt32>(_count - 1);
    const Binding& binding = _bindings[last];
    if (binding.live) {
        unlink(last);
        if (binding.outer != NONE) {
            _bindings[binding.outer].inForce = true;
        }
        _state = binding.stateBefore;
    }
    --_count;
    if (indexed() && _count < SCAN_LIMIT / 2) {
        _prefixHeads.clear();
        _uriHeads.clear();
    }
}

// A binding that has others behind it.
void NamespaceSupport::remove(UInt32 i) {
    Binding& binding = _bindings[i];
    unlink(i);
    binding.live = false;
    if (binding.outer != NONE) {
        _bindings[binding.outer].inForce = true;
    }
    changeStates(i + 1, binding.stateBefore);
}

// The bindings from i on follow a state that they did not follow before.
void NamespaceSupport::changeStates(std::size_t i, UInt64 stateBefore) {
    _state = stateBefore;
    for (; i < _count; ++i) {
        Binding& binding = _bindings[i];
        if (binding.live) {
            binding.stateBefore = _state;
            binding.stateAfter = ++_lastState;
            _state = binding.stateAfter;
        }
    }
}

void NamespaceSupport::compact() {
    Context& context = _contexts.back();
    std::size_t to = context.first;
    for (std::size_t from = context.first; from < _count; ++from) {
        if (_bindings[from].live) {
            if (to != from) {
                std::swap(_bindings[to], _bindings[from]);
            }
            ++to;
        }
    }
    _count = to;
    context.dead = 0;
    if (indexed()) {
        rebuildIndex();
    }
}

void NamespaceSupport::link(UInt32 i) {
    if (indexed()) {
        UInt32& prefixes = prefixHead(_bindings[i].prefix);
        _bindings[i].nextPrefix = std::exchange(prefixes, i);
        UInt32& uris = uriHead(_bindings[i].uri);
        _bindings[i].nextURI = std::exchange(uris, i);
    }
}

void NamespaceSupport::unlink(UInt32 i) {
    if (indexed()) {
        UInt32* pPrefix = &prefixHead(_bindings[i].prefix);
        while (*pPrefix != i) {
            pPrefix = &_bindings[*pPrefix].nextPrefix;
        }
        *pPrefix = _bindings[i].nextPrefix;
        UInt32* pURI = &uriHead(_bindings[i].uri);
        while (*pURI != i) {
            pURI = &_bindings[*pURI].nextURI;
        }
        *pURI = _bindings[i].nextURI;
    }
}

void NamespaceSupport::rebuildIndex() {
    std::size_t buckets = 64;
    while (buckets < _count * 2) {
        buckets *= 2;
    }
    _prefixHeads.assign(buckets, NONE);
    _uriHeads.assign(buckets, NONE);
    for (std::size_t i = 0; i < _count; ++i) {
        if (_bindings[i].live) {
            link(static_cast<UInt32>(i));
        }
    }
}

UInt32& NamespaceSupport::prefixHead(std::string_view prefix) {
    return _prefixHeads[bucket(prefix, _prefixHeads.size())];
}

UInt32& NamespaceSupport::uriHead(const std::string& uri) {
    return _uriHeads[bucket(uri, _uriHeads.size())];
}

} // namespace Tamo::XML
