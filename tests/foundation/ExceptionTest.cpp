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
    EXPECT_EQ(plain.displayText(), name + ": text");
    EXPECT_EQ(plain.what(), name + ": text");
    EXPECT_EQ(plain.what(), plain.what()) << "kept";
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

// The message of the exception without this file's name.
template<class E, class Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const E& e) {
        const std::string file = "tests/foundation/ExceptionTest.cpp";
        return std::string(e.message()).replace(e.message().find(file), file.size(), "FILE");
    }
    return "nothing thrown";
}

} // namespace

TEST(Exception, EveryClassKeepsTheContract) {
    checkClass<Exception, std::exception>("Exception", "Exception");
    checkClass<AssertionViolationException, LogicException>("AssertionViolationException",
                                                            "Assertion violation");
    checkClass<NullPointerException, LogicException>("NullPointerException", "Null pointer");
    checkClass<PoolOverflowException, RuntimeException>("PoolOverflowException", "Pool overflow");
    checkClass<SyntaxException, DataException>("SyntaxException", "Syntax error");
    checkClass<OpenFileException, IOException>("OpenFileException", "Cannot open file");
    Exception target("old", Exception("old cause"), 1);
    EXPECT_STREQ(target.what(), "Exception: old");
    target = Exception("new", Exception("new cause"), 2);
    EXPECT_EQ(target.message() + target.nested()->message(), "newnew cause");
    EXPECT_STREQ(target.what(), "Exception: new");
    EXPECT_STREQ(Exception(target).what(), "Exception: new");
    // An assertion's message begins with its name, which is not said twice.
    EXPECT_STREQ(AssertionViolationException("Assertion violation: x").what(), "Assertion violation: x");
    target = Exception(3);
    EXPECT_EQ(target.nested(), nullptr);
}

TEST(Bugcheck, MessageHasConditionRelativeFileAndLine) {
    const int* p = nullptr;
    EXPECT_NO_THROW(tamo_check_ptr(&p));
#line 7
    EXPECT_EQ(messageOf<AssertionViolationException>([&] { tamo_assert(p && "quoted"); }),
              "Assertion violation: p && \"quoted\" [in file \"FILE\", line 7]");
#line 17
    EXPECT_EQ(messageOf<NullPointerException>([&] { tamo_check_ptr(p); }),
              "Assertion violation: p [in file \"FILE\", line 17]");
#line 27
    EXPECT_EQ(messageOf<AssertionViolationException>([] { tamo_unexpected(); }),
              "Assertion violation: unexpected [in file \"FILE\", line 27]");
}
