#ifndef TAMO_TESTS_ALLOCATIONCOUNT_H
#define TAMO_TESTS_ALLOCATIONCOUNT_H

#include <cstddef>

namespace Tamo::FastInfoset::Test {

/// Counts what the program takes from operator new, which this replaces, from its construction on. One at a
/// time.
class AllocationCount {
public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    std::size_t number() const; ///< how many allocations
    std::size_t octets() const; ///< what they asked for in all, whether returned or not

    /// Lets allocation number count from now on fail with std::bad_alloc, 0 being the next.
    void failAt(std::size_t count);
};

} // namespace Tamo::FastInfoset::Test

#endif
