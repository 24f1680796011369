#include "NameCache.h"
#include "Tamo/Hash.h"
#include <algorithm>

namespace Tamo::XML {

const NameCache::QName& NameCache::find(std::string_view key) {
    const std::size_t h = hash(key);
    for (std::size_t i = 0; i < MAX_PROBES; ++i) {
        std::unique_ptr<QName>& slot = _slots[(h + i) & (_slots.size() - 1)];
        if (!slot) {
            if (key.size() > MAX_KEY) {
                break;
            }
            if (_used >= _slots.size() / 2 && _slots.size() < MAX_SLOTS) {
                grow();
                return find(key);
            }
            slot = std::make_unique<QName>();
            split(key, *slot);
            ++_used;
            return *slot;
        }
        if (equalText(slot->key, key)) {
            return *slot;
        }
    }
    ++_spilled;
    split(key, _spill.emplace_back());
    return _spill.back();
}

std::size_t NameCache::hash(std::string_view key) {
    // Names differ at their end: the namespace name comes first and is often long. Should many names share
    // their last octets and their length, find() looks at MAX_PROBES of them and no more.
    constexpr std::size_t TAIL = 24;
    return Tamo::hash(key.substr(key.size() - std::min(key.size(), TAIL))) + key.size();
}

void NameCache::split(std::string_view key, QName& name) const {
    name.key = key;
    if (!_namespaces) {
        name.qname = key;
        return;
    }
    std::string_view rest = key;
    const std::size_t endOfURI = rest.find(SEPARATOR);
    if (endOfURI != std::string_view::npos) {
        name.uri = rest.substr(0, endOfURI);
        rest.remove_prefix(endOfURI + 1);
    }
    const std::size_t endOfName = rest.find(SEPARATOR);
    if (endOfName == std::string_view::npos) {
        name.localName = rest;
        name.qname = rest;
    } else {
        name.localName = rest.substr(0, endOfName);
        name.qname.append(rest.substr(endOfName + 1)).append(1, ':').append(name.localName);
    }
}

void NameCache::grow() {
    std::vector<std::unique_ptr<QName>> old(_slots.size() * 2);
    old.swap(_slots);
    for (std::unique_ptr<QName>& pName : old) {
        // The current event may be using the entries, so they keep their addresses; one that finds no place
        // in the larger table stays alive until the next event.
        if (!pName) {
            continue;
        }
        const std::size_t h = hash(pName->key);
        std::size_t i = 0;
        while (i < MAX_PROBES && _slots[(h + i) & (_slots.size() - 1)]) {
            ++i;
        }
        if (i < MAX_PROBES) {
            _slots[(h + i) & (_slots.size() - 1)] = std::move(pName);
        } else {
            _displaced.push_back(std::move(pName));
            --_used;
        }
    }
}

void NameCache::endSpill() {
    _spill.clear();
    _displaced.clear();
    if (_spilled > MAX_SPILLED) {
        for (std::unique_ptr<QName>& pName : _slots) {
            pName.reset();
        }
        _used = 0;
        _spilled = 0;
    }
}

} // namespace Tamo::XML
