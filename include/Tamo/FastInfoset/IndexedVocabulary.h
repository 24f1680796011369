#ifndef TAMO_FASTINFOSET_INDEXEDVOCABULARY_H
#define TAMO_FASTINFOSET_INDEXEDVOCABULARY_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/ValueIndex.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// A table that finds its values: what MapVocabulary and HashVocabulary have in common.
///
/// The storage for searching is allocated with the first real value and grows with the entries, so an unused
/// table costs nothing whatever its limit. Used by one thread at a time.
template<class T>
class TAMO_API IndexedVocabulary : public Vocabulary<T> {
public:
    unsigned int index(const T& value, bool& found) override {
        const UInt32 h = ValueIndex<T>::hashOf(value);
        const unsigned int known = find(value, h);
        found = known != Vocabulary<T>::NOT_FOUND;
        if (found) {
            return known;
        }
        if (this->_index.size() >= _limit) {
            throw PoolOverflowException("Vocabulary hash table full");
        }
        this->_index.push_back(value);
        _values.insertLast(this->_index, h);
        return static_cast<unsigned int>(this->_index.size() - 1);
    }

    unsigned int exists(const T& value, bool& found) const override {
        const unsigned int known = find(value, ValueIndex<T>::hashOf(value));
        found = known != Vocabulary<T>::NOT_FOUND;
        return known;
    }

    const T& value(unsigned int idx) const override {
        tamo_assert(this->_index.size() > idx);
        return this->_index[idx];
    }

    std::size_t size() const override { return this->_index.size(); }

    bool empty() const override { return this->_index.empty(); }

    void reset() override {
        this->_index.truncate(0);
        this->_index.push_back(T());
        _values.clear();
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
    // The placeholder alone is not worth a hash table.
    unsigned int find(const T& value, UInt32 h) const {
        if (this->_index.size() == 1) {
            return this->_index[0] == value ? 0 : Vocabulary<T>::NOT_FOUND;
        }
        return _values.find(this->_index, value, h);
    }

    ValueIndex<T> _values;
    std::size_t _limit;
};

} // namespace Tamo::FastInfoset

#endif
