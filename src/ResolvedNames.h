#ifndef TAMO_FASTINFOSET_RESOLVEDNAMES_H
#define TAMO_FASTINFOSET_RESOLVEDNAMES_H

#include "Tamo/Export.h"
#include "Tamo/XML/DeliveryLimits.h"
#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The entries of a name table with their parts looked up: what the parser needs for a name that a document
/// refers to by its index, found in one step.
///
/// Filled by FastInfosetParser as names come up, and emptied when the tables below it are. The strings of the
/// parts belong to the vocabulary's tables, whose entries never move; qualified names are kept here. Beyond
/// the first MOST names of a table, which are those that documents repeat, there is one at a time. Names can
/// be laid on those of a vocabulary that parsers share, as their tables are. Used by one thread at a time.
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
        const std::size_t own = index - _baseSize; // huge for one of the names below
        if (own < _size) [[likely]] {
            return _names[own].pLocalName ? &_names[own] : nullptr;
        }
        return findElsewhere(index);
    }

    /// Enters the name at index, replacing what is there, or the last one behind MOST. The index is that of a
    /// table's entry, so that this holds no more names than the table.
    void enter(unsigned int index, const std::string& prefix, const std::string& uri,
               const std::string& localName) {
        const std::size_t own = index - _baseSize;
        if (own >= _size) [[unlikely]] {
            grow(index);
        }
        (own < _size ? _names[own] : _further) = named(prefix, uri, localName, _isPrefixCounted);
    }

    /// Whether the octets of a name include those of its prefix; to be set before names are entered.
    void setPrefixCounted(bool flag) noexcept { _isPrefixCounted = flag; }

    /// Whether a name without prefix has a qualified name: its local name.
    void setComplete(bool flag) noexcept { _isComplete = flag; }

    /// The qualified name of a name that find() has yielded for an index: prefix, colon and local name, or
    /// without a prefix nothing, or the local name. Valid until the next call or clear().
    TAMO_ALWAYS_INLINE const std::string& qualifiedName(const Name& name, unsigned int index) {
        return name.pQName ? *name.pQName : makeQualifiedName(index);
    }

    /// Forgets all names, keeps their storage, and begins with names that have been resolved: all those that
    /// a table begins with, by index, with what this is told of prefixes and completeness. Borrowed.
    void clear(std::span<const Name> base) noexcept {
        clear();
        _base = base.data();
        _baseSize = base.size();
    }

    /// Forgets all names and keeps their storage.
    void clear() noexcept {
        _base = nullptr;
        _baseSize = 0;
        _names.clear();
        _size = 0;
        _furtherIndex = NONE;
        _qnameCount = 0;
    }

    /// The entry of a name with these parts, without its qualified name.
    static Name named(const std::string& prefix, const std::string& uri, const std::string& localName,
                      bool isPrefixCounted) noexcept {
        return {&prefix, &uri, &localName, nullptr,
                XML::DeliveryLimits::CALLBACK + uri.size() + localName.size() +
                    (isPrefixCounted ? prefix.size() : 0)};
    }

    /// The qualified name of an entry when it is, or need not be, kept anywhere: that of a name without
    /// prefix, which is complete or not. Null for others.
    static const std::string* qualifiedNameOf(const Name& name, bool isComplete) noexcept;

    /// Whether the qualified name of a name is kept.
    static bool isKept(const Name& name) noexcept;

private:
    static constexpr unsigned int NONE = 0xFFFFFFFF;

    const Name* findElsewhere(unsigned int index) const noexcept {
        if (index < _baseSize && _base[index].pLocalName) {
            return &_base[index];
        }
        return index == _furtherIndex ? &_further : nullptr;
    }

    void grow(unsigned int index);
    const std::string& makeQualifiedName(unsigned int index);

    const Name* _base = nullptr; // names that belong to others
    std::size_t _baseSize = 0;
    std::vector<Name> _names;          // those behind them
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
