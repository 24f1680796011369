// Trees from XML text, from Fast Infoset, and from what was saved of a tree, compared node by node; and
// damaged documents.
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "Tamo/FastInfoset/adapters/pugixml.h"
#include "TreeTexts.h"
#include <gtest/gtest.h>
#include <sstream>

namespace Tamo::FastInfoset::Adapters::Test {
namespace {

// What the ways of reading give, all of them alike.
std::string libxmlTree(const std::string& octets, bool strict) {
    const std::string tree = textOf(loadDocument(octets, {.strict = strict}).get());
    std::istringstream in(octets);
    EXPECT_EQ(textOf(loadDocument(in, {.strict = strict}).get()), tree);
    FastInfosetReader reader(nullptr);
    reader.setStrict(strict);
    reader.open(octets);
    EXPECT_EQ(textOf(loadDocument(reader).get()), tree);
    return tree;
}

std::string pugixmlTree(const std::string& octets, bool strict) {
    pugi::xml_document document;
    loadDocument(octets, document, {.strict = strict});
    const std::string tree = textOf(document);
    std::istringstream in(octets);
    loadDocument(in, document, {.strict = strict});
    EXPECT_EQ(textOf(document), tree);
    FastInfosetReader reader(nullptr);
    reader.setStrict(strict);
    reader.open(octets);
    loadDocument(reader, document);
    EXPECT_EQ(textOf(document), tree);
    return tree;
}

} // namespace

TEST(AdapterRoundTrip, TreesFromTextAndFromFastInfosetAreEqual) {
    std::size_t compared = 0;
    for (const auto& file : sampleFiles()) {
        SCOPED_TRACE(file.string());
        const std::string xml = contentOf(file);
        const LibxmlDocument pFromText = parsed(xml);
        if (!pFromText) {
            continue; // not a document of XML
        }
        const std::string libxmlText = textOf(pFromText.get());
        const std::string octets = encoded(xml);
        EXPECT_EQ(libxmlTree(octets, true), libxmlText);

        const LibxmlDocument pLoaded = loadDocument(octets);
        std::ostringstream saved;
        save(pLoaded.get(), saved);
        EXPECT_EQ(libxmlTree(saved.str(), true), libxmlText);
        std::ostringstream savedOfText;
        save(pFromText.get(), savedOfText);
        EXPECT_EQ(libxmlTree(savedOfText.str(), true), libxmlText);
        if (xml.find("b:x=") == std::string::npos) { // the default mode writes no prefixes of attributes
            EXPECT_EQ(libxmlTree(encoded(xml, false), false), libxmlText);
        }

        pugi::xml_document document;
        loadDocument(octets, document);
        std::ostringstream savedByPugixml;
        save(document, savedByPugixml);
        EXPECT_EQ(pugixmlTree(savedByPugixml.str(), true), pugixmlTree(octets, true));
        if (xml.find("<!ENTITY") == std::string::npos && xml.find("<!ATTLIST") == std::string::npos) {
            parse(xml, document); // leaves entities as they are
            EXPECT_EQ(pugixmlTree(octets, true), textOf(document));
        }
        ++compared;
    }
    EXPECT_GE(compared, 9u);
}

TEST(AdapterRoundTrip, ItemsOfADocumentBecomeTreesAndSubtreesDocuments) {
    const std::string octets =
        encoded("<list xmlns='urn:l' xmlns:p='urn:p'><p:item at='1'>one</p:item><other/>"
                "<p:item p:at='2' q='&amp;'><part/></p:item></list>");
    const std::string first = "{urn:p}p:item xmlns:p=urn:p at='1'";
    const LibxmlDocument pTarget = parsed("<items xmlns:r='urn:p'><inner xmlns='urn:x'/></items>");
    pugi::xml_document target;
    parse("<items xmlns:r='urn:p'><inner xmlns='urn:x'/></items>", target);
    for (int way = 0; way < 2; ++way) {
        FastInfosetReader reader(nullptr);
        reader.open(octets);
        while (reader.next() != FastInfosetReader::END_DOCUMENT) {
            if (reader.event() != FastInfosetReader::START_ELEMENT || reader.localName() != "item") {
                continue;
            }
            if (way == 0) {
                loadElement(reader, target.first_child().first_child());
            } else {
                loadElement(reader, pTarget->children->children);
            }
            EXPECT_EQ(reader.event(), FastInfosetReader::END_ELEMENT);
        }
    }
    // The prefix is that which the place has for the namespace; the part has its own default again.
    EXPECT_EQ(textOf(target.first_child().first_child()),
              "2 inner xmlns='urn:x' \n"
              " 2 r:item at='1' \n  3  one\n"
              " 2 r:item r:at='2' q='&' \n  2 part xmlns='urn:l' \n");
    EXPECT_EQ(textOf(pTarget->children->children),
              "<{urn:x}:inner xmlns:=urn:x>\n"
              " <{urn:p}r:item at='1'>\n  3  one\n"
              " <{urn:p}r:item {urn:p}r:at='2' q='&'>\n  <{urn:l}:part xmlns:=urn:l>\n");

    std::ostringstream ofLibxml;
    save(pTarget->children->children->last, ofLibxml);
    std::ostringstream ofPugixml;
    save(target.first_child().first_child().last_child(), ofPugixml);
    const std::string expected = "<{urn:p}r:item xmlns:=urn:x xmlns:r=urn:p {urn:p}r:at='2' q='&'>\n"
                                 " <{urn:l}:part xmlns:=urn:l>\n";
    EXPECT_EQ(libxmlTree(ofLibxml.str(), true), expected);
    EXPECT_EQ(libxmlTree(ofPugixml.str(), true), expected);

    // Among other events of a writer, the declarations of the subtree end with it.
    std::ostringstream among;
    FastInfosetWriter writer(among, false, DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    writer.startElement("list");
    save(pTarget->children->children->last, writer);
    save(target.first_child().first_child().last_child(), writer);
    writer.element("end");
    writer.endElement();
    writer.endDocument();
    const LibxmlDocument pAmong = loadDocument(among.str(), {.strict = false});
    EXPECT_EQ(textOf(pAmong->children->last), "<end>\n");
    EXPECT_EQ(textOf(pAmong->children->children->next), textOf(pAmong->children->children));
}

// A tree or an exception, and a tree is one that can be written as a document.
TEST(AdapterRoundTrip, DamagedDocumentsGiveTreesOrExceptions) {
    std::size_t trees = 0;
    std::size_t refusals = 0;
    for (const char* const name : {"namespaces.xml", "declarations.xml"}) {
        for (const bool strict : {true, false}) {
            const std::string octets =
                encoded(contentOf(std::filesystem::path(TAMO_TEST_DATA) / "roundtrip" / name));
            for (std::size_t bit = 0; bit < 8 * octets.size(); ++bit) {
                std::string damaged = octets;
                damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
                try {
                    const LibxmlDocument pTree = loadDocument(damaged, {.strict = strict});
                    pugi::xml_document document;
                    loadDocument(damaged, document, {.strict = strict});
                    ++trees;
                    std::ostringstream saved;
                    EXPECT_NO_THROW(save(document, saved)) << name << ", bit " << bit;
                    // What one library has, the other has, as text has it for both.
                    pugi::xml_document again;
                    loadDocument(saved.str(), again);
                    EXPECT_EQ(textOf(again), textOf(document)) << name << ", bit " << bit;
                } catch (const std::exception&) {
                    ++refusals;
                }
            }
        }
    }
    EXPECT_GT(trees, 1000u);
    EXPECT_GT(refusals, 1000u);
}

} // namespace Tamo::FastInfoset::Adapters::Test
