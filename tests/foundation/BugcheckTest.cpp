#include "Tamo/Bugcheck.h"
#include <gtest/gtest.h>

using namespace Tamo;

namespace {

template<class E, class Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const E& e) {
        EXPECT_STREQ(e.className(), E(0).className());
        return e.message();
    }
    return "nothing thrown";
}

std::string expected(const std::string& condition, int line) {
    return "Assertion violation: " + condition + " [in file \"tests/foundation/BugcheckTest.cpp\", line " +
           std::to_string(line) + "]";
}

} // namespace

TEST(Bugcheck, MessageHasConditionRelativeFileAndLine) {
    int line = 0;
    const int* pNull = nullptr;
    std::string message = messageOf<AssertionViolationException>([&] {
        line = __LINE__ + 1;
        tamo_assert(line < 0 && "quoted");
    });
    EXPECT_EQ(message, expected("line < 0 && \"quoted\"", line));
    message = messageOf<NullPointerException>([&] {
        line = __LINE__ + 1;
        tamo_check_ptr(pNull);
    });
    EXPECT_EQ(message, expected("pNull", line));
    message = messageOf<AssertionViolationException>([&] {
        line = __LINE__ + 1;
        tamo_unexpected();
    });
    EXPECT_EQ(message, expected("unexpected", line));
    EXPECT_NO_THROW({
        tamo_assert(line > 0);
        tamo_check_ptr(&line);
    });
}
