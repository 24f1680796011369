#include "AllocationCount.h"
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr auto NEVER = static_cast<std::size_t>(-1);

std::atomic<std::size_t> number{0};
std::atomic<std::size_t> octets{0};
std::atomic<std::size_t> left{NEVER};

} // namespace

void* operator new(std::size_t size) {
    ++number;
    octets += size;
    void* const p = left == NEVER || left-- != 0 ? std::malloc(size) : nullptr;
    return p ? p : throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace Tamo::FastInfoset::Test {

AllocationCount::AllocationCount() {
    ::number = 0;
    ::octets = 0;
}

AllocationCount::~AllocationCount() {
    failAt(NEVER);
}

std::size_t AllocationCount::number() const {
    return ::number;
}

std::size_t AllocationCount::octets() const {
    return ::octets;
}

void AllocationCount::failAt(std::size_t count) {
    left = count;
}

} // namespace Tamo::FastInfoset::Test
