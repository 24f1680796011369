// Every allocation fails once, wherever it is: nothing is lost, and what is left can be used.
#include "../xml/Trace.h"
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"

namespace Tamo::FastInfoset::Test {
namespace {

const std::string XML = "<?xml version='1.0'?><!DOCTYPE r [<!NOTATION n PUBLIC 'p'><!ATTLIST a d CDATA 'v'>"
                        "<!ENTITY e '<b>text</b>'>]><r xmlns='u' xmlns:p='v' p:c='1'><a/>"
                        "<p:b xmlns:p='a namespace name of more than a few octets'>&e;<![CDATA[x]]></p:b>"
                        "<!--c--><?t d?><c attribute-with-a-long-name='a value that is no short one'/></r>";

// Takes what a writer passes on, without memory.
class NullBuf : public std::streambuf {
    int overflow(int c) override { return c; }
    std::streamsize xsputn(const char*, std::streamsize size) override { return size; }
};

// Runs use with one failing allocation after the other, until all of them have failed, and check after each.
// A stream turns a failure into its own.
void expectSurvives(
    const std::function<void()>& use, const std::function<void()>& check = [] {}) {
    use(); // what the program makes once
    for (std::size_t n = 0;; ++n) {
        AllocationCount allocations;
        allocations.failAt(n);
        bool hasThrown = false;
        try {
            use();
        } catch (const std::bad_alloc&) {
            hasThrown = true;
        } catch (const IOException&) {
            hasThrown = true;
        }
        const bool hasFailed = allocations.hasFailed();
        allocations.failNever();
        EXPECT_EQ(hasThrown, hasFailed) << n;
        ASSERT_NO_THROW(check()) << n;
        if (!hasFailed) {
            break;
        }
    }
}

// The same for a use that leaves nothing behind.
void expectLosesNothing(const std::function<void()>& use) {
    use();
    for (std::size_t n = 0;; ++n) {
        AllocationCount allocations;
        allocations.failAt(n);
        try {
            use();
        } catch (const std::bad_alloc&) {
        } catch (const IOException&) {
        }
        ASSERT_EQ(allocations.held(), 0) << n;
        if (!allocations.hasFailed()) {
            break;
        }
    }
}

DocumentVocabulary filled(DocumentVocabulary::VocabularyImpl impl) {
    DocumentVocabulary result(impl);
    bool found = false;
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        for (int i = 0; i < 20; ++i) {
            result.index(static_cast<DocumentVocabulary::ID>(id),
                         numbered("an entry of the table, number ", i), found);
        }
    }
    result.restrictedAlphabets().add("abc");
    result.setURI("urn:of-more-than-sixteen-octets");
    return result;
}

TEST(OutOfMemoryTest, Vocabularies) {
    for (const auto impl : {DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP}) {
        const DocumentVocabulary whole = filled(impl);
        const DocumentVocabulary empty(impl);
        expectLosesNothing([&] { filled(impl); });
        expectLosesNothing([&] { DocumentVocabulary copy(whole); });
        expectLosesNothing([&] { DocumentVocabulary other(whole, DocumentVocabulary::VOC_MAP); });
        expectLosesNothing([&] { whole - empty; });
        expectLosesNothing([&] {
            DocumentVocabulary reset(whole);
            reset.reset();
            reset = whole;
        });
        // An assignment that fails leaves what was there.
        DocumentVocabulary target(impl);
        expectSurvives(
            [&] {
                target = empty;
                target = whole;
            },
            [&] {
                const std::size_t size = target.vocabulary(DocumentVocabulary::PREFIX).size();
                EXPECT_TRUE(size == 2 || size == 22);
            });
    }
}

TEST(OutOfMemoryTest, ParsersWritersAndConversionsLoseNothing) {
    std::ostringstream converted;
    MemoryInputStream xml(XML.data(), XML.size());
    Converter::convertToFIS(xml, converted, -1, 0);
    std::vector<std::string> documents = {converted.str()};
    documents.push_back(document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); }));
    for (const std::string& octets : documents) {
        expectLosesNothing([&] {
            FISDefaultHandler handler;
            FastInfosetParser parser;
            parser.initialize(&handler);
            parser.parseMemoryNP(octets.data(), octets.size());
        });
        expectLosesNothing([&] {
            FastInfosetReader reader;
            reader.open(octets);
            while (reader.next() != FastInfosetReader::END_DOCUMENT) {
                reader.text();
            }
        });
        for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
            expectLosesNothing([&] {
                NullBuf buf;
                std::ostream out(&buf);
                FastInfosetWriter writer(out, false, impl);
                FastInfosetParser parser(impl);
                parser.initialize(&writer);
                parser.parseMemoryNP(octets.data(), octets.size());
            });
        }
        expectLosesNothing([&] {
            NullBuf buf;
            std::ostream out(&buf);
            MemoryInputStream in(octets.data(), octets.size());
            Converter::convertToXML(in, out, 0);
        });
    }
    expectLosesNothing([&] {
        NullBuf buf;
        std::ostream out(&buf);
        MemoryInputStream in(XML.data(), XML.size());
        Converter::convertToFIS(in, out, 16, Converter::STRIP_WHITESPACE);
    });
    expectLosesNothing([&] {
        NullBuf buf;
        std::ostream out(&buf);
        XML::XMLWriter writer(out);
        XML::SAXParser parser;
        parser.setContentHandler(&writer);
        parser.parseMemoryNP(XML.data(), XML.size());
    });
}

TEST(OutOfMemoryTest, WritersAndParsersOfXMLAreUsableAfterwards) {
    const std::string whole = document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); });
    NullBuf buf;
    std::ostream out(&buf);
    FastInfosetWriter writer(out);
    const auto write = [&] {
        writer.reset(out);
        play(EVERY_EVENT, writer);
    };
    expectSurvives(write, [&] {
        std::ostringstream again;
        writer.reset(again);
        play(EVERY_EVENT, writer);
        EXPECT_TRUE(again.view() == whole);
        writer.reset(out);
    });
    XML::SAXParser parser;
    const std::string expected = traceOf(XML);
    const std::string lexicalHandler(XML::XMLReader::PROPERTY_LEXICAL_HANDLER);
    expectSurvives(
        [&] {
            XML::DefaultHandler handler;
            parser.setContentHandler(&handler);
            parser.setDTDHandler(&handler);
            parser.setProperty(lexicalHandler, static_cast<XML::LexicalHandler*>(&handler));
            parser.parseMemoryNP(XML.data(), XML.size());
        },
        [&] {
            Trace trace;
            trace.connect(parser);
            parser.parseMemoryNP(XML.data(), XML.size());
            EXPECT_EQ(trace.text(), expected);
        });
}

} // namespace
} // namespace Tamo::FastInfoset::Test
