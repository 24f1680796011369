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
    EXPECT_EQ(plain.code(), 9);
    EXPECT_EQ(plain.nested(), nullptr);
    EXPECT_EQ(E("text", std::string("argument"), 4).message(), "text: argument");
    EXPECT_EQ(E("text", std::string()).message(), "text");
    EXPECT_EQ(E(7).displayText(), name);
    EXPECT_EQ(E(7).code(), 7);
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

// The message of the exception, up to the line's number.
template<class E, class Action>
std::string messageOf(int line, Action action) {
    try {
        action();
    } catch (const E& e) {
        const std::string end = ", line " + std::to_string(line) + "]";
        return e.message().ends_with(end) ? e.message().substr(0, e.message().size() - end.size()) : end;
    }
    return "nothing thrown";
}

} // namespace

TEST(Exception, EveryClassKeepsTheContract) {
    checkClass<Exception, std::exception>("Exception", "Exception");
    checkClass<LogicException, Exception>("LogicException", "Logic exception");
    checkClass<AssertionViolationException, LogicException>("AssertionViolationException",
                                                            "Assertion violation");
    checkClass<NullPointerException, LogicException>("NullPointerException", "Null pointer");
    checkClass<InvalidArgumentException, LogicException>("InvalidArgumentException", "Invalid argument");
    checkClass<InvalidAccessException, LogicException>("InvalidAccessException", "Invalid access");
    checkClass<RuntimeException, Exception>("RuntimeException", "Runtime exception");
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
    const int* pNull = nullptr;
    const std::string file = " [in file \"tests/foundation/ExceptionTest.cpp\"";
    EXPECT_EQ(messageOf<AssertionViolationException>(__LINE__, [&] { tamo_assert(!file[0] && "quoted"); }),
              "Assertion violation: !file[0] && \"quoted\"" + file);
    EXPECT_EQ(messageOf<NullPointerException>(__LINE__, [&] { tamo_check_ptr(pNull); }),
              "Assertion violation: pNull" + file);
    EXPECT_EQ(messageOf<AssertionViolationException>(__LINE__, [] { tamo_unexpected(); }),
              "Assertion violation: unexpected" + file);
    EXPECT_EQ(messageOf<Exception>(0, [&] { tamo_check_ptr(&file); }), "nothing thrown");
}
