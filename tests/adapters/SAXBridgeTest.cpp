// Between the SAX2 interface of libxml2 and documents, both ways.
#include "Tamo/FastInfoset/adapters/libxml2-sax.h"
#include "Tamo/FastInfoset/adapters/libxml2.h"
#include "TreeTexts.h"
#include <gtest/gtest.h>
#include <libxml/SAX2.h>
#include <sstream>

namespace Tamo::FastInfoset::Adapters::Test {
namespace {

std::string written(const std::string& xml) {
    std::ostringstream out;
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    parseXML(xml, writer);
    return out.str();
}

} // namespace

TEST(SAXBridge, ParserAndFunctionsOfLibxmlGiveTheTreeOfItsOwn) {
    for (const auto& file : sampleFiles()) {
        SCOPED_TRACE(file.string());
        const std::string xml = contentOf(file);
        const LibxmlDocument pExpected = parsed(xml);
        if (!pExpected) {
            continue;
        }
        const std::string octets = written(xml);
        EXPECT_EQ(textOf(loadDocument(octets).get()), textOf(pExpected.get()));
        for (const int option : {0, static_cast<int>(XML_PARSE_NOENT)}) {
            xmlParserCtxt* const pContext = xmlNewParserCtxt();
            xmlCtxtUseOptions(pContext, option);
            std::istringstream in(octets);
            report(in, pContext);
            const LibxmlDocument pBuilt(pContext->myDoc);
            xmlFreeParserCtxt(pContext);
            EXPECT_EQ(textOf(xmlDocGetRootElement(pBuilt.get())),
                      textOf(xmlDocGetRootElement(pExpected.get())));
        }
    }
}

TEST(SAXBridge, WhatIsWrongComesOutAsAnException) {
    EXPECT_THROW(written("<a><b></a>"), FISException);
    EXPECT_THROW(written(""), FISException);
    // Not opened, whatever the file says, and by no kind of entity.
    const std::string file = std::filesystem::path(TAMO_SAMPLES "/order.xml").string();
    EXPECT_THROW(written("<!DOCTYPE a [<!ENTITY e SYSTEM '" + file + "'>]><a>&e;</a>"), FISException);
    EXPECT_THROW(written("<!DOCTYPE a [<!ENTITY % e SYSTEM '" + file + "'>%e;]><a/>"), FISException);

    // An exception of the writer passes by libxml2.
    struct FullBuf : std::streambuf {
    } buf;
    std::ostream out(&buf);
    FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    EXPECT_THROW(parseXML("<a><b/><c>text</c></a>", writer), IOException);

    LibxmlDocument pNone;
    xmlSAXHandler handler{};
    EXPECT_THROW(report(std::string_view("\xE0\x00", 2), handler, nullptr), InvalidArgumentException);
}

} // namespace Tamo::FastInfoset::Adapters::Test
