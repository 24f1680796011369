#ifndef TAMO_FASTINFOSET_DETAIL_INDEXEDVOCABULARY_H
#define TAMO_FASTINFOSET_DETAIL_INDEXEDVOCABULARY_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include "Tamo/FastInfoset/detail/ValueIndex.h"
#include "Tamo/HashKey.h"
#include <cstddef>
#include <memory>

namespace Tamo::FastInfoset {

/// A table that finds its values: what MapVocabulary and HashVocabulary have in common.
///
/// The storage for searching is allocated with the first values and grows with the entries, so an unused
/// table costs nothing whatever its limit. Used by one thread at a time.
template<class T>
class TAMO_API IndexedVocabulary : public Vocabulary<T> {
public:
    using Found = typename ValueIndex<T>::Found;

    unsigned int index(const T& value, bool& found) override {
        const HashKey key = ValueIndex<T>::keyOf(value);
        const Found known = find(value, key);
        found = known.index != Vocabulary<T>::NOT_FOUND;
        return found ? static_cast<unsigned int>(known.index) : append(value, key, known);
    }

    unsigned int exists(const T& value, bool& found) const override {
        const Found known = find(value, ValueIndex<T>::keyOf(value));
        found = known.index != Vocabulary<T>::NOT_FOUND;
        return static_cast<unsigned int>(known.index);
    }

    /// The index of value, whose key is key, or NOT_FOUND with the place for append(). No virtual calls; of a
    /// table of strings the value is a std::string_view.
    TAMO_ALWAYS_INLINE Found find(typename ValueIndex<T>::Probe value, HashKey key) const {
        return _values.find(this->_index, value, key);
    }

    /// Adds a value that find() has just not found, and returns its index; PoolOverflowException "Vocabulary
    /// hash table full" when there is a limit.
    template<class U>
    TAMO_ALWAYS_INLINE unsigned int append(const U& value, HashKey key, Found notFound) {
        if (this->_index.size() >= _limit) {
            throw PoolOverflowException("Vocabulary hash table full");
        }
        const std::size_t i = this->_index.size();
        this->_index.emplace_back(value);
        try {
            _values.insertLast(this->_index, key, ValueIndex<T>::sizeOf(value), notFound.place);
        } catch (...) {
            this->_index.truncate(i);
            throw;
        }
        return static_cast<unsigned int>(i);
    }

    /// The same for a value of which it is known that it is not there.
    template<class U>
    unsigned int append(const U& value, HashKey key) {
        return append(value, key, {Vocabulary<T>::NOT_FOUND, _values.freePlace(key)});
    }

    /// Appends a value whether it is there or not, and whatever the limit, as the standard has it (X.891,
    /// 7.2.16 and 8.4); returns it.
    const T& appendAlways(const T& value) {
        const HashKey key = ValueIndex<T>::keyOf(value);
        const Found known = find(value, key);
        const std::size_t i = this->_index.size();
        const T& entry = this->_index.emplace_back(value);
        try {
            if (known.index == Vocabulary<T>::NOT_FOUND) {
                _values.insertLast(this->_index, key, ValueIndex<T>::sizeOf(value), known.place);
            } else {
                _values.insertAgain(this->_index, key, ValueIndex<T>::sizeOf(value));
            }
        } catch (...) {
            this->_index.truncate(i);
            throw;
        }
        return entry;
    }

    const T& value(unsigned int idx) const override {
        tamo_assert(this->_index.size() > idx);
        return this->_index[idx];
    }

    std::size_t size() const override { return this->_index.size(); }

    bool empty() const override { return this->_index.empty(); }

    /// The values by index, for those who check the range themselves or take std::out_of_range.
    const VerbTable<T>& values() const noexcept { return this->_index; }

    /// Drops all values but the placeholder.
    void reset() {
        if (this->holdsPlaceholder()) {
            return;
        }
        this->resetValues();
        _values.clear();
        const HashKey key = ValueIndex<T>::keyOf(T());
        _values.insertLast(this->_index, key, 0, _values.freePlace(key));
    }

    /// Drops all values and begins with those of a table that never changes again and belongs to pOwner, of
    /// which a share is kept.
    void reset(const IndexedVocabulary& base, const std::shared_ptr<const void>& pOwner) {
        if (this->_index.base() == &base.values() && this->_index.ownSize() == 0) {
            return;
        }
        this->layOn(base.values(), pOwner);
        _values.layOn(base._values);
    }

protected:
    /// A table that accepts limit entries, without placeholder.
    explicit IndexedVocabulary(std::size_t limit) : _limit(limit) {}

    IndexedVocabulary(const IndexedVocabulary& other) : Vocabulary<T>(other), _limit(other._limit) {
        _values.copy(other._values, this->_index);
    }

    IndexedVocabulary& operator=(const IndexedVocabulary& other) {
        if (this != &other) {
            Vocabulary<T>::operator=(other);
            _values.copy(other._values, this->_index);
            _limit = other._limit;
        }
        return *this;
    }

    /// The number of entries that the table accepts, the placeholder included.
    std::size_t limit() const noexcept { return _limit; }

private:
    ValueIndex<T> _values;
    std::size_t _limit;
};

} // namespace Tamo::FastInfoset

#endif
