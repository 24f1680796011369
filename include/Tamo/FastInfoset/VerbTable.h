#ifndef TAMO_FASTINFOSET_VERBTABLE_H
#define TAMO_FASTINFOSET_VERBTABLE_H

#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace Tamo::FastInfoset {

/// The value store of a vocabulary table: a list of blocks that never moves a stored value.
///
/// The first block has room for 16 values, every further one for twice as many as the one before it, so a
/// value is found by arithmetic and references stay valid while the table grows. Values are owned; the table
/// is used by one thread at a time.
template<class T>
class TAMO_API VerbTable {
public:
    /// Room in the first block, in values.
    static constexpr std::size_t FIRST_BLOCK = 16;

    /// What truncate() leaves allocated, in values: the first four blocks.
    static constexpr std::size_t MOST_KEPT = 15 * FIRST_BLOCK;

    VerbTable() = default;

    VerbTable(const VerbTable& other) : VerbTable() {
        for (std::size_t i = 0; i < other._size; ++i) {
            push_back(*other.find(i));
        }
    }

    VerbTable(VerbTable&& other) noexcept
        : _blocks(std::exchange(other._blocks, {})),
          _size(std::exchange(other._size, 0)),
          _constructed(std::exchange(other._constructed, 0)) {}

    VerbTable& operator=(VerbTable other) noexcept {
        std::swap(_blocks, other._blocks);
        std::swap(_size, other._size);
        std::swap(_constructed, other._constructed);
        return *this;
    }

    ~VerbTable() { release(0); }

    /// Appends a value.
    void push_back(const T& value) {
        if (_size < _constructed) {
            *slot(_size) = value; // what truncate() has left: a string's storage is used again
        } else {
            const std::size_t block = blockOf(_size);
            if (block == MOST_BLOCKS || !_blocks[block]) [[unlikely]] {
                addBlock(block);
            }
            std::construct_at(slot(_size), value);
            ++_constructed;
        }
        ++_size;
    }

    /// Number of values.
    std::size_t size() const noexcept { return _size; }

    /// True when there are no values.
    bool empty() const noexcept { return _size == 0; }

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
    const T* find(std::size_t i) const noexcept { return i < _size ? slot(i) : nullptr; }

    /// Drops all values but the first count. Room for MOST_KEPT values is kept for those to come, with the
    /// storage of strings that are not long.
    void truncate(std::size_t count) {
        if (count >= _size) {
            return;
        }
        if (_constructed > MOST_KEPT && count <= MOST_KEPT) {
            release(MOST_KEPT);
        }
        if constexpr (std::is_same_v<T, std::string>) {
            for (std::size_t i = count; i < _size && i < _constructed; ++i) {
                if (slot(i)->capacity() > LONGEST_KEPT) {
                    *slot(i) = std::string();
                }
            }
        }
        _size = count;
    }

private:
    static constexpr std::size_t MOST_BLOCKS = 28; // 2^32 values, all that an index can name
    static constexpr std::size_t LONGEST_KEPT = 256;

    static std::size_t blockOf(std::size_t i) noexcept {
        return static_cast<std::size_t>(std::bit_width(i / FIRST_BLOCK + 1)) - 1;
    }

    static constexpr std::size_t capacityOf(std::size_t block) noexcept { return FIRST_BLOCK << block; }

    T* slot(std::size_t i) const noexcept {
        const std::size_t block = blockOf(i);
        return _blocks[block] + (i + FIRST_BLOCK - capacityOf(block));
    }

    void addBlock(std::size_t block) {
        if (block == MOST_BLOCKS) {
            throw PoolOverflowException("Vocabulary table full");
        }
        _blocks[block] = std::allocator<T>().allocate(capacityOf(block));
    }

    // Destroys the values from count on and frees the blocks that hold nothing else.
    void release(std::size_t count) noexcept {
        while (_constructed > count) {
            std::destroy_at(slot(--_constructed));
        }
        for (std::size_t block = 0; block < MOST_BLOCKS && _blocks[block]; ++block) {
            if (capacityOf(block) - FIRST_BLOCK >= count) {
                std::allocator<T>().deallocate(_blocks[block], capacityOf(block));
                _blocks[block] = nullptr;
            }
        }
    }

    std::array<T*, MOST_BLOCKS> _blocks{};
    std::size_t _size = 0;
    std::size_t _constructed = 0; // values beyond _size are left from before truncate()
};

} // namespace Tamo::FastInfoset

#endif
