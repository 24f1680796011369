// Damaged and hostile documents, handlers and streams that fail: what is thrown, what is allocated, and that
// the next document is read as if nothing had happened.
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include <pthread.h>

namespace Tamo::FastInfoset::Test {
namespace {

// What parsing may allocate in all, freed or not, for a document of this size in octets.
constexpr std::size_t allocationBound(std::size_t size) {
    return 524288 + 128 * size;
}

void expectSurvivesDamage(bool strict) {
    for (const std::string& document : everyConstruct(strict)) {
        Reading<TypedEventRecorder> reading(strict);
        const std::string expected = reading.events(document);
        const auto failure = [&](const std::string& damaged) {
            const AllocationCount allocations;
            reading.recorder.clear();
            const std::string fromMemory = failureOf([&] { parseMemory(reading.parser, damaged); });
            const UInt64 position = reading.parser.position();
            std::istringstream stream(damaged);
            EXPECT_EQ(failureOf([&] { parseStream(reading.parser, stream); }), fromMemory);
            EXPECT_EQ(reading.parser.position(), position);
            DribblingStream dribble(damaged);
            EXPECT_EQ(failureOf([&] { parseLive(reading.parser, dribble); }), fromMemory);
            EXPECT_EQ(reading.parser.position(), position);
            EXPECT_LT(allocations.octets(), allocationBound(damaged.size()));
            return fromMemory;
        };
        forEachDamaged(document, [&](const std::string& damaged) {
            const std::string how = failure(damaged);
            EXPECT_TRUE(damaged.size() == document.size() ||
                        how.starts_with("FISParseException: Unexpected end of stream"))
                << hex(damaged);
        });
        EXPECT_EQ(reading.events(document), expected);
    }
}

TEST(DamageTest, EveryTruncationAndEveryFlippedBit) {
    expectSurvivesDamage(false);
    expectSurvivesDamage(true);
}

template<class Recorder>
void expectSurvivesFailures(const std::string& document, bool strict) {
    Reading<Recorder> reading(strict);
    const std::string expected = reading.events(document);
    const auto events = static_cast<std::size_t>(std::count(expected.begin(), expected.end(), '|')) + 1;
    for (std::size_t event = 0; event < events; ++event) {
        reading.recorder.clear();
        reading.recorder.failAt(event);
        EXPECT_FAILURE("RuntimeException: handler", parseMemory(reading.parser, document));
        EXPECT_EQ(reading.events(document), expected) << event;
    }
    for (std::size_t octet = 0; octet < document.size() - 1; ++octet) {
        DribblingStream marked(document, octet);
        EXPECT_FAILURE("IOException: error reading stream while parsing Fast Infoset document",
                       parseStream(reading.parser, marked));
        DribblingStream thrown(document, octet);
        thrown.exceptions(std::ios_base::badbit);
        EXPECT_THROW(parseStream(reading.parser, thrown), std::runtime_error);
        EXPECT_EQ(reading.events(document), expected) << octet;
    }
}

TEST(DamageTest, FailingHandlersAndStreamsLeaveTheParserUsable) {
    for (const bool strict : {false, true}) {
        for (const std::string& document : everyConstruct(strict)) {
            expectSurvivesFailures<EventRecorder>(document, strict);
            expectSurvivesFailures<TypedEventRecorder>(document, strict);
        }
    }
}

TEST(DamageTest, WritersThatAreStopped) {
    const std::string whole = document([](FastInfosetWriter& writer) { play(EVERY_EVENT, writer); });
    for (std::size_t capacity = 0; capacity < whole.size(); ++capacity) {
        for (const bool throws : {false, true}) {
            BoundedStream stream(capacity);
            stream.exceptions(throws ? std::ios_base::badbit : std::ios_base::goodbit);
            const auto write = [&] {
                FastInfosetWriter writer(stream);
                play(EVERY_EVENT, writer);
            };
            if (throws) {
                EXPECT_THROW(write(), std::ios_base::failure) << capacity;
            } else {
                EXPECT_FAILURE("IOException: error while writing Fast Infoset document to stream", write());
            }
            EXPECT_EQ(hex(stream.octets()), hex(whole.substr(0, capacity)));
        }
    }
    for (std::size_t end = EVERY_EVENT.find('|'); end != std::string::npos;
         end = EVERY_EVENT.find('|', end + 1)) {
        const std::string part = document([&](FastInfosetWriter& w) { play(EVERY_EVENT.substr(0, end), w); });
        EXPECT_TRUE(part.empty() || whole.starts_with(part.substr(0, part.size() - 1))) << end;
    }
}

// Documents from the presence bits on: every place where a length or a number of entries is read.
const char* const CLAIMS = "40 8F FF FF 00 75 00 76; 40 00 60 FF FF FF FF 75;" // additional data
                           "20 10 00 60 FF FF FF FF 75; 20 00 10 8F FF FF 0C FF FF FF FF 76;" // vocabulary
                           "10 C0 60 FF FF FF FF 6E; 08 D0 60 FF FF FF FF 65;" // a notation, an entity
                           "04 60 FF FF FF FF 75; 01 0C FF FF FF FF 31;"       // encoding scheme, version
                           "00 3E 60 FF FF FF FF 70; 00 3D 60 FF FF FF FF 75;" // prefix, namespace name
                           "00 3C 60 FF FF FF FF 61; 00 7C 00 61 78 60 FF FF FF FF 62;" // local names
                           "00 7C 00 61 78 00 62 4C FF FF FF FF 76;"                    // attribute value
                           "00 83 FF FF FF FF 78; 00 87 FF FF FF FF 78; 00 88 03 FF FF FF FF 78;" // texts
                           "00 E1 60 FF FF FF FF 74; 00 E2 0C FF FF FF FF 63;" // instruction, comment
                           "00 C6 60 FF FF FF FF 73; 00 C8 60 FF FF FF FF 65"; // declaration, reference

TEST(DamageTest, ClaimedLengthsAllocateNothing) {
    std::vector<std::string> claims = documents(CLAIMS);
    for (int algorithm = 1; algorithm <= 10; ++algorithm) {
        const char second = static_cast<char>((algorithm - 1) << 2 | 3);
        claims.push_back(document("00 8C") + second + octets("FF FF FE F7 00 00 00 00"));
    }
    for (unsigned int table = 0x0800; table != 0; table >>= 1) {
        const std::string flags = {static_cast<char>(table >> 8), static_cast<char>(table)};
        claims.push_back(document("20") + flags + octets("8F FF FF 00 61"));
    }
    for (const std::string& claim : claims) {
        for (const auto impl : ALL_KINDS) {
            for (const bool strict : {false, true}) {
                FastInfosetParser parser(impl);
                parser.setStrict(strict);
                std::istringstream stream(claim);
                const AllocationCount allocations;
                EXPECT_NE(failureOf([&] { parser.parseMemoryNP(claim.data(), claim.size()); }), "");
                EXPECT_NE(failureOf([&] { parseStream(parser, stream); }), "");
                EXPECT_LT(allocations.octets(), allocationBound(claim.size())) << hex(claim);
            }
        }
    }
}

// Octets in which 'L' stands for 65536 letters, 'E' for the ends of 10000 elements and 'n' for three letters
// that tell numbers apart.
std::string expanded(const char* pattern, unsigned int number = 0) {
    std::istringstream words(pattern);
    std::string result;
    for (std::string word; words >> word;) {
        if (word == "L") {
            result.append(65536, 'x');
        } else if (word == "E") {
            result.append(5000, '\xFF');
        } else if (word == "n") {
            for (const unsigned int letter : {number / 400, number / 20 % 20, number % 20}) {
                result += static_cast<char>('0' + letter);
            }
        } else {
            result += octets(word);
        }
    }
    return result;
}

// Documents in which every octet costs as much as the format allows.
TEST(DamageTest, SmallThingsRepeatedAllocateLittle) {
    constexpr unsigned int COUNT = 9999; // and one more in front, or as "80 26 8F"
    const struct {
        const char* start; ///< from the presence bits on
        const char* repeated;
        const char* end;
    } rows[] = {{"00 7C 00 61 78 00 62 4C 00 00 FE F7 L", "00 80", "FF F0"}, // a long value by its index
                {"00 3E 60 00 00 FE BF L 00 61", "3E 81 02 n F0", "3C 00 61 FF F0"}, // a long prefix
                {"00 93 00 00 FE FD L", "A0", "F0"},                                 // a long text
                {"00 3C 00 61", "00", "E F0"},                                       // nested elements
                {"00", "3C 02 n F0", "3C 00 61 FF"},                                 // names of elements
                {"00 7C 00 61", "78 02 n FF", "FF F0"},                              // names of attributes
                {"00 7C 00 61 78 00 62 FF", "00 42 n", "FF F0"},                     // values
                {"00 38", "CE 02 n", "F0 3C 00 61 FF"},                              // declared prefixes
                {"00", "92 00 n", "F0"},                                             // texts
                {"00", "9C 16 00 n", "F0"},                 // booleans that become text
                {"20 08 00 80 26 8F 00 61", "02 n", "F0"},  // alphabets of the vocabulary
                {"20 02 00 80 26 8F 00 61", "02 n", "F0"},  // its prefixes
                {"20 00 10 80 26 8F 00 61", "02 n", "F0"}}; // its values
    for (const auto& row : rows) {
        std::string whole = document("") + expanded(row.start);
        for (unsigned int i = 0; i < COUNT; ++i) {
            whole += expanded(row.repeated, i);
        }
        whole += expanded(row.end);
        for (const auto impl : ALL_KINDS) {
            for (const bool strict : {false, true}) {
                FISDefaultHandler handler;
                FastInfosetParser parser(impl);
                parser.setStrict(strict);
                parser.initialize(&handler);
                parser.setLimits({.amplificationThreshold = 0xFFFFFFFFFFFFFFFF});
                const AllocationCount allocations;
                const std::string failure =
                    failureOf([&] { parser.parseMemoryNP(whole.data(), whole.size()); });
                if (strict ? !failure.starts_with("FISEncodingException")
                           : impl != DocumentVocabulary::VOC_HASH ||
                                 !failure.starts_with("PoolOverflowException")) {
                    EXPECT_EQ(failure, "") << row.start;
                }
                EXPECT_LT(allocations.octets(), allocationBound(whole.size())) << row.start << strict;
            }
        }
    }
}

void onSmallStack(std::function<void()> use) {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
    const auto run = [](void* pUse) -> void* {
        EXPECT_EQ(failureOf(*static_cast<std::function<void()>*>(pUse)), "");
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &use), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(DamageTest, AMillionNestedElements) {
    constexpr std::size_t DEPTH = 1000000;
    const std::string deep = document("00 3C 00 61") + std::string(DEPTH - 1, '\0') +
                             std::string(DEPTH / 2, '\xFF') + octets("F0");
    onSmallStack([&] {
        std::ostringstream again;
        FastInfosetWriter writer(again);
        FastInfosetParser parser(DocumentVocabulary::VOC_HASH);
        parser.initialize(&writer);
        parseMemory(parser, deep);
        EXPECT_TRUE(again.str() == deep);
    });
    onSmallStack([&] {
        std::istringstream in(deep);
        std::stringstream text;
        std::ostringstream again;
        Converter::convertToXML(in, text, 0);
        EXPECT_EQ(text.view().size(), (DEPTH - 1) * 7 + 4);
        EXPECT_TRUE(text.view().starts_with("<a><a>") && text.view().ends_with("</a></a>"));
        Converter::convertToFIS(text, again, 16, 0);
        EXPECT_TRUE(again.view() == deep);
    });
}

TEST(DamageTest, LimitsBoundWhatADocumentCosts) {
    const char* const mixed = "00 3C 00 61 91 68 69 A0 A0 3C 00 62 FF F0";
    const struct {
        const char* document;
        const char* what;
        UInt64 ParserLimits::*pLimit;
        unsigned int needed;
    } rows[] = {
        {mixed, "element depth: ", &ParserLimits::maxDepth, 2},
        {mixed, "string length: ", &ParserLimits::maxStringLength, 2},
        {mixed, "table entries: ", &ParserLimits::maxTableEntries, 3},
        {mixed, "delivered octets: ", &ParserLimits::maxDeliveredOctets, 66},
        // Names, attribute values and text, added to their tables or not.
        {"00 3C 02 61 62 63 FF", "string length: ", &ParserLimits::maxStringLength, 3},
        {"00 7C 00 61 78 00 62 42 63 64 65 FF F0", "string length: ", &ParserLimits::maxStringLength, 3},
        {"00 7C 00 61 78 00 62 02 63 64 65 FF F0", "string length: ", &ParserLimits::maxStringLength, 3},
        {"00 7C 00 61 78 00 62 02 63 64 65 FF F0", "delivered octets: ", &ParserLimits::maxDeliveredOctets,
         30},
        {"00 7C 00 61 78 00 62 40 63 F0 40 00 40 64 F0 40 00 40 65 FF FF F0",
         "table entries: ", &ParserLimits::maxTableEntries, 4},
        {"00 3C 00 61 90 62 90 63 90 64 FF", "table entries: ", &ParserLimits::maxTableEntries, 4},
        {"00 3C 00 61 3C 00 62 3C 00 63 FF FF", "table entries: ", &ParserLimits::maxTableEntries, 4}};
    for (const auto& row : rows) {
        for (const char* const behind : {"", "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"}) {
            for (const bool strict : {false, true}) {
                SCOPED_TRACE(std::string(row.what) + row.document + behind);
                const std::string limited = document(std::string(row.document) + behind);
                Reading reading(strict);
                ParserLimits limits;
                limits.*row.pLimit = row.needed;
                reading.parser.setLimits(limits);
                EXPECT_FAILURE("", reading.events(limited));
                --(limits.*row.pLimit);
                reading.parser.setLimits(limits);
                EXPECT_FAILURE("FISException: Limit exceeded: " + (row.what + std::to_string(row.needed - 1)),
                               reading.events(limited));
            }
        }
    }
}

TEST(DamageTest, LimitsBoundWhatAHeaderBrings) {
    Reading reading;
    reading.parser.setLimits({.maxTableEntries = 3});
    const auto failure = [&](const char* header) {
        return failureOf([&] { reading.events(document(header)); });
    };
    EXPECT_EQ(failure("20 00 80 01 00 6C 00 6D F0"), "");
    EXPECT_EQ(failure("20 00 80 02 00 6C 00 6D 00 6E F0"), "FISException: Limit exceeded: table entries: 3");
    EXPECT_EQ(failure("20 00 82 00 00 6C 02 00 00 02 00 00 01 00 00 F0"),
              "FISException: Limit exceeded: table entries: 3");
    // Alphabets stay with the parser, so they count over all of its documents.
    EXPECT_EQ(failure("20 08 00 02 00 61 00 62 00 63 F0"), "");
    EXPECT_EQ(failure("20 08 00 00 00 61 F0"), "FISException: Limit exceeded: table entries: 3");
}

} // namespace
} // namespace Tamo::FastInfoset::Test
