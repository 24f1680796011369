#include "Tamo/Exception.h"
#include "Tamo/Bugcheck.h"
#include <gtest/gtest.h>

using namespace Tamo;

namespace {

// Every behaviour that an exception class promises, and its place in the tree.
template<class E, class Parent>
void checkClass(const std::string& className, const std::string& name) {
    SCOPED_TRACE(className);
    const E plain("text", 9);
    EXPECT_EQ(plain.className(), "Tamo::" + className);
    EXPECT_EQ(plain.name(), name);
    EXPECT_EQ(plain.what(), name);
    EXPECT_EQ(plain.displayText(), name + ": text");
    EXPECT_TRUE(plain.code() == 9 && !plain.nested());
    EXPECT_EQ(E("text", std::string("argument"), 4).message(), "text: argument");
    EXPECT_TRUE(E(7).displayText() == name && E(7).code() == 7);
    const E outer("outer", E("inner", plain, 2), 3);
    try {
        const std::unique_ptr<Exception> pClone(outer.clone());
        pClone->rethrow();
    } catch (const Parent& e) {
        const auto* const pCopy = dynamic_cast<const E*>(&e);
        ASSERT_NE(pCopy, nullptr) << "thrown as its own class";
        EXPECT_EQ(pCopy->code(), 3);
        ASSERT_TRUE(pCopy->nested() && pCopy->nested()->nested());
        EXPECT_NE(pCopy->nested(), outer.nested()) << "a copy owns its own cause";
        EXPECT_EQ(pCopy->nested()->nested()->message(), "text");
    }
}

template<class E, class Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const E& e) {
        return e.message();
    }
    return "nothing thrown";
}

std::string expected(const std::string& condition, int line) {
    return "Assertion violation: " + condition + " [in file \"tests/foundation/ExceptionTest.cpp\", line " +
           std::to_string(line) + "]";
}

} // namespace

TEST(Exception, EveryClassKeepsTheContract) {
    checkClass<Exception, std::exception>("Exception", "Exception");
    checkClass<AssertionViolationException, LogicException>("AssertionViolationException",
                                                            "Assertion violation");
    checkClass<NullPointerException, LogicException>("NullPointerException", "Null pointer");
    checkClass<InvalidAccessException, LogicException>("InvalidAccessException", "Invalid access");
    checkClass<PoolOverflowException, RuntimeException>("PoolOverflowException", "Pool overflow");
    checkClass<SyntaxException, DataException>("SyntaxException", "Syntax error");
    checkClass<OpenFileException, IOException>("OpenFileException", "Cannot open file");
    Exception target("old", Exception("old cause"), 1);
    target = Exception("new", Exception("new cause"), 2);
    EXPECT_EQ(target.message() + target.nested()->message(), "newnew cause");
    target = Exception(3);
    EXPECT_EQ(target.nested(), nullptr);
}

TEST(Bugcheck, MessageHasConditionRelativeFileAndLine) {
    const int* p = nullptr;
    const int line = __LINE__; // the checks below follow it line by line
    std::string texts[] = {messageOf<AssertionViolationException>([&] { tamo_assert(p && "quoted"); }),
                           messageOf<NullPointerException>([&] { tamo_check_ptr(p); }),
                           messageOf<AssertionViolationException>([] { tamo_unexpected(); }),
                           messageOf<Exception>([&] { tamo_check_ptr(&line); })};
    EXPECT_EQ(texts[0], expected("p && \"quoted\"", line + 1));
    EXPECT_EQ(texts[1], expected("p", line + 2));
    EXPECT_EQ(texts[2], expected("unexpected", line + 3));
    EXPECT_EQ(texts[3], "nothing thrown");
}
