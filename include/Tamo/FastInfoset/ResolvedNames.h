#ifndef TAMO_FASTINFOSET_RESOLVEDNAMES_H
#define TAMO_FASTINFOSET_RESOLVEDNAMES_H

#include "Tamo/Export.h"
#include "Tamo/XML/DeliveryLimits.h"
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The entries of a name table with their parts looked up: what the parser needs for a name that a document
/// refers to by its index, found in one step.
///
/// Filled by FastInfosetParser as names come up, and emptied when the tables below it are. The strings of the
/// parts belong to the vocabulary's tables, whose entries never move; qualified names are kept here. Used by
/// one thread at a time.
class TAMO_API ResolvedNames {
public:
    /// A name. All pointers are set in an entry that find() yields, the qualified name aside.
    struct Name {
        const std::string* pPrefix = nullptr;
        const std::string* pUri = nullptr;
        const std::string* pLocalName = nullptr;
        const std::string* pQName = nullptr; ///< null until qualifiedName() was called, and for long ones
        std::size_t octets = 0; ///< of namespace name and local name, with XML::DeliveryLimits::CALLBACK
    };

    /// The name at index, or null when it has not been entered. Valid until the next enter() or clear().
    const Name* find(unsigned int index) const noexcept {
        return index < _size && _names[index].pLocalName ? &_names[index] : nullptr;
    }

    /// Enters the name at index, replacing what is there. The index is that of a table's entry, so that this
    /// holds no more names than the table.
    void enter(unsigned int index, const std::string& prefix, const std::string& uri,
               const std::string& localName) {
        if (index >= _size) [[unlikely]] {
            grow(index);
        }
        constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;
        _names[index] = Name{&prefix, &uri, &localName, nullptr, CALLBACK + uri.size() + localName.size()};
    }

    /// The qualified name of the name at index, which must have been entered: prefix, colon and local name,
    /// or nothing when it has no prefix. Valid until the next call or clear().
    const std::string& qualifiedName(unsigned int index) {
        const Name& name = _names[index];
        return name.pQName ? *name.pQName : makeQualifiedName(index);
    }

    /// Forgets all names and keeps their storage.
    void clear() noexcept {
        _names.clear();
        _size = 0;
        _qnameCount = 0;
    }

private:
    void grow(unsigned int index);
    const std::string& makeQualifiedName(unsigned int index);

    std::vector<Name> _names;
    std::size_t _size = 0;           // of the vector, at hand without a division
    std::deque<std::string> _qnames; // never moves a string; the first _qnameCount are in use
    std::size_t _qnameCount = 0;
    std::string _longName; // the long qualified name that was made last
};

} // namespace Tamo::FastInfoset

#endif
