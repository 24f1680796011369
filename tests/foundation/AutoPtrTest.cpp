#include "Tamo/AutoPtr.h"
#include "Tamo/RefCountedObject.h"
#include <gtest/gtest.h>

using namespace Tamo;

namespace {

struct Base : RefCountedObject {};

struct Counted : Base {
    explicit Counted(int& live) : _live(live) { ++_live; }
    ~Counted() override { --_live; }
    int& _live;
};

} // namespace

TEST(AutoPtr, CountsEveryHolderAndDeletesWithTheLast) {
    int live = 0;
    {
        AutoPtr<Counted> first(new Counted(live));
        AutoPtr<Counted> second = first;
        const AutoPtr<Base> base(second);
        AutoPtr<Counted> shared = AutoPtr<Counted>::share(first.get());
        AutoPtr<Counted> moved(std::move(second));
        moved = *&moved;
        EXPECT_EQ(first->referenceCount(), 4);
        first = new Counted(live);
        EXPECT_EQ(live, 2);
        first = nullptr;
        EXPECT_EQ(live, 1);
        shared = moved = nullptr;
        EXPECT_EQ(base->referenceCount(), 1);
        EXPECT_TRUE(first == nullptr && !first && first.isNull() && second.isNull() && base != nullptr);
        EXPECT_THROW(*first, NullPointerException);
    }
    EXPECT_EQ(live, 0);
}
