// Every allocation fails once, wherever it is: nothing is lost, and what is left can be used.
#include "../xml/Trace.h"
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/MemoryStream.h"
#include "Tamo/NullStream.h"
#include "Tamo/StringSink.h"
#include "Tamo/VectorSink.h"
#include "Tamo/XML/SAXParser.h"
#include "Tamo/XML/XMLWriter.h"

namespace Tamo::FastInfoset::Test {
namespace {

const std::string XML = "<?xml version='1.0'?><!DOCTYPE r [<!NOTATION n PUBLIC 'p'><!ATTLIST a d CDATA 'v'>"
                        "<!ENTITY e '<b>text</b>'>]><r xmlns='u' xmlns:p='v' p:c='1'><a/>"
                        "<p:b xmlns:p='a namespace name of more than a few octets'>&e;<![CDATA[x]]></p:b>"
                        "<!--c--><?t d?><c attribute-with-a-long-name='a value that is no short one'/></r>";

// Runs use with one failing allocation after the other, until all of them have failed, and check after each.
// A stream turns a failure into its own.
void expectSurvives(const std::function<void()>& use,
                    const std::function<void(const AllocationCount&)>& check) {
    use(); // what the program makes once
    bool hasFailed = true;
    for (std::size_t n = 0; hasFailed; ++n) {
        SCOPED_TRACE(n);
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
        hasFailed = allocations.hasFailed();
        allocations.failNever();
        EXPECT_EQ(hasThrown, hasFailed);
        ASSERT_NO_THROW(check(allocations));
    }
}

// The same for a use that leaves nothing behind.
void expectLosesNothing(const std::function<void()>& use) {
    expectSurvives(use, [](const AllocationCount& allocations) { ASSERT_EQ(allocations.held(), 0); });
}

DocumentVocabulary filled(DocumentVocabulary::VocabularyImpl impl) {
    DocumentVocabulary result(impl);
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        for (int i = 0; i < 20; ++i) {
            add(result, static_cast<DocumentVocabulary::ID>(id),
                {numbered("an entry of the table, number ", i)});
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
            [&](const auto&) {
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
                NullOutputStream out;
                FastInfosetWriter writer(out, false, impl);
                FastInfosetParser parser(impl);
                parser.initialize(&writer);
                parser.parseMemoryNP(octets.data(), octets.size());
            });
        }
        expectLosesNothing([&] {
            NullOutputStream out;
            MemoryInputStream in(octets.data(), octets.size());
            Converter::convertToXML(in, out, 0);
        });
    }
    expectLosesNothing([&] {
        NullOutputStream out;
        MemoryInputStream in(XML.data(), XML.size());
        Converter::convertToFIS(in, out, 16, Converter::STRIP_WHITESPACE);
    });
    expectLosesNothing([&] {
        NullOutputStream out;
        XML::XMLWriter writer(out);
        XML::SAXParser parser;
        parser.setContentHandler(&writer);
        parser.parseMemoryNP(XML.data(), XML.size());
    });
}

// What the caller's object has is whole, and the writer goes on.
template<class Sink, class Octets>
void expectSinkSurvives() {
    const std::string text(9000, 'x');
    const auto write = [&](FastInfosetWriter& w) {
        play("^|<r", w);
        for (int i = 0; i < 6; ++i) {
            w.characters(text);
        }
        play(">|$", w);
    };
    const std::string expected = document(write, DocumentVocabulary::VOC_MAP);
    std::string out;
    StringSink idle(out);
    FastInfosetWriter writer(idle, false, DocumentVocabulary::VOC_MAP);
    Octets octets;
    std::string_view got;
    expectSurvives(
        [&] {
            octets = Octets();
            Sink sink(octets);
            writer.reset(sink);
            write(writer);
        },
        [&](const auto&) {
            got = {reinterpret_cast<const char*>(octets.data()), octets.size()};
            EXPECT_TRUE(expected.starts_with(got));
        });
    EXPECT_TRUE(got == expected);
    writer.reset(idle);
}

TEST(OutOfMemoryTest, SinksKeepWhatTheyHave) {
    expectSinkSurvives<StringSink, std::string>();
    expectSinkSurvives<VectorSink, std::vector<std::byte>>();
}

TEST(OutOfMemoryTest, WritersAndParsersAreUsableAfterwards) {
    const std::string whole = document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); });
    NullOutputStream out;
    FastInfosetWriter writer(out);
    const auto write = [&] {
        writer.reset(out);
        play(EVERY_EVENT, writer);
    };
    expectSurvives(write, [&](const auto&) {
        std::ostringstream again;
        writer.reset(again);
        play(EVERY_EVENT, writer);
        EXPECT_TRUE(again.view() == whole);
        writer.reset(out);
    });
    for (const bool strict : {false, true}) {
        for (const std::string& document : everyConstruct(strict)) {
            Reading reading(strict);
            const std::string expected = reading.events(document);
            expectSurvives([&] { reading.events(document); },
                           [&](const auto&) { ASSERT_EQ(reading.events(document), expected); });
        }
    }
    XML::SAXParser parser;
    const std::string expected = traceOf(XML);
    expectSurvives(
        [&] {
            XML::DefaultHandler handler;
            parser.setContentHandler(&handler);
            parser.setDTDHandler(&handler);
            parser.setLexicalHandler(&handler);
            parser.parseMemoryNP(XML.data(), XML.size());
        },
        [&](const auto&) {
            Trace trace;
            trace.connect(parser);
            parser.parseMemoryNP(XML.data(), XML.size());
            EXPECT_EQ(trace.text(), expected);
        });
}

} // namespace
} // namespace Tamo::FastInfoset::Test
