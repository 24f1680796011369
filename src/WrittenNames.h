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
/// An entry is for names of one kind and holds for the namespace bindings that it was made under, whose
/// number its user gives. A name that is not here may be known to the vocabulary all the same. Names are
/// copied. Used by one thread at a time.
class TAMO_API WrittenNames {
public:
    /// What a name is the name of.
    enum Kind {
        PLAIN_ATTRIBUTE,   ///< an attribute in no namespace
        ELEMENT,           ///< an element
        NATIVE_ATTRIBUTE,  ///< an attribute in its element's namespace
        FOREIGN_ATTRIBUTE, ///< an attribute in another namespace
    };

    /// What find() returns for a name that is not here.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    /// The index of a name as an event gives it, under the bindings with this number.
    TAMO_ALWAYS_INLINE unsigned int find(Kind kind, const std::string& uri, const std::string& localName,
                                         const std::string& qname, UInt64 bindings) const noexcept {
        const HashKey key = HashKey::of(localName);
        const UInt64 scope = scopeOf(kind, bindings);
        const std::size_t i = slot(key, kind, uri.size());
        if (_pFirst[i].holds(key, scope, uri, localName, qname)) [[likely]] {
            return _pFirst[i].index();
        }
        return findInOther(_pFirst[i ^ 1], key, scope, uri, localName, qname);
    }

    /// The index of the name of a PLAIN_ATTRIBUTE.
    TAMO_ALWAYS_INLINE unsigned int findPlain(const std::string& localName) const noexcept {
        const HashKey key = HashKey::of(localName);
        const std::size_t i = slot(key, PLAIN_ATTRIBUTE, 0);
        if (_pFirst[i].holdsPlain(key, localName)) [[likely]] {
            return _pFirst[i].index();
        }
        return _pFirst[i ^ 1].holdsPlain(key, localName) ? _pFirst[i ^ 1].index() : NOT_FOUND;
    }

    /// Enters a name, which may push another one out.
    void enter(Kind kind, const std::string& uri, const std::string& localName, const std::string& qname,
               UInt64 bindings, unsigned int index);

    /// Enters the name of a PLAIN_ATTRIBUTE.
    void enterPlain(const std::string& localName, unsigned int index) {
        enter(PLAIN_ATTRIBUTE, std::string(), localName, std::string(), 0, index);
    }

    /// Forgets all names.
    void clear() noexcept;

    /// Forgets the names that a document has added to the tables, which begin with so many elements and
    /// attributes of a vocabulary that documents share; those are the same as at the last call, since when
    /// all names have not been forgotten otherwise.
    void clearOwn(std::size_t elements, std::size_t attributes) noexcept;

private:
    struct Name {
        std::string localName;
        std::string qname;
    };

    // Sixty-four octets, so that one is in one cache line.
    struct Entry {
        TAMO_ALWAYS_INLINE bool holds(HashKey key, UInt64 itsScope, const std::string& uri,
                                      const std::string& localName, const std::string& qname) const noexcept {
            if (localKey != key || localSize != localName.size() || qnameSize != qname.size() ||
                scope != itsScope || !(pUri ? equalText(*pUri, uri) : uri.empty())) {
                return false;
            }
            if (flags == 0) [[likely]] {
                return localName.data() == qname.data() ||
                       equalShortText(localName.data(), qname.data(), localSize);
            }
            return (flags & LONG) != 0 ? holdsLong(localName, qname) : qnameKey == HashKey::of(qname);
        }

        TAMO_ALWAYS_INLINE bool holdsPlain(HashKey key, const std::string& localName) const noexcept {
            return localKey == key && localSize == localName.size() && scope == PLAIN_ATTRIBUTE &&
                   ((flags & LONG) == 0 || pName->localName == localName);
        }

        bool holdsLong(const std::string& localName, const std::string& qname) const noexcept {
            return pName->localName == localName && pName->qname == qname;
        }

        unsigned int index() const noexcept { return number - 1; }

        // The empty name, which is never entered, finds it, and NOT_FOUND in it.
        void empty() noexcept {
            localSize = 0;
            flags = 0;
            number = 0;
            pUri = nullptr;
        }

        static constexpr UInt8 LONG = 1;      // the name has a Name: keys do not hold it whole
        static constexpr UInt8 OWN_QNAME = 2; // there is a qnameKey: the local name is not the qualified name

        HashKey localKey{0, 0};
        HashKey qnameKey{0, 0};
        UInt64 scope = 0;
        const std::string* pUri = nullptr; // in _uris; null for the empty one
        Name* pName = nullptr;             // in _names; kept for later names
        UInt32 number = 0;                 // the index and one; 0: no entry
        UInt8 localSize = 0;               // in octets
        UInt8 qnameSize = 0;
        UInt8 flags = 0;
    };

    static constexpr std::size_t FIRST_SIZE = 32;
    static constexpr std::size_t LONGEST = 0xFF; // in octets; longer names are not remembered
    static constexpr std::size_t MOST = 2048;
    static constexpr std::size_t MOST_DISPLACED = 16; // before there are more entries
    static constexpr std::size_t MOST_KEPT = 128;     // when all are forgotten
    static constexpr std::size_t MOST_URIS = 32;

    static const Entry NONE[2];

    static UInt64 scopeOf(Kind kind, UInt64 bindings) noexcept { return bindings << 2 | kind; }

    std::size_t slot(HashKey key, UInt64 kind, std::size_t uriSize) const noexcept {
        return (static_cast<std::size_t>(key.hash() >> 32) + 2 * kind + uriSize) & _mask;
    }

    static unsigned int findInOther(const Entry& entry, HashKey key, UInt64 scope, const std::string& uri,
                                    const std::string& localName, const std::string& qname) noexcept;
    void enterLong(Entry& entry, const std::string& localName, const std::string& qname);
    const std::string* keep(const std::string& uri);
    Entry& entryFor(HashKey key, UInt64 scope, const std::string& uri);
    void grow();

    // None until the first name, then a power of two. A name stands in its slot or in the other of that pair.
    std::unique_ptr<Entry[]> _pEntries;
    const Entry* _pFirst = NONE; // of _pEntries, or of a pair without names
    std::size_t _mask = 0;       // their number less one
    std::size_t _count = 0;      // of the entries, those in use
    std::size_t _displaced = 0;  // names that others have displaced
    std::size_t _shared[2] = {}; // names of attributes and elements that belong to no document
    bool _hasOwn = false;        // there may be others
    std::forward_list<Name> _names;
    std::forward_list<std::string> _uris; // the latest first
    std::size_t _uriCount = 0;
};

} // namespace Tamo::FastInfoset

#endif
