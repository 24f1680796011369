#include "Tamo/XML/AttributesImpl.h"
#include <array>
#include <gtest/gtest.h>
#include <ranges>
#include <string>

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

namespace {

/// A list of an application's own, which writes no look-ups.
class Pairs : public Attributes {
public:
    using Attributes::getType;
    using Attributes::getValue;
    int getLength() const override { return 3; }
    const std::string& getURI(int i) const override { return _uris.at(static_cast<std::size_t>(i)); }
    const std::string& getLocalName(int) const override { return _localName; }
    const std::string& getQName(int i) const override { return _qnames.at(static_cast<std::size_t>(i)); }
    const std::string& getType(int i) const override { return _types.at(static_cast<std::size_t>(i)); }
    const std::string& getValue(int i) const override { return _values.at(static_cast<std::size_t>(i)); }

private:
    const std::string _localName{"a"};
    const std::array<std::string, 3> _uris{"", "u", "v"};
    const std::array<std::string, 3> _qnames{"a", "p:a", "q:a"};
    const std::array<std::string, 3> _types{"CDATA", "ID", "NMTOKEN"};
    const std::array<std::string, 3> _values{"1", "2", "3"};
};

} // namespace

TEST(Attributes, HaveTheSameLookUpsWhetherTheListWritesThemOrNot) {
    const Pairs pairs;
    const AttributesImpl copy(pairs);
    struct Case {
        const char* uri;
        const char* localName;
        const char* qname;
        int index;
        const char* type;
        const char* value;
    };
    const Case cases[] = {{"", "a", "a", 0, "CDATA", "1"},      {"u", "a", "p:a", 1, "ID", "2"},
                          {"v", "a", "q:a", 2, "NMTOKEN", "3"}, {"w", "a", "r:a", -1, "", ""},
                          {"u", "b", "p:b", -1, "", ""},        {"a", "u", "", -1, "", ""}};
    for (const Attributes* pList :
         {static_cast<const Attributes*>(&pairs), static_cast<const Attributes*>(&copy)}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(c.qname);
            EXPECT_EQ(pList->getIndex(c.uri, c.localName), c.index);
            EXPECT_EQ(pList->getIndex(c.qname), c.index);
            EXPECT_EQ(pList->getType(c.uri, c.localName), c.type);
            EXPECT_EQ(pList->getType(c.qname), c.type);
            EXPECT_EQ(pList->getValue(c.uri, c.localName), c.value);
            EXPECT_EQ(pList->getValue(c.qname), c.value);
            EXPECT_EQ(pList->find(c.localName, c.uri).value_or(""), c.value);
            EXPECT_EQ(pList->find(c.localName, c.uri).has_value(), c.index >= 0);
        }
        static_assert(std::ranges::forward_range<const Attributes>);
        std::string all;
        for (auto [uri, localName, qname, value] : *pList) {
            all.append(uri).append("|").append(localName).append("|").append(qname).append("=").append(
                value) += ' ';
        }
        EXPECT_EQ(all, "|a|a=1 u|a|p:a=2 v|a|q:a=3 ");
    }
}
