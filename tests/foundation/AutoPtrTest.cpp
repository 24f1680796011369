#include "Tamo/AutoPtr.h"
#include "Tamo/RefCountedObject.h"
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Tamo;

namespace {

struct Base : RefCountedObject {};

struct Counted : Base {
    explicit Counted(int& live) : _live(live) { ++_live; }
    int& _live;

protected:
    ~Counted() override { --_live; }
};

} // namespace

TEST(AutoPtr, CountsEveryHolderAndDeletesWithTheLast) {
    int live = 0;
    {
        AutoPtr<Counted> first(new Counted(live));
        EXPECT_EQ(first->referenceCount(), 1);
        AutoPtr<Counted> second = first;
        AutoPtr<Base> base(second);
        AutoPtr<Counted> shared(first.get(), true);
        EXPECT_EQ(first->referenceCount(), 4);
        AutoPtr<Counted> moved(std::move(second));
        EXPECT_TRUE(second.isNull()); // NOLINT: the state after a move is documented
        EXPECT_EQ(first->referenceCount(), 4);
        AutoPtr<Counted>& alias = moved;
        moved = alias;
        EXPECT_EQ(first->referenceCount(), 4);
        first = new Counted(live);
        EXPECT_EQ(live, 2);
        first = nullptr;
        EXPECT_EQ(live, 1);
        shared = moved = nullptr;
        EXPECT_EQ(base->referenceCount(), 1);
        EXPECT_EQ(live, 1);
    }
    EXPECT_EQ(live, 0);
}

TEST(AutoPtr, NullIsComparableAndRefusesAccess) {
    const AutoPtr<Base> null;
    EXPECT_TRUE(null == nullptr && !null && null.isNull() && null.get() == nullptr);
    EXPECT_THROW(*null, NullPointerException);
    EXPECT_THROW(null->referenceCount(), NullPointerException);
}

TEST(AutoPtr, CountIsExactWhenThreadsShareAnObject) {
    int live = 0;
    {
        const AutoPtr<Counted> object(new Counted(live));
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([object] {
                for (int n = 0; n < 10000; ++n) {
                    const AutoPtr<Counted> copy(object);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
        EXPECT_EQ(object->referenceCount(), 1);
    }
    EXPECT_EQ(live, 0);
}
