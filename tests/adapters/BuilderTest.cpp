// What no XML text says: names without prefixes, declarations that contradict names, strings and places that
// XML does not have. The events come from the test, so that no reader is in between.
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include "Tamo/XML/AttributesImpl.h"
#include "TreeTexts.h"
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace Tamo::FastInfoset::Adapters::Test {
namespace {

using Builder = XML::DefaultHandler;
using Events = std::function<void(Builder&)>;

// "uri|local name|qualified name" and for attributes "=value" behind it.
struct Element {
    std::string name;
    std::vector<std::string> attributes{};
};

std::vector<std::string> split(const std::string& text) {
    const std::size_t a = text.find('|');
    const std::size_t b = text.find('|', a + 1);
    return {text.substr(0, a), text.substr(a + 1, b - a - 1), text.substr(b + 1)};
}

void start(Builder& builder, const Element& element) {
    XML::AttributesImpl attributes;
    for (const std::string& attribute : element.attributes) {
        const std::vector<std::string> parts = split(attribute);
        const std::size_t equals = parts[2].find('=');
        attributes.addAttribute(parts[0], parts[1], parts[2].substr(0, equals), "",
                                parts[2].substr(equals + 1));
    }
    const std::vector<std::string> parts = split(element.name);
    builder.startElement(parts[0], parts[1], parts[2], attributes);
}

void end(Builder& builder) {
    builder.endElement("", "", "");
}

std::string pugixmlText(const Events& events, UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    pugi::xml_document document;
    PugixmlTree::fill(document, [&](PugixmlTree& tree) {
        TreeBuilder<PugixmlTree> builder(tree, maxDepth);
        events(builder);
    });
    std::ostringstream out;
    document.print(out, "", pugi::format_raw | pugi::format_no_declaration);
    return out.str();
}

std::string libxmlText(const Events& events, UInt64 maxDepth = LoadOptions::MAX_DEPTH) {
    return textOf(Detail::buildDocument([&](LibxmlTree& tree) {
                      TreeBuilder<LibxmlTree> builder(tree, maxDepth);
                      events(builder);
                  }).get());
}

} // namespace

TEST(TreeBuilder, NamesGetPrefixesThatAreBoundToTheirNamespaces) {
    const struct {
        const char* name;
        Events events;
        const char* text;
    } rows[] = {
        {"the default mode's names",
         [](Builder& b) {
             b.startPrefixMapping("p", "urn:p");
             b.startPrefixMapping("", "urn:d");
             start(b, {"urn:d|a|", {"urn:p|x|=1", "urn:d|y|=2", "|z|=3"}});
             start(b, {"urn:p|b|"});
         },
         R"(<a xmlns:p="urn:p" xmlns="urn:d" p:x="1" xmlns:ns1="urn:d" ns1:y="2" z="3"><p:b/></a>)"},
        {"nothing declared",
         [](Builder& b) {
             start(b, {"urn:p|a|p:a", {"urn:p|x|p:x=1", "urn:q|x|p:x=2"}});
             start(b, {"urn:q|b|", {"|c|=3"}});
             start(b, {"|d|d"});
         },
         R"(<p:a xmlns:p="urn:p" p:x="1" xmlns:ns1="urn:q" ns1:x="2"><ns1:b c="3"><d/></ns1:b></p:a>)"},
        {"no namespace within a default one, and against it",
         [](Builder& b) {
             b.startPrefixMapping("", "urn:d");
             start(b, {"urn:d|a|a"});
             b.startPrefixMapping("", "urn:e");
             start(b, {"|b|b"});
             start(b, {"urn:e|c|"});
         },
         R"(<a xmlns="urn:d"><b xmlns=""><c xmlns="urn:e"/></b></a>)"},
        {"declarations that XML does not have",
         [](Builder& b) {
             b.startPrefixMapping("xml", "urn:x");
             b.startPrefixMapping("xmlns", "urn:x");
             b.startPrefixMapping("p", "");
             b.startPrefixMapping("q", "http://www.w3.org/2000/xmlns/");
             b.startPrefixMapping("r", "urn:r");
             b.startPrefixMapping("r", "urn:s");
             b.startPrefixMapping("1", "urn:1");
             start(b, {"urn:s|a|r:a", {"http://www.w3.org/XML/1998/namespace|id|=i", "urn:1|y|1:y=1"}});
         },
         R"(<ns1:a xmlns:r="urn:r" xmlns:ns1="urn:s" xml:id="i" xmlns:ns2="urn:1" ns2:y="1"/>)"},
        {"the same names under other declarations",
         [](Builder& b) {
             start(b, {"|l|l"});
             for (const char* const prefix : {"p", "q"}) {
                 b.startPrefixMapping(prefix, "urn:p");
                 start(b, {"urn:p|a|", {"urn:p|x|=1"}});
                 end(b);
             }
         },
         R"(<l><p:a xmlns:p="urn:p" p:x="1"/><q:a xmlns:q="urn:p" q:x="1"/></l>)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string text = pugixmlText(row.events);
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(libxmlText(row.events), textOf(parsed(row.text).get())); // a parser agrees
    }
}

TEST(TreeBuilder, TreesHoldWhatXMLTextCouldHaveGiven) {
    const auto within = [](Events events) {
        return [events = std::move(events)](Builder& b) {
            start(b, {"|a|a"});
            events(b);
        };
    };
    const auto characters = [](const std::string& text) {
        return [text](Builder& b) { b.characters(text.data(), 0, static_cast<int>(text.size())); };
    };
    const auto comment = [](const std::string& text) {
        return [text](Builder& b) { b.comment(text.data(), 0, static_cast<int>(text.size())); };
    };
    const auto instruction = [](const std::string& target, const std::string& data) {
        return [target, data](Builder& b) { b.processingInstruction(target, data); };
    };
    const auto element = [](const Element& e) { return [e](Builder& b) { start(b, e); }; };
    const std::string nul(1, '\0');
    const Events refused[] = {
        element({"|a b|"}),
        element({"|a" + nul + "|"}),
        element({"|\xC3|"}),
        element({"||"}),
        element({"|a:b|"}),
        element({"http://www.w3.org/2000/xmlns/|a|"}),
        element({"urn:" + nul + "|a|"}),
        element({"|a|", {"|xmlns|=u"}}),
        element({"|a|", {"u|x|p:x=1", "|x|=2", "u|x|q:x=3"}}),
        element({"|a|", {"|b|=", "|c|=", "|d|=", "|e|=", "|f|=", "|g|=", "|h|=", "|i|=", "|b|="}}),
        element({"|a|", {"|x|=" + nul}}),
        element({"|a|", {"|x|=\xED\xA0\x80"}}),
        within(characters("text" + nul)),
        within(characters("a text of more than eight \xFF octets and a control")),
        within(characters("a line\n that is long enough for blocks of octets, with a \x01 in it, and more")),
        within(comment("a--b")),
        within(comment("a-")),
        within(instruction("a b", "")),
        within(instruction("Xml", "")),
        within(instruction("a", "?>")),
        within([](Builder& b) { b.skippedEntity("a;b"); }),
        within([](Builder& b) { b.startDTD("", "", "s"); }),
        [](Builder& b) { b.startDTD("", "", "'\""); },
        [](Builder& b) { b.startDTD("", "a\"b", "s"); },
        characters("text"),
        [&](Builder& b) {
            start(b, {"|a|a"});
            end(b);
            start(b, {"|a|a"});
        },
        [](Builder& b) {
            for (int i = 0; i < 101; ++i) {
                start(b, {"|a|a"});
            }
        },
    };
    for (const Events& events : refused) {
        SCOPED_TRACE(&events - refused);
        EXPECT_THROW(pugixmlText(events, 100), FISException);
        EXPECT_THROW(libxmlText(events, 100), FISException);
    }
    EXPECT_THROW(loadDocument(std::string_view("\xE0\x00\x00\x01\x00\xF0", 6), {.strict = false}),
                 FISException)
        << "no element";
}

// Chunks become one text, and values text; a reference is a node of libxml2's alone.
TEST(TreeBuilder, TextIsJoinedAndTypedDataIsText) {
    std::ostringstream octets;
    FastInfosetWriter writer(octets, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    writer.startDocument();
    writer.startDTD("", "", "s.dtd"), writer.endDTD();
    writer.startElement("a");
    const std::string large(70000, 'x');
    for (int i = 0; i < 3; ++i) {
        writer.text("short "), writer.text(large);
    }
    writer.text(7);
    writer.startCDATA(), writer.text("]]>"), writer.endCDATA();
    writer.text(1.5);
    writer.skippedEntity("e");
    writer.endElement();
    writer.endDocument();

    const std::string text = "short " + large + "short " + large + "short " + large + "7";
    const LibxmlDocument pTree = loadDocument(octets.str());
    EXPECT_EQ(textOf(pTree.get()), "!a  s.dtd\n<a>\n 3  " + text + "\n 4  ]]>\n 3  1.5\n 5 e \n");
    pugi::xml_document document;
    loadDocument(octets.str(), document);
    EXPECT_EQ(textOf(document.document_element()), "2 a \n 3  " + text + "\n 4  ]]>\n 3  1.5&e;\n");
    EXPECT_EQ(std::string(document.first_child().value()), "a SYSTEM \"s.dtd\"");
    std::ostringstream saved;
    save(pTree.get(), saved);
    EXPECT_EQ(textOf(loadDocument(saved.str()).get()), textOf(pTree.get()));
}

} // namespace Tamo::FastInfoset::Adapters::Test
