// A parser that is fed: what the parser reports, however the octets are cut, as early as it can be, and at a
// price in proportion.
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include <filesystem>
#include <fstream>
#include <random>

namespace Tamo::FastInfoset::Test {
namespace {

using Status = FastInfosetPushParser::Status;

std::span<const std::byte> bytes(std::string_view octets) {
    return std::as_bytes(std::span(octets.data(), octets.size()));
}

// The events, how reading fails, and the size of the document where that is known.
std::string outcome(const Reading<>& in, const std::string& failure, UInt64 size) {
    return in.recorder.events() + " " + failure + " " + std::to_string(in.parser.isStrict() ? size : 0);
}

std::string whole(Reading<>&& in, const std::string& document) {
    const std::string failure = failureOf([&] { parseMemory(in.parser, document); });
    return outcome(in, failure, in.parser.documentSize());
}

// With pieces of the sizes that next() says; each is a block of its own, so that a sanitizer sees a read
// behind it.
template<class Next>
std::string pieces(Reading<>&& in, const std::string& document, Next next, std::size_t maxItemSize = 0) {
    FastInfosetPushParser push(in.parser);
    push.setMaxItemSize(maxItemSize);
    UInt64 size = 0;
    const std::string failure = failureOf([&] {
        for (std::size_t at = 0; at < document.size();) {
            const std::size_t count = std::min<std::size_t>(next(), document.size() - at);
            const std::vector<char> piece(document.data() + at, document.data() + at + count);
            const FastInfosetPushParser::Fed fed = push.feed(bytes({piece.data(), count}));
            at += count;
            if (fed.status == Status::FINISHED) {
                size = at - fed.leftOver;
                return;
            }
            EXPECT_EQ(fed.leftOver, 0u);
            EXPECT_LE(push.keptOctets(), maxItemSize != 0 ? maxItemSize : at);
        }
        push.finish();
    });
    return outcome(in, failure, size);
}

// Every way of cutting that is tried gives the same as the parser.
void expectSame(const std::string& document, const ParserLimits& limits = {}, bool everyCut = false) {
    for (const bool strict : {false, true}) {
        const std::string expected = whole(Reading(strict, limits), document);
        const auto expect = [&](auto next) {
            ASSERT_EQ(pieces(Reading(strict, limits), document, next), expected) << strict << hex(document);
        };
        expect([] { return 1; });
        expect([&] { return document.size(); });
        std::minstd_rand random(static_cast<unsigned int>(document.size()));
        expect([&] { return 1 + random() % 7; });
        expect([&] { return 1 + random() % 1400; });
        for (std::size_t cut = 1; everyCut && cut < document.size(); ++cut) {
            expect(
                [&, first = true]() mutable { return std::exchange(first, false) ? cut : document.size(); });
        }
    }
}

// The long forms of lengths, of every kind.
std::string longForms() {
    const auto text = [](std::size_t size) { return std::string(size, 'x'); };
    return document("00 7C 00 61 78 00 62 48 00") + text(9) + octets("78 00 63 4C 00 00 00 3F") + text(328) +
           octets("F0 92 00") + text(3) + octets("93 00 00 00 29") + text(300) + octets("3C 40 00") +
           text(65) + octets("F0 3C 60 00 00 00 00") + text(321) + octets("F0 E1 00 74 0C 00 00 00 00") +
           text(265) + octets("FF");
}

// Indexes of three octets, of every kind.
std::string manyEntries() {
    return document(
        [](FastInfosetWriter& writer) {
            const FastInfosetWriter::Document scope(writer);
            writer.startElement("root");
            for (int i = 0; i < 8400; ++i) {
                const std::string number = std::to_string(i < 8300 ? i : i - 100);
                writer.element("e" + number, {{"a" + number, number}}, number);
            }
            writer.endElement();
        },
        DocumentVocabulary::VOC_MAP);
}

std::vector<std::string> smallDocuments() {
    std::vector<std::string> documents = everyConstruct(false);
    documents.insert(documents.end(), everyConstruct(true).begin(), everyConstruct(true).end());
    documents.push_back(document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); }));
    return documents;
}

TEST(PushParserTest, EveryCut) {
    for (const std::string& document : smallDocuments()) {
        expectSame(document + "rest", {}, true);
    }
    expectSame(longForms(), {}, true);
    EXPECT_FAILURE("", Reading(true).events(longForms()));
    expectSame(manyEntries());
    // Integers of two, three and four octets that name nothing, counts of three, and what has no form.
    for (const std::string& document :
         documents("00 20 00 00; 00 28 00 00 00; 00 30 00 00 00 00; 00 31; 00 39 F0;"
                   "00 7C 00 61 40 00 00; 00 7C 00 61 60 00 00 00; 00 7C 00 61 6F FF FF 00;"
                   "00 7C 00 61 78 00 61 FF 00; 00 3C 00 61 B0 00 00; 00 3C 00 61 B4 00 00 00;"
                   "00 3C 00 61 B8 00 00 00 00; 00 3C 00 61 DF; 00 3C 00 61 E0; 00 3C 00 61 EF;"
                   "00 38 00 F0 00 3C 00 61 FF; 00 38 CF 00 70 00 75 F5 7C 00 61 FF;"
                   "00 C7 00 73 00 70 F0 3C 00 61 FF; 00 C4 E2 00 61 00 62 F5; 00 C4 00; 00 C4 FF;"
                   "00 3C 00 61 F0 F5 00; 00 3C 00 61 F5; 00 3C 00 61 CB 00 6E 00 73 00 70 FF;"
                   "20 00 00 00; 20 02 00 80 00 00 00 61; 10 C3 00 6E 00 73 00 70 F3 FF;"
                   "10 C0 00 6E D0; 08 D1 00 6E 00 73 00 70 00 6E F1 FF; 08 D0 00 6E D2;"
                   "02 01 3C 00 61 FF; 40 80 00 00 00 75 00 76; 00 8C 48 00 00; 00 8C 2B FF FF FF FF")) {
        expectSame(document, {}, true);
    }
    for (const char* const start : {"E1", "E0 01", "E0 00 00 02", "3C 3F 3E E0 01", "3C 3F"}) {
        expectSame(octets(start), {}, true);
    }
    expectSame("<?" + std::string(100, 'x'));
}

TEST(PushParserTest, Samples) {
    for (const auto& file : std::filesystem::directory_iterator(TAMO_SAMPLES)) {
        if (file.is_regular_file()) {
            std::ifstream xml(file.path(), std::ios::binary);
            std::ostringstream fis;
            Converter::convertToFIS(xml, fis, 16, 0);
            expectSame(fis.str());
        }
    }
}

TEST(PushParserTest, DamageAndLimits) {
    for (const std::string& document : smallDocuments()) {
        forEachDamaged(document, [](const std::string& damaged) {
            if (!damaged.empty()) { // which is no document, and nothing unfinished
                expectSame(damaged);
            }
        });
        for (unsigned int limit = 0; limit < 8; ++limit) {
            expectSame(document, {.maxDepth = limit});
            expectSame(document, {.maxStringLength = limit});
            expectSame(document, {.maxTableEntries = limit});
            expectSame(document, {.maxDeliveredOctets = 10 * limit});
        }
    }
}

// What the cursor reports of a document that is cut off is its whole items.
TEST(PushParserTest, EventsComeWithTheLastOctetOfTheirItem) {
    for (const bool strict : {false, true}) {
        std::vector<std::string> documents = everyConstruct(strict);
        documents.push_back(document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); }));
        documents.push_back(longForms());
        for (const std::string& document : documents) {
            Reading fed(strict);
            fed.parser.setDocumentHandler(nullptr);
            FastInfosetPushParser push(fed.parser);
            GivenVocabulary loader;
            FastInfosetReader reader(&loader);
            reader.setStrict(strict);
            Status status = Status::NEEDS_MORE;
            for (std::size_t size = 1; status == Status::NEEDS_MORE; ++size) {
                status = push.feed(bytes(std::string_view(document).substr(size - 1, 1))).status;
                TypedEventRecorder recorder;
                failureOf([&] {
                    reader.open(std::string_view(document).substr(0, size)), replay(reader, recorder);
                });
                std::string expected = recorder.events();
                const std::size_t last = expected.rfind('|') + 1;
                if (expected.substr(last).starts_with('!')) {
                    expected.erase(last == 0 ? 0 : last - 1); // comes with the first item of the declaration
                }
                ASSERT_EQ(fed.recorder.events(), expected) << strict << size << hex(document);
            }
        }
    }
}

TEST(PushParserTest, SingleOctetsCostAsMuchAsTheirNumber) {
    std::string attributes = document("00 7C 00 61");
    for (int i = 0; i < 10000; ++i) {
        attributes += octets("78 03") + std::to_string(1000 + i).substr(0, 4) + octets("40 31");
    }
    attributes += octets("FF F0");
    const std::string text =
        document("00 3C 00 61 83 00 0F FE FD") + std::string(0x100000, 'x') + octets("FF");
    for (const std::string& document : {attributes, text}) {
        Reading whole(true);
        const AllocationCount allocations;
        parseMemory(whole.parser, document);
        const std::size_t allocated = allocations.octets();
        Reading fed(true);
        FastInfosetPushParser push(fed.parser);
        for (const char& octet : document) {
            push.feed(bytes({&octet, 1}));
        }
        EXPECT_EQ(fed.recorder.events(), whole.recorder.events());
        EXPECT_LE(push.steps(), 2 * document.size() + 64);
        EXPECT_LT(allocations.octets() - allocated, 2 * allocated + 8 * document.size());
        EXPECT_EQ(push.keptOctets(), 0u);
    }
}

TEST(PushParserTest, OfManyItemsOneIsKept) {
    const std::string items = document("00 3C 00 61 91 68 69") + std::string(200000, '\xA0') + octets("FF");
    FISDefaultHandler handler;
    FastInfosetParser parser;
    parser.initialize(&handler);
    FastInfosetPushParser push(parser);
    push.feed(bytes(items).first(10));
    EXPECT_EQ(push.keptOctets(), 2u);
    const AllocationCount allocations;
    EXPECT_EQ(push.feed(bytes(items).subspan(10)).status, Status::FINISHED);
    EXPECT_LT(allocations.octets(), 10000u);
}

TEST(PushParserTest, DocumentsInARowFailuresAndResets) {
    const std::string one = document("00 3C 00 61 91 68 69 FF");
    const std::string events = "^|<a|'hi|>|$";
    for (const bool strict : {false, true}) {
        Reading fed(strict);
        fed.parser.setDocumentHandler(nullptr);
        FastInfosetPushParser push(fed.parser);
        const std::string row = one + one + one + one.substr(0, 9);
        std::size_t left = row.size();
        for (int i = 0; i < 3; ++i) {
            const FastInfosetPushParser::Fed result = push.feed(bytes(row).last(left));
            EXPECT_EQ(result.status, Status::FINISHED);
            EXPECT_EQ(result.leftOver, left -= one.size());
            EXPECT_FALSE(push.isInDocument());
            push.feed({});
            push.finish();
            EXPECT_EQ(fed.recorder.events(), events);
            fed.recorder.clear();
        }
        EXPECT_EQ(push.feed(bytes(row).last(left)).status, Status::NEEDS_MORE);
        EXPECT_EQ(push.keptOctets(), 1u);
        EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing octet string",
                       push.finish());
        EXPECT_FAILURE(
            "InvalidAccessException: The push parser has failed, or is called by a handler; reset() it",
            push.feed(bytes(one)));
        push.reset();
        fed.recorder.clear();
        push.feed(bytes(one));
        EXPECT_EQ(fed.recorder.events(), events);
    }
}

TEST(PushParserTest, LargeItemsAreRefused) {
    const std::string text = document("00 3C 00 61 82 07") + std::string(10, 'x') + octets("FF");
    Reading fed(true);
    FastInfosetPushParser push(fed.parser);
    push.setMaxItemSize(12);
    EXPECT_EQ(push.feed(bytes(text)).status, Status::FINISHED);
    push.setMaxItemSize(11);
    // Not before it is known, and no later.
    push.feed(bytes(text.substr(0, 9)));
    EXPECT_FAILURE("FISException: Limit exceeded: item size: 11", push.feed(bytes(text.substr(9, 1))));
    std::vector<std::string> documents = smallDocuments();
    documents.push_back(text);
    documents.push_back(document("00 38 CF 00 70 00 75 CF 00 71 00 75 F0 39")); // refused, too
    for (const std::string& document : documents) {
        for (const bool strict : {false, true}) {
            for (std::size_t limit = 1; limit < 90; ++limit) {
                std::minstd_rand random(static_cast<unsigned int>(limit));
                const auto outcome = [&](auto next) {
                    return pieces(Reading(strict), document, next, limit);
                };
                const std::string expected = outcome([] { return 1; });
                ASSERT_EQ(outcome([&] { return 1 + random() % 30; }), expected);
                ASSERT_EQ(outcome([&] { return document.size(); }), expected);
            }
        }
    }
}

TEST(PushParserTest, AlgorithmsThatReadSomethingElse) {
    Reading fed(false);
    fed.parser.decodingAlgorithms().add([](BitStreamReader& reader) -> AutoPtr<Encoding> {
        reader.skip(2);
        return new CDataEncoding("x");
    });
    FastInfosetPushParser push(fed.parser);
    EXPECT_FAILURE(
        "FISException: An encoding algorithm has read fewer or more octets than its value has, before octet "
        "11",
        push.feed(bytes(document("00 3C 00 61 8C 7C FF"))));
}

} // namespace
} // namespace Tamo::FastInfoset::Test
