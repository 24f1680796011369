#include "EventTrace.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/XML/SAXParser.h"
#include <fstream>

namespace Tamo::FastInfoset::Test {
namespace {

// Documents that between them use every construct that can be read.
std::vector<std::string> documents() {
    return {octets("3C 3F 78 3E E0 00 00 01 7F 00 00 75 01 64 64 0F FF 00 01 61 62 00 00 61 00 00 70 00 00 "
                   "75 00 00 6C "
                   "00 00 74 00 00 73 00 11 00 76 00 20 00 00 01 00 30 30 33 00 00 00 07 00 03 01 01 00 "
                   "00 03 01 01 00 C2 00 6E 80 F0 D0 00 65 80 81 F0 04 75 74 66 2D 38 01 40 31 "
                   "C6 80 E1 80 80 F0 40 78 00 61 80 FF E1 80 80 A0 FF"),
            octets("E0 00 00 01 00 78 CD 00 75 CF 00 70 00 76 F0 3D 81 00 61 7B 81 82 00 78 40 31 79 81 00 "
                   "79 40 32 F0 "
                   "9C 25 63 64 8C 14 38 8C 1A 01 3F C0 00 00 98 01 12 3F 85 20 AC CB 00 65 00 73 "
                   "00 70 E2 41 6E 6F FF")};
}

// What happens to the document: only exceptions of ours or std::out_of_range get out.
void expectSurvives(FastInfosetParser& parser, const std::string& document) {
    const std::unique_ptr<char[]> pBlock(new char[document.size()]); // of the exact size, for the sanitizers
    std::copy(document.begin(), document.end(), pBlock.get());
    failureOf([&] { parser.parseMemoryNP(pBlock.get(), document.size()); });
    std::istringstream stream(document);
    XML::InputSource source(stream);
    failureOf([&] { parser.parse(&source); });
}

TEST(Damage, EveryTruncationAndEveryFlippedBit) {
    for (const std::string& document : documents()) {
        ASSERT_FALSE(eventsOf(document).empty());
        FastInfosetParser parser;
        TraceRecorder recorder;
        recorder.connect(parser);
        for (std::size_t length = 0; length < document.size(); ++length) {
            ASSERT_NO_THROW(expectSurvives(parser, document.substr(0, length))) << length;
        }
        for (std::size_t bit = 0; bit < document.size() * 8; ++bit) {
            std::string damaged = document;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (0x80 >> bit % 8));
            ASSERT_NO_THROW(expectSurvives(parser, damaged)) << bit;
        }
    }
}

TEST(Damage, FailingHandlersAndStreamsLeaveTheParserUsable) {
    for (const std::string& document : documents()) {
        const std::string expected = eventsOf(document);
        FastInfosetParser parser;
        for (int event = 0;; ++event) {
            TraceRecorder failing;
            failing.throwAt = event;
            failing.connect(parser);
            try {
                parser.parseMemoryNP(document.data(), document.size());
                ASSERT_GT(event, 5);
                break;
            } catch (const std::runtime_error& e) {
                ASSERT_STREQ(e.what(), "the handler has had enough");
            }
        }
        for (std::size_t octet = 0; octet < document.size() - 1; ++octet) {
            DribblingStream stream(document, octet);
            XML::InputSource source(stream);
            EXPECT_NE(failureOf([&] { parser.parse(&source); }), "") << octet;
        }
        // The reader's buffer is larger than the document, so a failing stream never delivers a part as a
        // whole.
        FastInfosetParser fresh;
        TraceRecorder recorder;
        recorder.connect(fresh);
        fresh.parseMemoryNP(document.data(), document.size());
        EXPECT_EQ(recorder.events, expected);
    }
}

TEST(Damage, FullStreamsStopTheWriterAtEveryOctet) {
    for (std::size_t capacity = 0; capacity < 20; ++capacity) {
        BoundedStream stream(capacity);
        EXPECT_EQ(failureOf([&] {
                      FastInfosetWriter writer(stream);
                      writer.startDocument();
                      writer.startElement("u", "a", "p:a");
                      writer.characters("some text that is longer");
                      writer.endElement("", "", "");
                      writer.endDocument();
                  }),
                  "IOException: error while writing Fast Infoset document to stream")
            << capacity;
    }
}

TEST(Limits, BoundWhatADocumentCosts) {
    const std::string document = octets("E0 00 00 01 00 3C 00 61 91 68 69 A0 A0 3C 00 62 FF F0");
    const auto failure = [&](auto change) {
        FastInfosetParser parser;
        TraceRecorder recorder;
        recorder.connect(parser);
        ParserLimits limits;
        change(limits);
        parser.setLimits(limits);
        return failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    };
    EXPECT_EQ(failure([](auto& l) { l.maxDepth = 2; }), "");
    EXPECT_EQ(failure([](auto& l) { l.maxDepth = 1; }), "FISException: Limit exceeded: element depth: 1");
    EXPECT_EQ(failure([](auto& l) { l.maxStringLength = 2; }), "");
    EXPECT_EQ(failure([](auto& l) { l.maxStringLength = 1; }),
              "FISException: Limit exceeded: string length: 1");
    EXPECT_EQ(failure([](auto& l) { l.maxTableEntries = 3; }), "");
    EXPECT_EQ(failure([](auto& l) { l.maxTableEntries = 2; }),
              "FISException: Limit exceeded: table entries: 2");
    EXPECT_EQ(failure([](auto& l) { l.maxDeliveredOctets = 10; }), "");
    EXPECT_EQ(failure([](auto& l) { l.maxDeliveredOctets = 9; }),
              "FISException: Limit exceeded: delivered octets: 9");
}

} // namespace
} // namespace Tamo::FastInfoset::Test
