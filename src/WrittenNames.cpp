#include "WrittenNames.h"
#include <utility>

namespace Tamo::FastInfoset {

const WrittenNames::Entry WrittenNames::NONE[2];

void WrittenNames::enter(Kind kind, const std::string& uri, const std::string& localName,
                         const std::string& qname, UInt64 bindings, unsigned int index) {
    const std::size_t size = localName.size();
    if (size == 0 || size > LONGEST || qname.size() > LONGEST) {
        return;
    }
    const std::string* const pUri = uri.empty() ? nullptr : keep(uri); // which may forget all names
    if (!_pEntries) {
        _pEntries = std::make_unique<Entry[]>(FIRST_SIZE);
        _pFirst = _pEntries.get();
        _mask = FIRST_SIZE - 1;
    }
    const HashKey key = HashKey::of(localName);
    const UInt64 scope = scopeOf(kind, bindings);
    Entry& entry = entryFor(key, scope, uri);
    entry.empty(); // should a copy below fail
    UInt8 flags = 0;
    if (!HashKey::isExact(size) || !HashKey::isExact(qname.size())) [[unlikely]] {
        flags = Entry::LONG;
        enterLong(entry, localName, qname);
    } else if (size != qname.size() || !equalShortText(localName.data(), qname.data(), size)) {
        flags = Entry::OWN_QNAME;
        entry.qnameKey = HashKey::of(qname);
    }
    entry.localKey = key;
    entry.localSize = static_cast<UInt8>(size);
    entry.qnameSize = static_cast<UInt8>(qname.size());
    entry.flags = flags;
    entry.scope = scope;
    entry.pUri = pUri;
    entry.number = index + 1;
    _hasOwn = _hasOwn || index >= _shared[kind == ELEMENT];
}

void WrittenNames::enterLong(Entry& entry, const std::string& localName, const std::string& qname) {
    if (!entry.pName) {
        entry.pName = &_names.emplace_front();
    }
    entry.pName->localName = localName;
    entry.pName->qname = qname;
}

void WrittenNames::clear() noexcept {
    if (_mask >= MOST_KEPT) {
        _pFirst = NONE;
        _pEntries.reset();
        _names.clear();
        _mask = 0;
        _count = 0;
    }
    for (std::size_t i = 0; _count != 0 && i <= _mask; ++i) {
        _pEntries[i].empty();
    }
    _count = 0;
    _displaced = 0;
    _hasOwn = false;
}

void WrittenNames::clearOwn(std::size_t elements, std::size_t attributes) noexcept {
    _shared[0] = attributes;
    _shared[1] = elements;
    for (std::size_t i = 0; _hasOwn && _count != 0 && i <= _mask; ++i) {
        Entry& entry = _pEntries[i];
        if (entry.number != 0 && entry.index() >= _shared[(entry.scope & 3) == ELEMENT]) {
            entry.empty();
            --_count;
        }
    }
    _displaced = 0;
    _hasOwn = false;
}

unsigned int WrittenNames::findInOther(const Entry& entry, HashKey key, UInt64 scope, const std::string& uri,
                                       const std::string& localName, const std::string& qname) noexcept {
    return entry.holds(key, scope, uri, localName, qname) ? entry.index() : NOT_FOUND;
}

// The copy of a namespace name that entries share.
const std::string* WrittenNames::keep(const std::string& uri) {
    for (const std::string& kept : _uris) {
        if (equalText(kept, uri)) {
            return &kept;
        }
    }
    if (_uriCount == MOST_URIS) {
        clear();
        _uris.clear();
        _uriCount = 0;
    }
    _uris.push_front(uri);
    ++_uriCount;
    return &_uris.front();
}

WrittenNames::Entry& WrittenNames::entryFor(HashKey key, UInt64 scope, const std::string& uri) {
    // Three names of one pair that are in use in turn would displace each other for ever.
    if ((2 * _count > _mask || _displaced == MOST_DISPLACED) && _mask + 1 < MOST) {
        grow();
    }
    const std::size_t i = slot(key, scope & 3, uri.size());
    for (Entry* const pEntry : {&_pEntries[i], &_pEntries[i ^ 1]}) {
        if (pEntry->number == 0) {
            ++_count;
            return *pEntry;
        }
        // The same name under other bindings is likely to be out of use.
        if (pEntry->localKey == key && (pEntry->scope & 3) == (scope & 3)) {
            return *pEntry;
        }
    }
    ++_displaced;
    return _pEntries[i];
}

// Names that find both places taken are left out.
void WrittenNames::grow() {
    std::unique_ptr<Entry[]> pOld = std::make_unique<Entry[]>(4 * (_mask + 1));
    pOld.swap(_pEntries);
    _pFirst = _pEntries.get();
    const std::size_t oldMask = std::exchange(_mask, 4 * _mask + 3);
    _count = 0;
    _displaced = 0;
    for (std::size_t old = 0; old <= oldMask; ++old) {
        const Entry& entry = pOld[old];
        if (entry.number != 0) {
            const std::size_t i = slot(entry.localKey, entry.scope & 3, entry.pUri ? entry.pUri->size() : 0);
            Entry& place = _pEntries[i].number == 0 ? _pEntries[i] : _pEntries[i ^ 1];
            _count += place.number == 0 ? 1 : 0;
            place = entry;
        }
    }
}

} // namespace Tamo::FastInfoset
