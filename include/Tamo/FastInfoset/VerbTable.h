#ifndef TAMO_FASTINFOSET_VERBTABLE_H
#define TAMO_FASTINFOSET_VERBTABLE_H

#include <bit>
#include <cstddef>
#include <stdexcept>
#include <vector>

namespace Tamo::FastInfoset {

/// The value store of a vocabulary table: a list of blocks that never moves a stored value.
///
/// The first block has room for 256 values, every further one for twice as many as the one before it, so a
/// value is found by arithmetic and references stay valid while the table grows. Values are owned; the table
/// is used by one thread at a time.
template<class T>
class VerbTable {
public:
    /// Room in the first block, in values.
    static constexpr std::size_t FIRST_BLOCK = 256;

    VerbTable() = default;

    VerbTable(const VerbTable& other) : _size(other._size) {
        _blocks.reserve(other._blocks.size());
        for (const Block& block : other._blocks) {
            addBlock();
            _blocks.back().insert(_blocks.back().end(), block.begin(), block.end());
        }
    }

    VerbTable(VerbTable&& other) noexcept : _blocks(std::move(other._blocks)), _size(other._size) {
        other._blocks.clear();
        other._size = 0;
    }

    VerbTable& operator=(VerbTable other) noexcept {
        _blocks.swap(other._blocks);
        _size = other._size;
        return *this;
    }

    ~VerbTable() = default;

    /// Appends a value.
    void push_back(const T& value) {
        if (_blocks.empty() || _blocks.back().size() == capacityOf(_blocks.size() - 1)) {
            addBlock();
        }
        _blocks.back().push_back(value);
        ++_size;
    }

    /// Number of values.
    std::size_t size() const noexcept { return _size; }

    /// True when no value was ever appended.
    bool empty() const noexcept { return _blocks.empty(); }

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
    const T* find(std::size_t i) const noexcept {
        if (i >= _size) [[unlikely]] {
            return nullptr;
        }
        const std::size_t block = static_cast<std::size_t>(std::bit_width(i / FIRST_BLOCK + 1)) - 1;
        return &_blocks[block][i + FIRST_BLOCK - capacityOf(block)];
    }

    /// Drops all values but the first count (at most FIRST_BLOCK of them are kept), and the room beyond the
    /// first block.
    void truncate(std::size_t count) {
        if (_blocks.size() > 1) {
            _blocks.resize(1);
        }
        if (!_blocks.empty() && _blocks.front().size() > count) {
            _blocks.front().erase(_blocks.front().begin() + static_cast<std::ptrdiff_t>(count),
                                  _blocks.front().end());
        }
        _size = _blocks.empty() ? 0 : _blocks.front().size();
    }

private:
    using Block = std::vector<T>;

    static constexpr std::size_t capacityOf(std::size_t block) noexcept { return FIRST_BLOCK << block; }

    void addBlock() {
        Block block;
        block.reserve(capacityOf(_blocks.size()));
        _blocks.push_back(std::move(block));
    }

    std::vector<Block> _blocks;
    std::size_t _size = 0;
};

} // namespace Tamo::FastInfoset

#endif
