#include "ExpatMemory.h"
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace Tamo::XML {

namespace {

thread_local ExpatMemory* pCurrent = nullptr;

} // namespace

/// Stands in front of what Expat gets.
struct alignas(std::max_align_t) ExpatMemory::Block {
    ExpatMemory* pOwner;
    std::size_t size;
};

ExpatMemory::ExpatMemory() noexcept : _pOuter(std::exchange(pCurrent, this)) {}

ExpatMemory::~ExpatMemory() {
    pCurrent = _pOuter;
}

const XML_Memory_Handling_Suite& ExpatMemory::suite() noexcept {
    static constexpr XML_Memory_Handling_Suite SUITE{&allocate, &reallocate, &release};
    return SUITE;
}

bool ExpatMemory::take(std::size_t size) noexcept {
    _taken += size;
    if (_taken > _most || _taken < size) [[unlikely]] {
        _taken -= size;
        _isExceeded = true;
        return false;
    }
    return true;
}

void* ExpatMemory::allocate(std::size_t size) {
    ExpatMemory* const pOwner = pCurrent;
    if (size > SIZE_MAX - sizeof(Block) || !pOwner->take(size)) [[unlikely]] {
        return nullptr;
    }
    auto* const pBlock = static_cast<Block*>(std::malloc(sizeof(Block) + size));
    if (!pBlock) [[unlikely]] {
        pOwner->_taken -= size;
        return nullptr;
    }
    *pBlock = {pOwner, size};
    return pBlock + 1;
}

void* ExpatMemory::reallocate(void* p, std::size_t size) {
    if (!p) {
        return allocate(size);
    }
    Block* const pOld = static_cast<Block*>(p) - 1;
    ExpatMemory& owner = *pOld->pOwner;
    const std::size_t oldSize = pOld->size;
    if (size > SIZE_MAX - sizeof(Block) || (size > oldSize && !owner.take(size - oldSize))) {
        return nullptr;
    }
    auto* const pNew = static_cast<Block*>(std::realloc(pOld, sizeof(Block) + size));
    if (!pNew) {
        owner._taken -= size > oldSize ? size - oldSize : 0;
        return nullptr;
    }
    owner._taken -= size < oldSize ? oldSize - size : 0;
    pNew->size = size;
    return pNew + 1;
}

void ExpatMemory::release(void* p) {
    if (p) {
        Block* const pBlock = static_cast<Block*>(p) - 1;
        pBlock->pOwner->_taken -= pBlock->size;
        std::free(pBlock);
    }
}

} // namespace Tamo::XML
