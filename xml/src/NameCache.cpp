#include "NameCache.h"
#include "Tamo/Export.h"
#include "Tamo/Hash.h"
#include <algorithm>

namespace Tamo::XML {

TAMO_CONSTINIT const std::string NameCache::QName::NO_URI;

NameCache::QName* NameCache::find(std::string_view key, UInt64 scope) {
    const std::size_t h = hash(key, scope);
    for (std::size_t i = 0; i < MAX_PROBES; ++i) {
        QName*& pSlot = _slots[(h + i) & (_slots.size() - 1)];
        if (!pSlot) {
            if (key.size() > MAX_KEY) {
                return nullptr;
            }
            if (_used >= _slots.size() / 2 && _slots.size() < MAX_SLOTS) {
                grow();
                return find(key, scope);
            }
            QName& name = _names.emplace_back();
            char* const pKey = static_cast<char*>(_memory.allocate(key.size() + 1, 1));
            pKey[key.copy(pKey, key.size())] = '\0';
            name._pKey = pKey;
            name._keySize = key.size();
            name._scope = scope;
            fill(key, name);
            ++_used;
            pSlot = &name;
            return pSlot;
        }
        if (pSlot->_scope == scope && equalText({pSlot->_pKey, pSlot->_keySize}, key)) {
            return pSlot;
        }
    }
    if (key.size() <= MAX_KEY && _slots.size() < MAX_SLOTS && _used >= _slots.size() / 8) {
        grow();
        return find(key, scope);
    }
    return nullptr;
}

const NameCache::QName& NameCache::spill(std::string_view key, UInt64 scope) {
    ++_spilled;
    QName& name = _spill.emplace_back();
    name._scope = scope;
    fill(key, name);
    return name;
}

std::size_t NameCache::hash(std::string_view key, UInt64 scope) {
    // Names differ at their end: the namespace name comes first and is often long. Should many names share
    // their last octets and their length, find() looks at MAX_PROBES of them and no more.
    constexpr std::size_t TAIL = 24;
    const std::string_view tail = key.substr(key.size() - std::min(key.size(), TAIL));
    return static_cast<std::size_t>(
        ((Tamo::hash(tail) + key.size()) ^ scope * 0x9E3779B97F4A7C15) * 0xD6E8FEB86659FD93 >> 32);
}

void NameCache::fill(std::string_view key, QName& name) {
    if (name._scope == AS_DELIVERED) {
        split(key, name);
    } else {
        resolve(key, name);
    }
    name._octets =
        DeliveryLimits::CALLBACK + name.uri().size() + name._localName.size() + name.qname().size();
}

void NameCache::split(std::string_view key, QName& name) {
    if (_keys == Keys::QUALIFIED_NAMES) {
        name._ownQName = key;
        return;
    }
    std::string_view rest = key;
    const std::size_t endOfURI = rest.find(SEPARATOR);
    if (endOfURI != std::string_view::npos) {
        setURI(rest.substr(0, endOfURI), name);
        rest.remove_prefix(endOfURI + 1);
    }
    const std::size_t endOfName = rest.find(SEPARATOR);
    if (endOfName == std::string_view::npos) {
        name._localName = rest;
        name._pQName = &name._localName;
    } else {
        name._localName = rest.substr(0, endOfName);
        name._ownQName.append(rest.substr(endOfName + 1)).append(1, ':').append(name._localName);
    }
}

// A raw name.
void NameCache::resolve(std::string_view key, QName& name) {
    const std::size_t colon = key.find(':');
    if (colon == std::string_view::npos) {
        name._localName = key;
        name._pQName = &name._localName;
        if (name._scope == _elementScope) {
            setURI(_pBindings->getURI(std::string_view()), name);
        }
    } else {
        name._localName = key.substr(colon + 1);
        name._ownQName = key;
        setURI(_pBindings->getURI(key.substr(0, colon)), name);
        _hasOdd = _hasOdd || colon == 0 || name.uri().empty() || !isSurelyNCName(name._localName);
    }
}

// Names share their namespace names, which are often long.
void NameCache::setURI(std::string_view uri, QName& name) {
    if (uri.empty()) {
        return;
    }
    if (_lastURI != StringPool::NONE && equalText(_uris.text(_lastURI), uri)) {
        _uris.hold(_lastURI);
    } else {
        _lastURI = _uris.intern(uri);
    }
    name._uri = _lastURI;
    name._pURI = &_uris.text(_lastURI);
}

bool NameCache::isSurelyNCName(std::string_view name) noexcept {
    const char first = name.empty() ? '\0' : name.front();
    const char letter = static_cast<char>(first | 0x20);
    return ((letter >= 'a' && letter <= 'z') || first == '_') && name.find(':') == std::string_view::npos;
}

void NameCache::grow() {
    std::vector<QName*> old(_slots.size() * 2);
    old.swap(_slots);
    for (QName* const pName : old) {
        if (!pName) {
            continue;
        }
        const std::size_t h = hash({pName->_pKey, pName->_keySize}, pName->_scope);
        std::size_t i = 0;
        while (i < MAX_PROBES && _slots[(h + i) & (_slots.size() - 1)]) {
            ++i;
        }
        // One that finds no place in the larger table stays alive: there may be guesses at it.
        if (i < MAX_PROBES) {
            _slots[(h + i) & (_slots.size() - 1)] = pName;
        } else {
            --_used;
        }
    }
}

void NameCache::endSpill() {
    for (const QName& name : _spill) {
        if (name._uri != StringPool::NONE) {
            _uris.release(name._uri);
        }
    }
    _lastURI = StringPool::NONE;
    _spill.clear();
    if (_spilled > MAX_SPILLED) {
        std::fill(_slots.begin(), _slots.end(), nullptr);
        _attributes.fill({});
        _noGuess = nullptr;
        _pGuess = &_noGuess;
        _forgotten = _open.size();
        _names.clear();
        _uris.clear();
        _memory.release();
        _used = 0;
        _spilled = 0;
    }
}

} // namespace Tamo::XML
