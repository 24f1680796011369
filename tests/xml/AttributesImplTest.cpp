#include "Tamo/XML/AttributesImpl.h"
#include <gtest/gtest.h>

using namespace Tamo::XML;

TEST(AttributesImpl, ReusesItsSlotsWithoutShowingOldContents) {
    AttributesImpl list;
    const std::string longValue(100, 'v');
    list.addAttribute("u", "a", "p:a", "ID", longValue);
    list.addAttribute("", "b", "b", "CDATA", "2");
    const char* pStorage = list.getValue(0).data();

    list.clear();
    EXPECT_EQ(list.getLength(), 0);
    EXPECT_EQ(list.getIndex("u", "a"), -1);
    EXPECT_EQ(list.getValue("p:a"), "");
    EXPECT_THROW(list.getValue(0), Tamo::AssertionViolationException);

    list.addAttribute("", "c", "c", "CDATA", longValue);
    EXPECT_EQ(list.getValue(0).data(), pStorage);
    EXPECT_EQ(list.getIndex("c"), 0);
    EXPECT_THROW(list.getURI(-1), Tamo::AssertionViolationException);

    AttributesImpl copy(list);
    copy.addAttribute("u", "d", "", "", "4");
    list = copy;
    EXPECT_EQ(list.getLength(), 2);
    EXPECT_EQ(list.getValue("u", "d"), "4");
    list.removeAttribute(0);
    EXPECT_EQ(list.getLength(), 1);
    EXPECT_EQ(list.getIndex("u", "d"), 0);
    list.setAttributes(static_cast<const Attributes&>(list));
    EXPECT_EQ(list.getLength(), 1);
}
