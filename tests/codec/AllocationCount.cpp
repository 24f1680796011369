#include "AllocationCount.h"
#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

constexpr auto NEVER = static_cast<std::size_t>(-1);

std::atomic<std::size_t> number{0};
std::atomic<std::size_t> octets{0};
std::atomic<std::size_t> left{NEVER};
std::atomic<std::size_t> live{0};
std::atomic<std::size_t> peak{0};
std::size_t before = 0;

void release(void* p) noexcept {
    live -= malloc_usable_size(p);
    std::free(p);
}

} // namespace

void* operator new(std::size_t size) {
    ++number;
    octets += size;
    void* const p = left == NEVER || left-- != 0 ? std::malloc(size) : nullptr;
    if (!p) {
        throw std::bad_alloc();
    }
    const std::size_t now = live += malloc_usable_size(p);
    if (now > peak) {
        peak = now; // of several threads one may be missed
    }
    return p;
}
void operator delete(void* p) noexcept {
    release(p);
}
void operator delete(void* p, std::size_t) noexcept {
    release(p);
}

namespace Tamo::FastInfoset::Test {

AllocationCount::AllocationCount() {
    ::number = 0;
    ::octets = 0;
    before = live;
    ::peak = before;
}

AllocationCount::~AllocationCount() {
    failNever();
}

std::size_t AllocationCount::number() const {
    return ::number;
}

std::size_t AllocationCount::octets() const {
    return ::octets;
}

std::size_t AllocationCount::peak() const {
    return ::peak - before;
}

std::ptrdiff_t AllocationCount::held() const {
    return static_cast<std::ptrdiff_t>(live - before);
}

void AllocationCount::failAt(std::size_t count) {
    left = count;
}

void AllocationCount::failNever() {
    left = NEVER;
}

bool AllocationCount::hasFailed() const {
    return left == NEVER; // which is where counting down from 0 leads
}

} // namespace Tamo::FastInfoset::Test
