#ifndef TAMO_FASTINFOSET_DETAIL_VALUEINDEX_H
#define TAMO_FASTINFOSET_DETAIL_VALUEINDEX_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/QualifiedNameVocabulary.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include "Tamo/Hash.h"
#include "Tamo/HashKey.h"
#include "Tamo/Types.h"
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Tamo::FastInfoset {

/// Finds the values of a VerbTable: from a value to its index. It holds the table's own; those of a table
/// that this one is laid on are asked of the index of that one.
///
/// A hash table with open addressing that holds keys and indexes; the values stay in the table, which every
/// operation is given. A few values are looked through one by one, so that a small table costs no storage
/// here. A search looks at MOST_PROBES slots at most; values that find no slot within so many go to an
/// ordered map, so that strings chosen for equal hashes cost no more than a logarithm each. Used by one
/// thread at a time.
template<class T>
class TAMO_API ValueIndex {
public:
    /// What find() returns for an absent value.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

    /// Where a value is: its index, or NOT_FOUND and where insertLast() would put it.
    struct Found {
        std::size_t index = NOT_FOUND;
        std::size_t place = 0;
    };

    ValueIndex() = default;
    ValueIndex(const ValueIndex&) = delete;
    ValueIndex& operator=(const ValueIndex&) = delete;

    /// Becomes the index of values, a copy of the table that other is the index of.
    void copy(const ValueIndex& other, const VerbTable<T>& values) {
        release();
        _pBase = other._pBase;
        if (other._pSlots) {
            allot(other._mask + 1);
            enter(values, values.size());
        }
    }

    /// The key and the size of a value, which the other operations take. A name's key says all.
    static HashKey keyOf(const QualifiedNameEntry& name) noexcept {
        return {UInt64{name.prefixId()} << 32 | name.namespaceId(), name.localNameId()};
    }
    static HashKey keyOf(std::string_view text) noexcept { return HashKey::of(text); }
    static UInt32 sizeOf(const QualifiedNameEntry&) noexcept { return 0; }
    static bool isExact(const QualifiedNameEntry&) noexcept { return true; }
    static bool isExact(std::string_view text) noexcept { return HashKey::isExact(text.size()); }
    static UInt32 sizeOf(std::string_view text) noexcept {
        return static_cast<UInt32>(std::min<std::size_t>(text.size(), 0xFFFFFFFF));
    }

    /// What is looked for: a value as it is passed in registers.
    using Probe = std::conditional_t<std::is_same_v<T, std::string>, std::string_view, T>;

    /// Where value, whose key is key, is in values.
    TAMO_ALWAYS_INLINE Found find(const VerbTable<T>& values, Probe value, HashKey key) const {
        if (!_pSlots) [[unlikely]] {
            const unsigned int index = scan(values, value);
            return index != NOT_FOUND ? Found{index, 0} : absent(values, value, key, 0);
        }
        std::size_t place = home(key);
        for (std::size_t probes = 0; probes < PROBES_AT_ONCE; ++probes, place = behind(place)) {
            const Slot& slot = _pSlots[place];
            if (slot.key == key) [[likely]] {
                if (!isExact(value)) {
                    break;
                }
                if (slot.size == sizeOf(value)) [[likely]] {
                    return {indexOf(slot), place};
                }
            }
            if (slot.number == 0) {
                return absent(values, value, key, place);
            }
        }
        return findFurther(values, value, key);
    }

    /// Becomes the index of a table without values of its own that is laid on another one, whose index is
    /// pBase.
    void layOn(const ValueIndex& base) noexcept {
        clear();
        _pBase = &base;
        enterPlaceholder();
    }

    /// Where insertLast() would put a value that is not there, whose key is key.
    std::size_t freePlace(HashKey key) const noexcept {
        if (!_pSlots) {
            return 0;
        }
        std::size_t place = home(key);
        for (std::size_t probes = 0; probes < MOST_PROBES; ++probes, place = behind(place)) {
            if (_pSlots[place].number == 0) {
                return place;
            }
        }
        return NO_PLACE;
    }

    /// Enters the last value of values, which find() has just not found, with its key, size and place;
    /// changes nothing when it throws.
    void insertLast(const VerbTable<T>& values, HashKey key, UInt32 size, std::size_t place) {
        if (values.ownSize() > _most) [[unlikely]] {
            grow(values, key, size);
        } else if (!_pSlots) {
            return;
        } else if (place != NO_PLACE) [[likely]] {
            put(place, key, size, values.size());
        } else {
            crowd(values, values.size());
        }
    }

    /// The same for a value that is in the table already: find() goes on to yield one of the two.
    void insertAgain(const VerbTable<T>& values, HashKey key, UInt32 size) {
        if (values.ownSize() > _most) [[unlikely]] {
            grow(values, key, size);
        }
    }

    /// Forgets everything, and keeps the storage unless that is large.
    void clear() noexcept {
        _pBase = nullptr;
        if (_pSlots && _mask < MOST_KEPT) {
            static_assert(std::is_trivially_copyable_v<Slot>);
            std::memset(static_cast<void*>(_pSlots.get()), 0, (_mask + 1) * sizeof(Slot)); // empty ones
            _pCrowded.reset();
        } else {
            release();
        }
    }

private:
    // A key with its value's size and number in the table, from 1 on; empty without a number.
    struct Slot {
        bool holds(HashKey other, UInt32 otherSize) const noexcept {
            return key == other && size == otherSize;
        }

        HashKey key{0, 0};
        UInt32 size = 0;
        UInt32 number = 0;
    };

    // The keys point at the stored values, which never move.
    struct Less {
        using is_transparent = void;
        bool operator()(const T* a, const T* b) const { return *a < *b; }
        template<class U>
        bool operator()(const T* a, const U& b) const {
            return *a < b;
        }
        template<class U>
        bool operator()(const U& a, const T* b) const {
            return a < *b;
        }
    };

    using Crowded = std::map<const T*, UInt32, Less>;

    static constexpr std::size_t NO_PLACE = ~std::size_t{0};
    static constexpr std::size_t MOST_SCANNED =
        std::is_same_v<T, std::string> ? 4 : VerbTable<T>::FIRST_BLOCK;
    static constexpr std::size_t FIRST_SLOTS = 128;
    static constexpr std::size_t MANY_SLOTS = 1 << 17;
    static constexpr std::size_t MOST_KEPT = 128;
    static constexpr std::size_t MOST_PROBES = 64;
    static constexpr std::size_t PROBES_AT_ONCE = 2; // without a call

    // NOT_FOUND for an empty slot, whose key is the empty text's.
    static std::size_t indexOf(const Slot& slot) noexcept { return UInt32{slot.number - 1}; }

    void release() noexcept {
        _pSlots.reset();
        _most = MOST_SCANNED;
        _pCrowded.reset();
    }

    // The slot count is a power of two.
    std::size_t home(HashKey key) const noexcept { return static_cast<std::size_t>(key.hash() >> _shift); }

    std::size_t behind(std::size_t place) const noexcept { return (place + 1) & _mask; }

    static bool equal(const std::string& a, std::string_view b) noexcept {
        return a.size() == b.size() && equalText(a, b);
    }
    static bool equal(const QualifiedNameEntry& a, const QualifiedNameEntry& b) noexcept { return a == b; }

    static unsigned int scan(const VerbTable<T>& values, Probe value) noexcept {
        const T* const pValues = values.firstBlock();
        for (std::size_t i = 0; i < values.ownSize(); ++i) {
            if (equal(pValues[i], value)) {
                return static_cast<unsigned int>(values.baseSize() + i);
            }
        }
        return NOT_FOUND;
    }

    Found findFurther(const VerbTable<T>& values, Probe value, HashKey key) const {
        const UInt32 size = sizeOf(value);
        std::size_t place = home(key);
        for (std::size_t probes = 0; probes < MOST_PROBES; ++probes) {
            const Slot& slot = _pSlots[place];
            if (slot.number == 0) {
                return absent(values, value, key, place);
            }
            if (slot.holds(key, size) &&
                (HashKey::isExact(size) || equal(*values.find(slot.number - 1), value))) {
                return {indexOf(slot), place};
            }
            place = behind(place);
        }
        if (_pCrowded) {
            const auto it = _pCrowded->find(value);
            if (it != _pCrowded->end()) {
                return {it->second - 1, NO_PLACE};
            }
        }
        return absent(values, value, key, NO_PLACE);
    }

    // A value that is not among the own ones and would have its place there.
    TAMO_ALWAYS_INLINE Found absent(const VerbTable<T>& values, Probe value, HashKey key,
                                    std::size_t place) const {
        return !_pBase ? Found{NOT_FOUND, place} : findBelow(values, value, key, place);
    }

    TAMO_APART Found findBelow(const VerbTable<T>& values, Probe value, HashKey key,
                               std::size_t place) const {
        return {_pBase->find(*values.base(), value, key).index, place};
    }

    void put(std::size_t place, HashKey key, UInt32 size, std::size_t number) {
        _pSlots[place] = Slot{key, size, static_cast<UInt32>(number)};
    }

    void insert(const VerbTable<T>& values, HashKey key, UInt32 size, std::size_t number) {
        const std::size_t place = freePlace(key);
        if (place != NO_PLACE) [[likely]] {
            put(place, key, size, number);
        } else {
            crowd(values, number);
        }
    }

    void crowd(const VerbTable<T>& values, std::size_t number) {
        if (!_pCrowded) {
            _pCrowded = std::make_unique<Crowded>();
        }
        _pCrowded->emplace(values.find(number - 1), static_cast<UInt32>(number));
    }

    // Few slots are filled up to three quarters and many as well; where all slots are in the processor's
    // caches and yet more than a handful, room makes the search shorter.
    void allot(std::size_t slots) {
        _pSlots = std::make_unique<Slot[]>(slots);
        _mask = slots - 1;
        _shift = 64 - std::countr_zero(slots);
        _most = slots > FIRST_SLOTS && slots < MANY_SLOTS ? slots / 2 : slots / 4 * 3;
    }

    // The placeholder of a table below, where there are slots: an empty slot is taken for its own.
    void enterPlaceholder() noexcept {
        if (_pSlots) {
            const HashKey key = keyOf(T());
            put(home(key), key, 0, 1);
        }
    }

    // Enters the own ones of the first count of values anew; of equal ones the first.
    void enter(const VerbTable<T>& values, std::size_t count) {
        if (values.base()) {
            enterPlaceholder();
        }
        for (std::size_t i = values.baseSize(); i < count; ++i) {
            insert(values, keyOf(*values.find(i)), sizeOf(*values.find(i)), i + 1);
        }
    }

    // More slots, for the last of values, whose key is key, as well. The other keys are in the slots, so that
    // no value has to be looked at.
    void grow(const VerbTable<T>& values, HashKey key, UInt32 size) {
        ValueIndex wider;
        if (!_pSlots) {
            wider.allot(FIRST_SLOTS);
            wider.enter(values, values.size() - 1);
        } else {
            const std::size_t slots = _mask + 1;
            wider.allot(slots * (slots < MANY_SLOTS / 8 ? 4 : 2));
            for (const Slot* pSlot = _pSlots.get(); pSlot != _pSlots.get() + slots; ++pSlot) {
                if (pSlot->number != 0) {
                    wider.insert(values, pSlot->key, pSlot->size, pSlot->number);
                }
            }
            if (_pCrowded) {
                for (const auto& [pValue, number] : *_pCrowded) {
                    wider.insert(values, keyOf(*pValue), sizeOf(*pValue), number);
                }
            }
        }
        wider.insert(values, key, size, values.size());
        _pSlots.swap(wider._pSlots);
        _pCrowded.swap(wider._pCrowded);
        _mask = wider._mask;
        _shift = wider._shift;
        _most = wider._most;
    }

    const ValueIndex* _pBase = nullptr;
    std::unique_ptr<Slot[]> _pSlots; // null while the values are few
    std::size_t _mask = 0;           // the number of slots less one
    int _shift = 0;
    std::size_t _most = MOST_SCANNED;   // values for which the slots are enough
    std::unique_ptr<Crowded> _pCrowded; // null when every value has a slot
};

} // namespace Tamo::FastInfoset

#endif
