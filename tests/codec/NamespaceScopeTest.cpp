// Objects at namespace scope, in a source that includes nothing but their headers: they are built before what
// other sources have there.
#include "Tamo/FastInfoset/DocumentVocabulary.h"

namespace {

const Tamo::FastInfoset::DocumentVocabulary VOCABULARY(Tamo::FastInfoset::DocumentVocabulary::VOC_MAP);

}

#include "Tamo/FastInfoset/FastInfosetParser.h"

namespace {

Tamo::FastInfoset::FastInfosetParser parser;
Tamo::FastInfoset::FastInfosetParser parserOverVocabulary(VOCABULARY);

} // namespace

#include "DocumentTest.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"

namespace Tamo::FastInfoset::Test {
namespace {

std::ostringstream octets;
FastInfosetWriter writer(octets, false, VOCABULARY);
std::ostringstream text;
XML::XMLWriter xmlWriter(text);
XML::SAXParser saxParser;

TEST(NamespaceScopeTest, ObjectsWorkThere) {
    EXPECT_EQ(VOCABULARY.value(DocumentVocabulary::NAMESPACE_NAME, 1),
              "http://www.w3.org/XML/1998/namespace");
    saxParser.setContentHandler(&writer);
    const std::string xml = "<p:a xmlns:p='u' xml:lang='en'>text</p:a>";
    saxParser.parseMemoryNP(xml.data(), xml.size());
    for (FastInfosetParser* const pParser : {&parser, &parserOverVocabulary}) {
        pParser->initialize(&xmlWriter);
        parseMemory(*pParser, octets.str());
    }
    const std::string again = R"(<p:a xmlns:p="u" xml:lang="en">text</p:a>)";
    EXPECT_EQ(text.str(), again + again);
}

} // namespace
} // namespace Tamo::FastInfoset::Test
