#ifndef TAMO_FASTINFOSET_VALUEINDEX_H
#define TAMO_FASTINFOSET_VALUEINDEX_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include "Tamo/Hash.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace Tamo::FastInfoset {

/// Finds the values of a VerbTable: from a value to its index.
///
/// A hash table with open addressing that holds indexes; the values stay in the table, which every operation
/// is given. It is empty until the first insertion and grows with the values. A search looks at MOST_PROBES
/// slots at most; values that find no slot within so many go to an ordered map, so that strings chosen for
/// equal hashes cost no more than a logarithm each. Used by one thread at a time.
template<class T>
class TAMO_API ValueIndex {
public:
    /// What find() returns for an absent value.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    ValueIndex() = default;
    ValueIndex(const ValueIndex&) = delete;
    ValueIndex& operator=(const ValueIndex&) = delete;

    /// Becomes the index of values, a copy of the table that other is the index of.
    void copy(const ValueIndex& other, const VerbTable<T>& values) {
        if (other._crowded.empty()) {
            _slots = other._slots;
            _crowded.clear();
        } else {
            rebuild(values);
        }
    }

    /// The hash that the other operations take.
    static UInt32 hashOf(const T& value) {
        using Tamo::hash;
        return hash(value);
    }

    /// The index of value, whose hash is h, in values.
    unsigned int find(const VerbTable<T>& values, const T& value, UInt32 h) const {
        if (_slots.empty()) [[unlikely]] {
            return NOT_FOUND;
        }
        std::size_t i = home(h);
        for (std::size_t probes = 0; probes < MOST_PROBES; ++probes) {
            const Slot& slot = _slots[i];
            if (slot.hash == h && slot.index != NOT_FOUND && equal(*values.find(slot.index), value)) {
                return slot.index;
            }
            if (slot.index == NOT_FOUND) {
                return NOT_FOUND;
            }
            i = (i + 1) & (_slots.size() - 1);
        }
        const auto it = _crowded.find(&value);
        return it == _crowded.end() ? NOT_FOUND : it->second;
    }

    /// Enters the last value of values, which must not be there yet.
    void insertLast(const VerbTable<T>& values, UInt32 h) {
        // At most three quarters of the slots are ever taken, so that probe sequences stay short.
        if (_slots.empty()) [[unlikely]] {
            rebuild(values);
            return;
        }
        if (values.size() * 4 > _slots.size() * 3) [[unlikely]] {
            grow(values);
        }
        insert(values, h, values.size() - 1);
    }

    /// Forgets everything; the storage of a small table is kept.
    void clear() noexcept {
        if (_slots.capacity() > MOST_SLOTS_KEPT) {
            _slots = std::vector<Slot>();
        } else {
            _slots.clear();
        }
        _crowded.clear();
    }

    /// Enters all of values anew; of equal ones the first.
    void rebuild(const VerbTable<T>& values) {
        std::size_t size = FIRST_SLOTS;
        while (values.size() * 4 > size * 3) {
            size *= 2;
        }
        _slots.assign(size, Slot());
        _crowded.clear();
        for (std::size_t i = 0; i < values.size(); ++i) {
            insert(values, hashOf(values[i]), i);
        }
    }

private:
    struct Slot {
        UInt32 hash = 0;
        unsigned int index = NOT_FOUND;
    };

    // The keys point at the stored values, which never move.
    struct Less {
        bool operator()(const T* a, const T* b) const { return *a < *b; }
    };

    static constexpr std::size_t FIRST_SLOTS = 64;
    static constexpr std::size_t MOST_SLOTS_KEPT = 4096;
    static constexpr std::size_t MOST_PROBES = 64;

    // The slot count is a power of two; the multiplier spreads hashes that differ in few bits.
    std::size_t home(UInt32 h) const noexcept {
        return static_cast<std::size_t>(h * UInt64{0x9E3779B97F4A7C15} >> 24) & (_slots.size() - 1);
    }

    static bool equal(const T& a, const T& b) noexcept {
        if constexpr (std::is_same_v<T, std::string>) {
            return equalText(a, b);
        } else {
            return a == b;
        }
    }

    // Twice the slots. The hashes are kept in the slots, so that no value has to be looked at.
    void grow(const VerbTable<T>& values) {
        std::vector<Slot> old(_slots.size() * 2);
        old.swap(_slots);
        for (const Slot& slot : old) {
            if (slot.index != NOT_FOUND) {
                insert(values, slot.hash, slot.index);
            }
        }
        std::map<const T*, unsigned int, Less> crowded;
        crowded.swap(_crowded);
        for (const auto& [pValue, index] : crowded) {
            insert(values, hashOf(*pValue), index);
        }
    }

    void insert(const VerbTable<T>& values, UInt32 h, std::size_t index) {
        std::size_t i = home(h);
        for (std::size_t probes = 0; probes < MOST_PROBES; ++probes) {
            if (_slots[i].index == NOT_FOUND) {
                _slots[i] = Slot{h, static_cast<unsigned int>(index)};
                return;
            }
            i = (i + 1) & (_slots.size() - 1);
        }
        _crowded.emplace(values.find(index), static_cast<unsigned int>(index));
    }

    std::vector<Slot> _slots;
    std::map<const T*, unsigned int, Less> _crowded;
};

} // namespace Tamo::FastInfoset

#endif
