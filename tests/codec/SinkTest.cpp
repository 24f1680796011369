// Where a writer's octets go, and when: sinks beside streams, and flushes.
#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/SpanSink.h"
#include "Tamo/StringSink.h"
#include "Tamo/VectorSink.h"
#include <algorithm>
#include <optional>
#include <utility>

namespace Tamo::FastInfoset::Test {
namespace {

using Flush = FastInfosetWriter::Flush;

std::string_view textOf(std::span<const std::byte> octets) {
    return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

struct Use {
    bool strict;
    std::function<void(FastInfosetWriter&)> write;
};

// Documents of both modes, smaller than a sink's block and bigger, with pieces that end around it.
std::vector<Use> uses() {
    std::vector<Use> all{{false, [](auto& w) { play(EVERY_EVENT, w); }}};
    all.push_back({true, [](auto& w) {
                       FastInfosetParser parser(DocumentVocabulary::VOC_MAP, nullptr);
                       parser.setStrict(true);
                       parser.initialize(&w);
                       parser.parseMemory(everyConstruct(true)[1]);
                   }});
    for (const std::size_t size : {3560U, 4080U, 4096U, 4110U, 20000U}) {
        all.push_back({size % 3 == 0, [size](auto& w) {
                           const FastInfosetWriter::Document scope(w);
                           w.startElement("r");
                           for (std::size_t i = 0; i < 9; ++i) {
                               w.element("a", {{"b", "c"}}, std::string(size / (1 + i % 3) + i, 'x'));
                           }
                           w.endElement();
                       }});
    }
    return all;
}

TEST(SinkTest, TheOctetsOfAStream) {
    for (const Use& use : uses()) {
        std::ostringstream stream;
        FastInfosetWriter expecting(stream, false, DocumentVocabulary::VOC_MAP);
        expecting.setStrict(use.strict);
        use.write(expecting);
        const std::string expected = stream.str();

        // One writer for all; a sink need not outlive its document.
        std::string text("before");
        std::optional<StringSink> first(text);
        FastInfosetWriter writer(*first, false, DocumentVocabulary::VOC_MAP);
        writer.setStrict(use.strict);
        for (const Flush flush : {Flush::EACH_CONSTRUCT, Flush::DOCUMENT_END, Flush::NEVER}) {
            writer.setFlush(flush);
            use.write(writer);
            EXPECT_TRUE(text == "before" + expected);
            first.reset();

            std::vector<std::byte> vector(3);
            VectorSink vectorSink(vector);
            writer.reset(vectorSink);
            use.write(writer);
            EXPECT_TRUE(textOf(vector).substr(3) == expected);

            vector.assign(expected.size() + 1, std::byte{0xA5});
            SpanSink spanSink({vector.data(), expected.size()});
            writer.reset(spanSink);
            use.write(writer);
            EXPECT_TRUE(textOf(spanSink.written()) == expected && vector.back() == std::byte{0xA5});

            text = "before";
            writer.reset(first.emplace(text));
        }
    }
}

TEST(SinkTest, ASpanThatIsFull) {
    const std::string expected = document([](auto& w) { play(EVERY_EVENT, w); });
    FastInfosetWriter writer(std::cout, false, DocumentVocabulary::VOC_MAP);
    for (std::size_t size = 0; size < expected.size(); ++size) {
        std::vector<std::byte> octets(expected.size(), std::byte{0xA5});
        SpanSink sink({octets.data(), size});
        writer.reset(sink);
        EXPECT_FAILURE("IOException: no place left in the span of " + std::to_string(size) + " octets",
                       play(EVERY_EVENT, writer));
        EXPECT_TRUE(expected.starts_with(textOf(sink.written())));
        EXPECT_EQ(textOf(octets).find_first_not_of('\xA5', sink.written().size()), std::string::npos);
        std::ostream stream(&sink);
        EXPECT_TRUE(stream.write(expected.data(), 600).bad());
    }
    writer.reset(std::cout);
}

// A sink of the program's own, without a put area.
class OwnSink : public Sink {
public:
    explicit OwnSink(std::size_t capacity) : _capacity(capacity) {}
    void deliver() override { ++deliveries; }

    std::string octets;
    int synchronised = 0;
    int deliveries = 0;

private:
    int overflow(int c) override {
        const char octet = static_cast<char>(c);
        return xsputn(&octet, 1) == 1 ? c : EOF;
    }
    std::streamsize xsputn(const char* data, std::streamsize size) override {
        const std::size_t room = std::min(static_cast<std::size_t>(size), _capacity - octets.size());
        octets.append(data, room);
        return static_cast<std::streamsize>(room);
    }
    int sync() override { return ++synchronised, 0; }

    std::size_t _capacity;
};

TEST(SinkTest, AnApplicationsOwn) {
    const std::string expected = document([](auto& w) { play("^|<a b=\"c\"|'text|>|$", w); });
    for (std::size_t capacity = 0; capacity <= expected.size(); ++capacity) {
        for (const Flush flush : {Flush::EACH_CONSTRUCT, Flush::NEVER}) {
            OwnSink sink(capacity);
            FastInfosetWriter writer(sink);
            writer.setFlush(flush);
            const bool isFull = capacity < expected.size();
            EXPECT_EQ(failureOf([&] { play("^|<a b=\"c\"|'text|>|$", writer); }),
                      isFull ? "IOException: error while writing Fast Infoset document to stream" : "");
            EXPECT_EQ(hex(sink.octets), hex(expected.substr(0, capacity)));
            EXPECT_EQ(sink.deliveries, isFull ? 0 : 1);
            EXPECT_EQ(sink.synchronised, flush == Flush::NEVER ? 0 : isFull ? sink.synchronised : 3);
        }
    }
}

TEST(SinkTest, WhenAStreamIsFlushed) {
    const char* const events = "^|<a b=\"c\"|<d|=int 1|=int 2|>|'text|#c|>|$";
    const std::string expected = document([&](auto& w) { play(events, w); });
    const struct {
        Flush flush;
        int flushes; // of two documents
    } rows[] = {{Flush::EACH_CONSTRUCT, 12}, {Flush::DOCUMENT_END, 2}, {Flush::NEVER, 0}};
    for (const auto& row : rows) {
        for (const bool onRequest : {false, true}) {
            BoundedStream stream(1000);
            int requests = 0;
            {
                FastInfosetWriter writer(stream);
                writer.setFlush(row.flush);
                play(events, writer);
                writer.reset(stream);
                play("^|<a b=\"c\"|<d", writer);
                if (onRequest) {
                    const int before = stream.flushes();
                    writer.flush();
                    requests = stream.flushes() - before;
                }
                play("=int 1|=int 2|>|'text|#c|>|$", writer);
                EXPECT_EQ(stream.flushes() - requests, row.flushes);
            }
            EXPECT_EQ(requests, onRequest ? 1 : 0);
            EXPECT_EQ(stream.flushes() - requests, row.flushes + (row.flush == Flush::EACH_CONSTRUCT))
                << "a writer flushes at its end by default only";
            EXPECT_EQ(hex(stream.octets()), hex(expected + expected));
        }
    }
}

// What a reader of the octets so far knows after each event. The default repeats the end of a mapping.
TEST(SinkTest, WhatIsToBeSeenAfterAFlush) {
    using Rows = std::vector<std::pair<const char*, const char*>>; // an event, and what is seen in addition
    const Rows usual{{"^", "^"},
                     {"!,p,s", "|!,p,s"},
                     {"~", ""},
                     {"#c", "|~|#c"},
                     {"<r", "|<r"},
                     {"=int 1", "|=int 1"},
                     {"=int 2", "|=int 2"},
                     {"<a b=\"c\"", ""},
                     {"'text", "|<a b=\"c\"|'text"},
                     {"+p=u", ""},
                     {"<{u}p:d", "|+p=u|<{u}p:d"},
                     {"[", ""},
                     {"'x", "|[|'x|]"},
                     {"]", ""},
                     {">", ""},
                     {"-p", ""},
                     {">", "|>|-p|>|-p"},
                     {">", ""},
                     {"$", "|>|-p|$"}};
    const Rows strict{{"^", ""}, {"#c", ""}, {"<r", "^|#c|<r"}, {"=int 1", "|=int 1"}, {"?t d", "|?t d"}};
    for (const auto* pRows : {&usual, &strict}) {
        std::string octets;
        StringSink sink(octets);
        FastInfosetWriter writer(sink, false, DocumentVocabulary::VOC_MAP);
        writer.setStrict(pRows == &strict);
        std::string expected;
        for (const auto& [event, seen] : *pRows) {
            play(event, writer);
            writer.flush();
            expected += seen;
            FastInfosetParser parser;
            parser.setStrict(pRows == &strict);
            TypedEventRecorder recorder;
            recorder.connect(parser);
            failureOf([&] { parseMemory(parser, octets); });
            EXPECT_EQ(recorder.events(), expected) << event;
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
