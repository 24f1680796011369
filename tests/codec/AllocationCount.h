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
    std::size_t peak() const;   ///< the most octets that were held at a time, beyond those held before

    /// The octets that are held now, beyond those held before; negative when some of those were given back.
    std::ptrdiff_t held() const;

    /// Lets allocation number count from now on fail with std::bad_alloc, 0 being the next.
    void failAt(std::size_t count);
    /// No further one.
    void failNever();
    /// Whether the one told to failAt has failed.
    bool hasFailed() const;
};

} // namespace Tamo::FastInfoset::Test

#endif
