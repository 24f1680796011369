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
/// parts belong to the vocabulary's tables, whose entries never move; qualified names are kept here. Beyond
/// the first MOST names of a table, which are those that documents repeat, there is one at a time. Used by
/// one thread at a time.
class ResolvedNames {
public:
    /// The entries of the table that have a place of their own.
    static constexpr unsigned int MOST = 32768;

    /// A name. All pointers are set in an entry that find() yields, the qualified name aside.
    struct Name {
        const std::string* pPrefix = nullptr;
        const std::string* pUri = nullptr;
        const std::string* pLocalName = nullptr;
        const std::string* pQName = nullptr; ///< null until qualifiedName() was called, and for long ones
        std::size_t octets = 0; ///< of namespace name and local name, with XML::DeliveryLimits::CALLBACK,
                                ///< and of the prefix where that is counted
    };

    /// The name at index, or null when it has not been entered. Valid until the next enter() or clear().
    TAMO_ALWAYS_INLINE const Name* find(unsigned int index) const noexcept {
        if (index < _size) [[likely]] {
            return _names[index].pLocalName ? &_names[index] : nullptr;
        }
        return index == _furtherIndex ? &_further : nullptr;
    }

    /// Enters the name at index, replacing what is there, or the last one behind MOST. The index is that of a
    /// table's entry, so that this holds no more names than the table.
    void enter(unsigned int index, const std::string& prefix, const std::string& uri,
               const std::string& localName) {
        if (index >= _size) [[unlikely]] {
            grow(index);
        }
        constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;
        (index < MOST ? _names[index] : _further) =
            Name{&prefix, &uri, &localName, nullptr,
                 CALLBACK + uri.size() + localName.size() + (_isPrefixCounted ? prefix.size() : 0)};
    }

    /// Whether the octets of a name include those of its prefix; to be set before names are entered.
    void setPrefixCounted(bool flag) noexcept { _isPrefixCounted = flag; }

    /// Whether a name without prefix has a qualified name: its local name.
    void setComplete(bool flag) noexcept { _isComplete = flag; }

    /// The qualified name of the name at index, which must have been entered: prefix, colon and local name,
    /// or without a prefix nothing, or the local name. Valid until the next call or clear().
    TAMO_ALWAYS_INLINE const std::string& qualifiedName(unsigned int index) {
        const Name& name = index < _size ? _names[index] : _further;
        return name.pQName ? *name.pQName : makeQualifiedName(index);
    }

    /// Forgets all names and keeps their storage.
    void clear() noexcept {
        _names.clear();
        _size = 0;
        _furtherIndex = NONE;
        _qnameCount = 0;
    }

private:
    static constexpr unsigned int NONE = 0xFFFFFFFF;

    void grow(unsigned int index);
    const std::string& makeQualifiedName(unsigned int index);

    std::vector<Name> _names;
    std::size_t _size = 0;             // of the vector, at hand without a division
    Name _further;                     // at an index behind MOST
    unsigned int _furtherIndex = NONE; // which one
    std::deque<std::string> _qnames;   // never moves a string; the first _qnameCount are in use
    std::size_t _qnameCount = 0;
    bool _isComplete = false;
    bool _isPrefixCounted = false;
    std::string _longName; // the long qualified name that was made last
};

} // namespace Tamo::FastInfoset

#endif
