// Streams that are read live: when each event comes, how far the stream is read then, and where it stands
// behind a document. That live reading reports what any reading does is part of every row in expectEvents,
// and that it fails alike part of DamageTest.
#include "DocumentTest.h"
#include "LiveStream.h"
#include <ext/stdio_filebuf.h>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace Tamo::FastInfoset::Test {
namespace {

using R = FastInfosetReader;

// Octets, and the events that come with the last of them; those of a cursor and those by default if they are
// others.
struct Piece {
    const char* octets;
    std::string events;
    const char* cursors = nullptr;
    const char* usual = nullptr;
};

const std::vector<Piece> DOCUMENTS[] = {
    {{"E0 00 00 01 18", "none|vocabulary", ""},
     {"C2 00 6E 00 73", "Nn,-,s", ""},
     {"F0", ""},
     {"D0 00 65 00 75 80", "Ue,-,u,n", ""},
     {"F0", "^", "Nn,-,s|Ue,-,u,n|^"},
     {"C6 80", "!,,s"},
     {"E1 00 74 00 64", "?t d"},
     {"E1 82 00 65", "?t e"},
     {"F0", "~"},
     {"E2 00 63", "#c"},
     {"78 CF 00 70 00 75", "+p=u", ""},
     {"F0", ""},
     {"3F 81 81 00 61 78 00 78 40 31", ""},
     {"78 00 79 80 F0", "<{u}p:a x=\"1\" y=\"1\"", "+p=u|<{u}p:a x=\"1\" y=\"1\""},
     {"9C 25 63 64", "[|'cd|]"},
     {"8C 14 38", "=bool true"},
     {"8C 1A 01 3F C0 00 00", "=float 1.5"},
     {"8C 0E 05 00 00 00 07 00 00 00 09", "=int 7|=int 9"},
     {"98 01 12 3F", "'123"},
     {"A1", "'123"},
     {"85 20 AC", "'\u20AC"},
     {"CB 00 65 00 73 00 70", "*e", nullptr, ""},
     {"40 00 80 FF", "<{u}p:a x=\"1\"|>"},
     {"00", "<{u}p:a"},
     {"91 68 69", "'hi"},
     {"FF", ">|>|-p", nullptr, ">|>"},
     {"F0", "$"}},
    {{"E0 00 00 01 00", "none|vocabulary|^", "^"},
     {"7C 00 61 78 00 62 00 31 F0", "<a b=\"1\""},
     {"3C 00 62", "<b"},
     {"F0", ">"},
     {"82 01 61 62 63 64", "'abcd"},
     {"FF", ">|$"}},
    {{"E0 00 00 01 00", "none|vocabulary|^", "^"},
     {"7C 00 61 78 00 62 00 31 FF", "<a b=\"1\"|>"},
     {"F0", "$"}},
};

std::string octetsOf(const std::vector<Piece>& pieces) {
    std::string all;
    for (const Piece& piece : pieces) {
        all += octets(piece.octets);
    }
    return all;
}

// The events of the first size octets, and in ends, if it is not null, the octets to the end of each event.
std::string eventsUntil(const std::vector<Piece>& pieces, bool strict, bool forCursor, std::size_t size,
                        std::vector<std::size_t>* pEnds = nullptr) {
    std::string events;
    std::size_t end = 0;
    for (const Piece& piece : pieces) {
        end += octets(piece.octets).size();
        const std::string own = forCursor && piece.cursors ? piece.cursors
                                : !strict && piece.usual   ? piece.usual
                                                           : piece.events;
        if (end > size || own.empty()) {
            continue;
        }
        events += (events.empty() ? "" : "|") + own;
        if (pEnds) {
            pEnds->resize(
                pEnds->size() + 1 + static_cast<std::size_t>(std::count(own.begin(), own.end(), '|')), end);
        }
    }
    return events;
}

void expectPrompt(const std::vector<Piece>& pieces, bool strict, std::size_t most) {
    SCOPED_TRACE("pieces of up to " + std::to_string(most) + (strict ? ", strictly" : ", by default"));
    const std::string whole = octetsOf(pieces);
    TypedEventRecorder recorder;
    FastInfosetParser parser;
    parser.setStrict(strict);
    recorder.connectAll(parser);
    R reader;
    reader.setStrict(strict);
    const auto expect = [&](std::size_t size, bool forCursor,
                            const std::function<bool(std::istream&)>& read) {
        SCOPED_TRACE((forCursor ? "a cursor of " : "a parser of ") + std::to_string(size));
        LiveStream stream(whole, size, most);
        recorder.clear();
        EXPECT_FAILURE(size < whole.size()
                           ? "IOException: error reading stream while parsing Fast Infoset document"
                           : "",
                       EXPECT_TRUE(read(stream)));
        EXPECT_EQ(recorder.events(), eventsUntil(pieces, strict, forCursor, size));
        EXPECT_EQ(stream.taken(), size);
    };
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        expect(size, false, [&](std::istream& stream) { return parser.parseNext(stream); });
        expect(size, true, [&](std::istream& stream) {
            return reader.openNext(stream) && (replay(reader, recorder), true);
        });
    }
    std::vector<std::size_t> ends;
    eventsUntil(pieces, strict, false, whole.size(), &ends);
    for (std::size_t event = 0; event < ends.size(); ++event) {
        LiveStream stream(whole + whole, std::string::npos, most);
        recorder.clear();
        recorder.failAt(event);
        EXPECT_FAILURE("RuntimeException: handler", parser.parseNext(stream));
        EXPECT_EQ(stream.taken(), ends[event]) << "behind event " << event;
    }
}

TEST(LiveTest, EventsComeWithTheirLastOctet) {
    for (const std::vector<Piece>& pieces : DOCUMENTS) {
        for (const std::size_t most : {0u, 1u, 3u, 12u, 100u}) {
            expectPrompt(pieces, false, most);
            expectPrompt(pieces, true, most);
        }
    }
}

TEST(LiveTest, ThousandsOfDocumentsInOneStream) {
    std::vector<std::string> documents;
    std::string all;
    for (std::size_t i = 0; i < 2000; ++i) {
        documents.push_back(document([&](FastInfosetWriter& writer) {
            play("^|<a x=\"1\"|" + std::string(i % 3 ? "" : "'" + std::string(1 + i % 1700, 'x') + "|") +
                     ">|$",
                 writer);
        }));
        all += documents.back();
    }
    for (const std::size_t most : {0u, 1u, 700u, 5000u}) {
        for (const bool strict : {false, true}) {
            LiveStream stream(all, std::string::npos, most);
            TypedEventRecorder recorder;
            FastInfosetParser parser;
            parser.setStrict(strict);
            recorder.connect(parser);
            R reader;
            reader.setStrict(strict);
            std::size_t end = 0;
            for (std::size_t i = 0; i < documents.size(); ++i) {
                end += documents[i].size();
                recorder.clear();
                if (i % 2 == 0) {
                    ASSERT_TRUE(parser.parseNext(stream));
                    EXPECT_EQ(parser.documentSize(), documents[i].size());
                } else {
                    ASSERT_TRUE(reader.openNext(stream));
                    replay(reader, recorder);
                    EXPECT_EQ(reader.documentSize(), documents[i].size());
                }
                ASSERT_EQ(recorder.events(), eventsOf(documents[i])) << i;
                ASSERT_EQ(stream.taken(), end) << i;
            }
            stream.endAtEnd();
            recorder.clear();
            EXPECT_FALSE(parser.parseNext(stream));
            EXPECT_FALSE(reader.openNext(stream));
            EXPECT_EQ(recorder.events(), "");
            EXPECT_FAILURE("InvalidAccessException: No document is open", reader.next());
        }
    }
}

TEST(LiveTest, ConversationOverAPipe) {
    const struct {
        const char* octets;
        std::vector<R::Event> events;
    } pieces[] = {{"E0 00 00 01 00", {R::START_DOCUMENT}},
                  {"3C 00 61", {R::START_ELEMENT}},
                  {"82 00 61 62 63", {R::TEXT}},
                  {"E2 00 63", {R::COMMENT}},
                  {"FF", {R::END_ELEMENT, R::END_DOCUMENT}}};
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0); // who waits fails
    __gnu_cxx::stdio_filebuf<char> in(ends[0], std::ios::in | std::ios::binary);
    __gnu_cxx::stdio_filebuf<char> out(ends[1], std::ios::out | std::ios::binary, 1);
    std::istream stream(&in);
    BoundedStream answers(100);
    stream.tie(&answers);
    stream.exceptions(std::ios_base::badbit | std::ios_base::failbit);
    R reader;
    for (int i = 0; i < 3; ++i) {
        for (const auto& piece : pieces) {
            const int flushes = answers.flushes();
            std::ostream(&out) << octets(piece.octets) << std::flush;
            if (&piece == pieces) {
                ASSERT_TRUE(reader.openNext(stream));
            }
            for (const R::Event event : piece.events) {
                ASSERT_EQ(reader.next(), event);
            }
            answers << "answer ";
            EXPECT_GT(answers.flushes(), flushes);
        }
    }
    out.close();
    EXPECT_FALSE(reader.openNext(stream));
}

TEST(LiveTest, StreamsThatThrowOrHaveFailed) {
    const std::string octets = octetsOf(DOCUMENTS[2]);
    std::istringstream stream(octets + octets);
    stream.exceptions(std::ios_base::badbit | std::ios_base::failbit | std::ios_base::eofbit);
    FastInfosetParser parser;
    parser.setLive(true);
    EXPECT_TRUE(parser.isLive());
    parseStream(parser, stream);
    EXPECT_TRUE(parser.parseNext(stream)); // the end is not asked for
    EXPECT_THROW(parser.parseNext(stream), std::ios_base::failure);

    // Nor is it to see whether an algorithm's own failure is one of the input.
    LiveStream typed(document("00 3C 00 61 8C 7C"), std::string::npos, 1);
    parser.decodingAlgorithms().add([](BitStreamReader&) -> AutoPtr<Encoding> { tamo_unexpected(); });
    EXPECT_FAILURE("AssertionViolationException: unexpected", parser.parseNext(typed));

    std::istream none(nullptr);
    EXPECT_FAILURE("IOException: error reading stream while parsing Fast Infoset document",
                   parser.parseNext(none));
    // What is abandoned leaves the stream where it has been read to, and may be gone before the reader is.
    R reader;
    std::istringstream abandoned(octets + "rest");
    reader.setLive(true);
    EXPECT_TRUE(reader.isLive());
    reader.open(abandoned);
    reader.next();
    EXPECT_EQ(abandoned.tellg(), 5);
    reader.open(octets);
    EXPECT_EQ(abandoned.tellg(), 5);
}

} // namespace
} // namespace Tamo::FastInfoset::Test
