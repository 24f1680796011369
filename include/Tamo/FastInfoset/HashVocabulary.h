#ifndef TAMO_FASTINFOSET_HASHVOCABULARY_H
#define TAMO_FASTINFOSET_HASHVOCABULARY_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Vocabulary.h"
#include "Tamo/Hash.h"
#include "Tamo/Types.h"
#include <vector>

namespace Tamo::FastInfoset {

/// A table that finds its values through an open-addressing hash table and holds a fixed number of them.
///
/// The size hint of the constructor is the number of entries, placeholder included, that the table accepts;
/// one more distinct value throws PoolOverflowException "Vocabulary hash table full" and changes nothing. The
/// slots are allocated with the first real value and grow with the entries, so an unused table costs nothing
/// whatever its limit.
template<class T>
class TAMO_API HashVocabulary : public Vocabulary<T> {
public:
    /// Tag of the constructor that stores no placeholder.
    struct DontInitialize {};

    /// The number of entries accepted when the constructor is not told one.
    static constexpr unsigned long DEFAULT_SIZE = 65521;

    /// A table with its placeholder that accepts size entries (at least 1).
    explicit HashVocabulary(unsigned long size = DEFAULT_SIZE) : _limit(size) {
        tamo_assert(size > 0);
        this->_index.push_back(T());
    }

    /// A table without placeholder that accepts size entries.
    explicit HashVocabulary(DontInitialize, unsigned long size = DEFAULT_SIZE) : _limit(size) {}

    HashVocabulary(const HashVocabulary&) = default;
    HashVocabulary& operator=(const HashVocabulary&) = default;

    unsigned int index(const T& value, bool& found) override {
        const UInt32 h = hashOf(value);
        const unsigned int known = find(value, h);
        found = known != Vocabulary<T>::NOT_FOUND;
        if (found) {
            return known;
        }
        if (this->_index.size() >= _limit) {
            throw PoolOverflowException("Vocabulary hash table full");
        }
        // At most three quarters of the slots are ever taken, so that probe sequences stay short.
        if (this->_index.size() * 4 >= _slots.size() * 3) {
            grow();
        }
        const auto idx = static_cast<unsigned int>(this->_index.size());
        this->_index.push_back(value);
        enter(h, idx);
        return idx;
    }

    unsigned int exists(const T& value, bool& found) const override {
        const unsigned int known = find(value, hashOf(value));
        found = known != Vocabulary<T>::NOT_FOUND;
        return known;
    }

    const T& value(unsigned int idx) const override {
        tamo_assert(this->_index.size() > idx);
        return this->_index[idx];
    }

    std::size_t size() const override { return this->_index.size(); }

    bool empty() const override { return this->_index.empty(); }

    Vocabulary<T>* subtract(const Vocabulary<T>& other) const override {
        auto pResult = std::make_unique<HashVocabulary>(DontInitialize(), _limit);
        this->subtractInto(*pResult, other);
        return pResult.release();
    }

    Vocabulary<T>* clone() const override { return new HashVocabulary(*this); }

    void reset() override {
        this->_index.truncate(0);
        this->_index.push_back(T());
        _slots.clear();
        if (_slots.capacity() > MOST_SLOTS_KEPT) {
            _slots.shrink_to_fit();
        }
    }

private:
    struct Slot {
        UInt32 hash = 0;
        unsigned int index = Vocabulary<T>::NOT_FOUND;
    };

    static constexpr std::size_t FIRST_SLOTS = 64;
    static constexpr std::size_t MOST_SLOTS_KEPT = 4096;

    static UInt32 hashOf(const T& value) { return HashFunction<T>()(value, 0xFFFFFFFFu); }

    // The slot count is a power of two; the multiplier spreads hashes that differ in few bits.
    std::size_t home(UInt32 h) const noexcept { return (h * 2654435769u >> 8) & (_slots.size() - 1); }

    unsigned int find(const T& value, UInt32 h) const {
        if (_slots.empty()) {
            // Nothing but the placeholder can be there.
            return !this->_index.empty() && this->_index[0] == value ? 0 : Vocabulary<T>::NOT_FOUND;
        }
        for (std::size_t i = home(h);; i = (i + 1) & (_slots.size() - 1)) {
            const Slot& slot = _slots[i];
            if (slot.index == Vocabulary<T>::NOT_FOUND) {
                return Vocabulary<T>::NOT_FOUND;
            }
            if (slot.hash == h && this->_index[slot.index] == value) {
                return slot.index;
            }
        }
    }

    void enter(UInt32 h, unsigned int idx) {
        std::size_t i = home(h);
        while (_slots[i].index != Vocabulary<T>::NOT_FOUND) {
            i = (i + 1) & (_slots.size() - 1);
        }
        _slots[i] = Slot{h, idx};
    }

    void grow() {
        std::vector<Slot> slots(_slots.empty() ? FIRST_SLOTS : 2 * _slots.size());
        _slots.swap(slots);
        for (std::size_t i = 0; i < this->_index.size(); ++i) {
            enter(hashOf(this->_index[i]), static_cast<unsigned int>(i));
        }
    }

    std::vector<Slot> _slots;
    unsigned long _limit;
};

} // namespace Tamo::FastInfoset

#endif
