#ifndef TAMO_FASTINFOSET_VOCABULARY_H
#define TAMO_FASTINFOSET_VOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include <cstddef>
#include <memory>

namespace Tamo::FastInfoset {

/// One indexed table of a vocabulary (ITU-T X.891, clause 8): values and the small integers that stand for
/// them.
///
/// The kinds differ in what they can do and cost: VectorVocabulary appends and reads by index only,
/// MapVocabulary and HashVocabulary find a value that is already there. Index 0 is a placeholder (the empty
/// value) unless the table was made with DontInitialize; real entries start at 1. In the tables of this
/// library stored values never move. An application's own table has these operations; it may keep its values
/// elsewhere than here, and need not keep a reference that value() has returned valid beyond the next
/// operation. A table is used by one thread at a time.
template<class T>
class TAMO_API Vocabulary {
public:
    /// What an absent value's look-up returns.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    virtual ~Vocabulary() = default;

    /// The index of value, which is added when absent; found tells whether it was there.
    virtual unsigned int index(const T& value, bool& found) = 0;

    /// The index of value, or NOT_FOUND with found false.
    virtual unsigned int exists(const T& value, bool& found) const = 0;

    /// The value at index; past the end std::out_of_range or, in map and hash tables, an assertion first.
    virtual const T& value(unsigned int index) const = 0;

    /// Number of values, the placeholder included.
    virtual std::size_t size() const = 0;

    /// True when there is not even a placeholder.
    virtual bool empty() const = 0;

    /// The values of this table that other lacks, in their order and numbered from 0; the caller owns the
    /// result.
    virtual Vocabulary<T>* subtract(const Vocabulary<T>& other) const = 0;

    /// A deep copy of the same kind; the caller owns it.
    virtual Vocabulary<T>* clone() const = 0;

protected:
    /// Adds to result the values of this table that other lacks. What both are laid on is in both.
    void subtractInto(Vocabulary<T>& result, const Vocabulary<T>& other) const {
        const VerbTable<T>* const pBase = _index.base();
        const bool hasOther = pBase && (pBase == &other._index || pBase == other._index.base());
        for (std::size_t i = hasOther ? _index.baseSize() : 0; i < _index.size(); ++i) {
            const T& candidate = _index[i];
            bool found = false;
            other.exists(candidate, found);
            if (!found) {
                result.index(candidate, found);
            }
        }
    }

    /// Drops all values and begins with those of a table that never changes again and belongs to pOwner, of
    /// which a share is kept.
    void layOn(const VerbTable<T>& base, const std::shared_ptr<const void>& pOwner) {
        if (_index.base() == &base) {
            _index.truncate(_index.baseSize());
        } else {
            _index.layOn({pOwner, &base});
        }
    }

    /// Whether there is the placeholder alone, so that there is nothing to drop.
    bool holdsPlaceholder() const noexcept {
        return _index.size() == 1 && !_index.base() && *_index.firstBlock() == T();
    }

    /// Drops all values but the placeholder, which a table without gets, and is laid on no other table.
    void resetValues() {
        if (_index.base()) [[unlikely]] {
            _index.layOn(nullptr);
        }
        const bool hasPlaceholder = !_index.empty() && *_index.firstBlock() == T();
        _index.truncate(hasPlaceholder ? 1 : 0);
        if (!hasPlaceholder) {
            _index.emplace_back(T());
        }
    }

    VerbTable<T> _index;
};

} // namespace Tamo::FastInfoset

#endif
