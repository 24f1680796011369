#ifndef TAMO_FASTINFOSET_WRITTENNAMES_H
#define TAMO_FASTINFOSET_WRITTENNAMES_H

#include "Tamo/Export.h"
#include "Tamo/Hash.h"
#include "Tamo/HashKey.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <forward_list>
#include <memory>
#include <string>

namespace Tamo::FastInfoset {

/// Remembers under which index the writer wrote a name: a small cache in front of the namespace bindings and
/// four look-ups in the vocabulary, which decide otherwise.
///
/// An entry holds for the namespace bindings that it was made under, whose number its user gives (a name that
/// depends on none has the number ANY). A name that is not here may be known to the vocabulary all the same.
/// Names are copied. Used by one thread at a time.
class TAMO_API WrittenNames {
public:
    /// The number of bindings that a name in no namespace is entered with.
    static constexpr UInt64 ANY = 0;

    /// What find() returns for a name that is not here.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    /// The index of a name as an event gives it, under the bindings with this number.
    TAMO_ALWAYS_INLINE unsigned int find(const std::string& uri, const std::string& localName,
                                         const std::string& qname, UInt64 bindings) const noexcept {
        if (!_pEntries) [[unlikely]] {
            return NOT_FOUND;
        }
        const HashKey key = HashKey::of(localName);
        const std::size_t i = slot(key, uri.size());
        if (_pEntries[i].holds(key, uri, localName, qname, bindings)) [[likely]] {
            return _pEntries[i].index;
        }
        return findInOther(_pEntries[i ^ 1], key, uri, localName, qname, bindings);
    }

    /// Enters a name, which may push another one out.
    void enter(const std::string& uri, const std::string& localName, const std::string& qname,
               UInt64 bindings, unsigned int index);

    /// Forgets all names.
    void clear() noexcept;

private:
    struct Name {
        std::string localName;
        std::string qname;
    };

    struct Entry {
        TAMO_ALWAYS_INLINE bool holds(HashKey otherKey, const std::string& uri, const std::string& localName,
                                      const std::string& qname, UInt64 otherBindings) const noexcept {
            return key == otherKey && size == localName.size() && bindings == otherBindings &&
                   (pUri ? equalText(*pUri, uri) : uri.empty()) &&
                   (isPlain ? qname.empty() || (qname.size() == size && HashKey::of(qname) == key)
                            : equalText(pName->qname, qname) && equalText(pName->localName, localName));
        }

        void empty() noexcept {
            size = 0;
            index = NOT_FOUND;
        }

        HashKey key{0, 0}; // the local name's
        UInt64 bindings = ANY;
        const std::string* pUri = nullptr; // in _uris; null for the empty one
        Name* pName = nullptr;             // in _names; kept for later names when isPlain
        unsigned int index = NOT_FOUND;
        UInt32 size : 31 = 0;   // the local name's, in octets; 0: no entry, which the empty name finds
        UInt32 isPlain : 1 = 0; // the key is the local name, and there is no prefix
    };

    static constexpr std::size_t FIRST_SIZE = 16;
    static constexpr std::size_t LONGEST = 0x7FFFFFFF;
    static constexpr std::size_t MOST = 1024;
    static constexpr std::size_t MOST_URIS = 32;

    std::size_t slot(HashKey key, std::size_t uriSize) const noexcept {
        return (static_cast<std::size_t>(key.hash() >> 32) + uriSize) & _mask;
    }

    static unsigned int findInOther(const Entry& entry, HashKey key, const std::string& uri,
                                    const std::string& localName, const std::string& qname,
                                    UInt64 bindings) noexcept;
    const std::string* keep(const std::string& uri);
    Entry& entryFor(HashKey key, const std::string& uri);
    void grow();

    // None until the first name, then a power of two. A name stands in its slot or in the other of that pair.
    std::unique_ptr<Entry[]> _pEntries;
    std::size_t _mask = 0;  // their number less one
    std::size_t _count = 0; // of the entries, those in use
    std::forward_list<Name> _names;
    std::forward_list<std::string> _uris; // the latest first
    std::size_t _uriCount = 0;
};

} // namespace Tamo::FastInfoset

#endif
