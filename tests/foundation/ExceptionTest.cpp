#include "Tamo/Exception.h"
#include <gtest/gtest.h>
#include <memory>

using namespace Tamo;

namespace {

// Every behaviour that one exception class promises by macro, and its place in the tree.
template<class E, class Parent>
void checkClass(const char* className, const char* name) {
    SCOPED_TRACE(className);
    const E plain("text", 9);
    EXPECT_STREQ(plain.className(), className);
    EXPECT_STREQ(plain.name(), name);
    EXPECT_STREQ(plain.what(), name);
    EXPECT_EQ(plain.message(), "text");
    EXPECT_EQ(plain.displayText(), std::string(name) + ": text");
    EXPECT_EQ(plain.code(), 9);
    EXPECT_EQ(plain.nested(), nullptr);
    EXPECT_EQ(E("text", std::string("argument")).message(), "text: argument");
    EXPECT_EQ(E("text", std::string()).message(), "text");
    EXPECT_EQ(E(7).displayText(), name);
    EXPECT_EQ(E(7).code(), 7);

    const E outer("outer", E("inner", plain, 2), 3);
    const std::unique_ptr<Exception> pClone(outer.clone());
    EXPECT_STREQ(pClone->className(), className);
    try {
        pClone->rethrow();
    } catch (const Parent& e) {
        const auto* const pCopy = dynamic_cast<const E*>(&e);
        ASSERT_NE(pCopy, nullptr) << "thrown as its own class";
        EXPECT_EQ(pCopy->code(), 3);
        ASSERT_NE(pCopy->nested(), nullptr);
        EXPECT_NE(pCopy->nested(), outer.nested()) << "a copy owns its own cause";
        EXPECT_EQ(pCopy->nested()->message(), "inner");
        ASSERT_NE(pCopy->nested()->nested(), nullptr);
        EXPECT_EQ(pCopy->nested()->nested()->message(), "text");
    }
}

} // namespace

TEST(Exception, EveryClassKeepsTheContract) {
    checkClass<Exception, std::exception>("Tamo::Exception", "Exception");
    checkClass<LogicException, Exception>("Tamo::LogicException", "Logic exception");
    checkClass<AssertionViolationException, LogicException>("Tamo::AssertionViolationException",
                                                            "Assertion violation");
    checkClass<NullPointerException, LogicException>("Tamo::NullPointerException", "Null pointer");
    checkClass<InvalidArgumentException, LogicException>("Tamo::InvalidArgumentException",
                                                         "Invalid argument");
    checkClass<InvalidAccessException, LogicException>("Tamo::InvalidAccessException", "Invalid access");
    checkClass<NotImplementedException, LogicException>("Tamo::NotImplementedException", "Not implemented");
    checkClass<RuntimeException, Exception>("Tamo::RuntimeException", "Runtime exception");
    checkClass<NotFoundException, RuntimeException>("Tamo::NotFoundException", "Not found");
    checkClass<UnknownURISchemeException, RuntimeException>("Tamo::UnknownURISchemeException",
                                                            "Unknown URI scheme");
    checkClass<ExistsException, RuntimeException>("Tamo::ExistsException", "Exists already");
    checkClass<PoolOverflowException, RuntimeException>("Tamo::PoolOverflowException", "Pool overflow");
    checkClass<DataException, RuntimeException>("Tamo::DataException", "Data error");
    checkClass<SyntaxException, DataException>("Tamo::SyntaxException", "Syntax error");
    checkClass<IOException, RuntimeException>("Tamo::IOException", "I/O error");
    checkClass<FileNotFoundException, IOException>("Tamo::FileNotFoundException", "File not found");
    checkClass<OpenFileException, IOException>("Tamo::OpenFileException", "Cannot open file");
}

TEST(Exception, AssignmentReplacesEverything) {
    Exception target("old", Exception("old cause"), 1);
    const Exception source("new", Exception("new cause"), 2);
    target = source;
    target = *&target;
    EXPECT_EQ(target.message(), "new");
    EXPECT_EQ(target.code(), 2);
    ASSERT_NE(target.nested(), nullptr);
    EXPECT_EQ(target.nested()->message(), "new cause");
    target = Exception(3);
    EXPECT_EQ(target.nested(), nullptr);
}
