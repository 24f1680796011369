#ifndef TAMO_FASTINFOSET_WRITTENNAMES_H
#define TAMO_FASTINFOSET_WRITTENNAMES_H

#include "Tamo/Export.h"
#include "Tamo/Hash.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// Remembers under which index the writer wrote a name: a small cache in front of the namespace bindings and
/// four look-ups in the vocabulary, which decide otherwise.
///
/// An entry holds for the namespace bindings that it was made under, whose number its user gives (a name that
/// depends on none has the number ANY). A name that is not here may be known to the vocabulary all the same.
/// Namespace and local names are referred to where the vocabulary keeps them. Used by one thread at a time.
class TAMO_API WrittenNames {
public:
    /// The number of bindings that a name in no namespace is entered with.
    static constexpr UInt64 ANY = 0;

    /// What find() returns for a name that is not here.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    /// The index of a name as an event gives it, under the bindings with this number.
    unsigned int find(const std::string& uri, const std::string& localName, const std::string& qname,
                      UInt64 bindings) const noexcept {
        if (_entries.empty()) {
            return NOT_FOUND;
        }
        const Entry& entry = _entries[slot(uri, localName)];
        return entry.pLocalName && entry.bindings == bindings && equalText(*entry.pLocalName, localName) &&
                       equalText(*entry.pUri, uri) && equalText(entry.qname, qname)
                   ? entry.index
                   : NOT_FOUND;
    }

    /// Enters a name, which may push another one out. The references must stay valid.
    void enter(const std::string& uri, const std::string& localName, const std::string& qname,
               UInt64 bindings, unsigned int index);

    /// Forgets all names.
    void clear() noexcept;

private:
    struct Entry {
        const std::string* pUri = nullptr;
        const std::string* pLocalName = nullptr; // null: no entry
        UInt64 bindings = ANY;
        unsigned int index = NOT_FOUND;
        std::string qname;
    };

    static constexpr std::size_t FIRST_SIZE = 32;
    static constexpr std::size_t MOST = 1024;

    std::size_t slot(const std::string& uri, const std::string& localName) const noexcept {
        return (Tamo::hash(localName) + uri.size()) & (_entries.size() - 1);
    }

    std::vector<Entry> _entries; // none until the first name, then a power of two
};

} // namespace Tamo::FastInfoset

#endif
