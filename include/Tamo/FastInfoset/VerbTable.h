#ifndef TAMO_FASTINFOSET_VERBTABLE_H
#define TAMO_FASTINFOSET_VERBTABLE_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include <algorithm>
#include <bit>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// The value store of a vocabulary table: a list of blocks that never moves a stored value.
///
/// The first block, which belongs to the table, takes 16 values, every further one twice as many as the one
/// before it up to LARGEST_BLOCK, so a value is found by arithmetic, references stay valid while the table
/// grows (and is not moved), and few places are in wait. Values are owned; the table is used by one thread at
/// a time.
///
/// A table can be laid on another one, which never changes again: it begins with that one's values then, and
/// its own have the indexes behind them. Any number of tables can be laid on one, in any threads.
template<class T>
class TAMO_API VerbTable {
public:
    /// What the first block takes, in values.
    static constexpr std::size_t FIRST_BLOCK = 16;

    /// What the largest blocks take, in values.
    static constexpr std::size_t LARGEST_BLOCK = 32768;

    /// What truncate() leaves allocated, in values: the first four blocks.
    static constexpr std::size_t MOST_KEPT = 15 * FIRST_BLOCK;

    VerbTable() = default;

    /// The copy is laid on the same table.
    VerbTable(const VerbTable& other) : VerbTable() {
        _pBase = other._pBase;
        _baseSize = other._baseSize;
        for (std::size_t i = 0; i < other._size; ++i) {
            push_back(*other.slot(i));
        }
    }

    VerbTable(VerbTable&& other) noexcept : VerbTable() { take(other); }

    VerbTable& operator=(VerbTable other) noexcept {
        release(0);
        take(other);
        return *this;
    }

    ~VerbTable() { release(0); }

    /// Appends a value.
    void push_back(const T& value) { emplace_back(value); }

    /// Appends a value that is made of another type's, and returns it.
    template<class U>
    TAMO_ALWAYS_INLINE T& emplace_back(const U& value) {
        if (_pNext == _pEnd) [[unlikely]] {
            openBlock();
        }
        if (_size < _constructed) [[unlikely]] {
            *_pNext = value; // what truncate() has left: a string's storage is used again
        } else {
            std::construct_at(_pNext, value);
            ++_constructed;
        }
        ++_size;
        return *_pNext++;
    }

    /// Lays the table on another one, which must not change any more and is not laid on a third; null lays it
    /// on none. The table's own values are dropped, and their storage is kept as by truncate().
    void layOn(std::shared_ptr<const VerbTable> pBase) {
        _baseSize = pBase ? pBase->size() : 0;
        _pBase = std::move(pBase);
        truncate(_baseSize);
    }

    /// What the table is laid on; null where it is on none.
    const VerbTable* base() const noexcept { return _pBase.get(); }

    /// How many of the values belong to the table below.
    std::size_t baseSize() const noexcept { return _baseSize; }

    /// How many values are the table's own.
    std::size_t ownSize() const noexcept { return _size; }

    /// Number of values.
    std::size_t size() const noexcept { return _baseSize + _size; }

    /// True when there are no values.
    bool empty() const noexcept { return size() == 0; }

    /// The value at i; throws std::out_of_range "index out of range" past the last one.
    const T& operator[](std::size_t i) const {
        const T* pValue = find(i);
        if (!pValue) [[unlikely]] {
            throw std::out_of_range("index out of range");
        }
        return *pValue;
    }

    /// The same as operator[].
    const T& at(std::size_t i) const { return (*this)[i]; }

    /// The value at i, or null past the last one.
    TAMO_ALWAYS_INLINE const T* find(std::size_t i) const noexcept {
        const std::size_t own = i - _baseSize; // huge for one of the table below
        return own < _size ? slot(own) : findBelow(i);
    }

    /// The first FIRST_BLOCK of the table's own values, which stand side by side.
    const T* firstBlock() const noexcept { return reinterpret_cast<const T*>(_ownBlock); }

    /// Drops all values but the first count, not fewer than those of the table below. The places of MOST_KEPT
    /// values are kept for those to come, with the storage of strings that are not long.
    void truncate(std::size_t count) {
        tamo_assert(count >= _baseSize);
        count -= _baseSize;
        if (count >= _size) {
            return;
        }
        if (_constructed > MOST_KEPT && count <= MOST_KEPT) {
            release(MOST_KEPT);
        }
        if constexpr (std::is_same_v<T, std::string>) {
            forgetLong(count, std::min(_size, _constructed));
        }
        _size = count;
        _pNext = nullptr;
        _pEnd = nullptr;
    }

private:
    static constexpr std::size_t GROWING_BLOCKS = 12; // each but the first twice the one before it
    static constexpr std::size_t IN_GROWING = (FIRST_BLOCK << GROWING_BLOCKS) - FIRST_BLOCK;
    static constexpr std::size_t LONGEST_KEPT = 256;
    static_assert(LARGEST_BLOCK == FIRST_BLOCK << (GROWING_BLOCKS - 1));

    static std::size_t blockOf(std::size_t i) noexcept {
        return i < IN_GROWING ? static_cast<std::size_t>(std::bit_width(i / FIRST_BLOCK + 1)) - 1
                              : GROWING_BLOCKS + (i - IN_GROWING) / LARGEST_BLOCK;
    }

    static constexpr std::size_t capacityOf(std::size_t block) noexcept {
        return block < GROWING_BLOCKS ? FIRST_BLOCK << block : LARGEST_BLOCK;
    }

    static constexpr std::size_t beginOf(std::size_t block) noexcept {
        return block < GROWING_BLOCKS ? (FIRST_BLOCK << block) - FIRST_BLOCK
                                      : IN_GROWING + (block - GROWING_BLOCKS) * LARGEST_BLOCK;
    }

    TAMO_ALWAYS_INLINE T* slot(std::size_t i) const noexcept {
        if (i < IN_GROWING) [[likely]] {
            const auto block = static_cast<std::size_t>(std::bit_width(i / FIRST_BLOCK + 1)) - 1;
            return _blocks[block] + (i + FIRST_BLOCK - (FIRST_BLOCK << block));
        }
        return _largestBlocks[(i - IN_GROWING) / LARGEST_BLOCK] + (i - IN_GROWING) % LARGEST_BLOCK;
    }

    TAMO_APART const T* findBelow(std::size_t i) const noexcept {
        return i < _baseSize ? _pBase->slot(i) : nullptr;
    }

    // Gives back what the strings from begin to before end hold beyond LONGEST_KEPT octets.
    void forgetLong(std::size_t begin, std::size_t end) noexcept {
        while (begin < end) {
            const std::size_t block = blockOf(begin);
            const std::size_t behind = std::min(end, beginOf(block + 1));
            for (T* pValue = slot(begin); begin < behind; ++begin, ++pValue) {
                if (pValue->capacity() > LONGEST_KEPT) [[unlikely]] {
                    *pValue = T();
                }
            }
        }
    }

    T* ownBlock() noexcept { return reinterpret_cast<T*>(_ownBlock); }

    // Moves the contents of other here, where there are none.
    void take(VerbTable& other) noexcept {
        _pBase = std::exchange(other._pBase, nullptr);
        _baseSize = std::exchange(other._baseSize, 0);
        static_assert(std::is_nothrow_move_constructible_v<T>);
        const std::size_t own = std::min(other._constructed, FIRST_BLOCK);
        std::uninitialized_move_n(other.ownBlock(), own, ownBlock());
        std::destroy_n(other.ownBlock(), own);
        std::copy_n(other._blocks, std::min(other._blockCount, GROWING_BLOCKS), _blocks);
        _largestBlocks = std::exchange(other._largestBlocks, {});
        _blocks[0] = ownBlock();
        _blockCount = std::exchange(other._blockCount, 0);
        _size = std::exchange(other._size, 0);
        _constructed = std::exchange(other._constructed, 0);
        _pNext = nullptr;
        _pEnd = nullptr;
        other._pNext = nullptr;
        other._pEnd = nullptr;
    }

    // Goes to where the next value stands, in a new block if need be.
    TAMO_COLD void openBlock() {
        const std::size_t block = blockOf(_size);
        if (block == _blockCount) {
            addBlock();
        }
        _pNext = slot(_size);
        _pEnd = _pNext + (beginOf(block + 1) - _size);
    }

    void addBlock() {
        if (_blockCount == 0) {
            _blocks[0] = ownBlock();
        } else if (_blockCount < GROWING_BLOCKS) {
            _blocks[_blockCount] = std::allocator<T>().allocate(capacityOf(_blockCount));
        } else {
            _largestBlocks.reserve(std::bit_ceil(_largestBlocks.size() + 1));
            _largestBlocks.push_back(std::allocator<T>().allocate(LARGEST_BLOCK));
        }
        ++_blockCount;
    }

    // Destroys the values from count on and frees the blocks that hold nothing else.
    void release(std::size_t count) noexcept {
        if (_constructed <= FIRST_BLOCK) [[likely]] {
            std::destroy(ownBlock() + std::min(count, _constructed), ownBlock() + _constructed);
            _constructed = std::min(count, _constructed);
        }
        while (_constructed > count) {
            std::destroy_at(slot(--_constructed));
        }
        while (_blockCount != 0 && beginOf(_blockCount - 1) >= count) {
            --_blockCount;
            if (_blockCount >= GROWING_BLOCKS) {
                std::allocator<T>().deallocate(_largestBlocks.back(), LARGEST_BLOCK);
                _largestBlocks.pop_back();
            } else if (_blockCount != 0) {
                std::allocator<T>().deallocate(_blocks[_blockCount], capacityOf(_blockCount));
            }
        }
    }

    T* _blocks[GROWING_BLOCKS]; // as many of them as there are blocks
    std::vector<T*> _largestBlocks;
    std::size_t _blockCount = 0; // of both
    std::size_t _baseSize = 0;   // values of the table below; all counts that follow are of the own ones
    std::size_t _size = 0;
    std::size_t _constructed = 0; // values beyond _size are left from before truncate()
    T* _pNext = nullptr;          // where the next value goes, unless it is _pEnd
    T* _pEnd = nullptr;           // of the block
    std::shared_ptr<const VerbTable> _pBase;
    alignas(T) std::byte _ownBlock[FIRST_BLOCK * sizeof(T)]; // the first of them
};

} // namespace Tamo::FastInfoset

#endif
