// More than an int or an index can count.
#include "../../src/TextPieces.h"
#include "DocumentTest.h"
#include <sys/mman.h>

namespace Tamo::FastInfoset::Test {
namespace {

TEST(LargeTest, PiecesEndBetweenCharacters) {
    const struct {
        const char* text;
        const char* pieces;
    } rows[] = {{"", ""},
                {"abcd", "abcd"},
                {"abcde", "abcd|e"},
                {"abc\xC3\xA4", "abc|\xC3\xA4"},
                {"a\xF0\x9F\x98\x80z\xE2\x82\xAC", "a|\xF0\x9F\x98\x80|z\xE2\x82\xAC"},
                {"\x80\x80\x80\x80\x80", "\x80\x80\x80\x80|\x80"}}; // no UTF-8
    for (const auto& row : rows) {
        std::string pieces;
        TextPieces::forEach(
            row.text, [&](auto piece) { pieces.append(pieces.empty() ? "" : "|").append(piece); }, 4);
        EXPECT_EQ(pieces, row.pieces);
    }
}

// Octets that cost no memory until they are written.
class Zeros {
public:
    explicit Zeros(std::size_t size)
        : _size(size),
          _p(static_cast<char*>(mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))) {}
    Zeros(const Zeros&) = delete;
    ~Zeros() { munmap(_p, _size); }
    std::string_view view() const { return {_p, _size}; }
    void set(std::size_t at, std::string_view octets) { octets.copy(_p + at, octets.size()); }

private:
    std::size_t _size;
    char* _p;
};

constexpr std::size_t MOST = 0x7FFFFFFF;

// Keeps what is written in small pieces, and counts the large ones.
class Counting : private std::streambuf, public std::ostream {
public:
    Counting() : std::ostream(this) {}
    std::string small;
    std::size_t large = 0;

private:
    std::streamsize xsputn(const char* p, std::streamsize n) override {
        const auto size = static_cast<std::size_t>(n);
        size < 100 ? void(small.append(p, size)) : void(large += size);
        return n;
    }
};

TEST(LargeTest, TextBeyondTheRangeOfInt) {
    // The parser reports it in pieces, which the cursor joins.
    const std::string before = document("00 83 7F FF FF 01");
    Zeros octets(before.size() + MOST + 5 + 1);
    octets.set(0, before);
    octets.set(octets.view().size() - 1, "\xF0");
    FastInfosetReader reader;
    reader.setStrict(false);
    reader.open(octets.view());
    reader.next();
    EXPECT_EQ(reader.next(), FastInfosetReader::TEXT);
    EXPECT_EQ(reader.text().size(), MOST + 5);

    // The writer cuts text, so that its documents can be read.
    const Zeros text(MOST + 5);
    Counting counting;
    FastInfosetWriter writer(counting);
    writer.startDocument();
    writer.characters(text.view());
    EXPECT_EQ(hex(counting.small), hex(document("00 83 7F FF FE FC 92 02 00 00 00 00 00")));
    EXPECT_EQ(counting.large, MOST);
}

TEST(LargeTest, StringsBeyondTheirLength) {
    constexpr std::size_t LONGEST = (std::size_t{1} << 32) + 264;
    const Zeros text(LONGEST + 1);
    Counting counting;
    FastInfosetWriter writer(counting);
    writer.startDocument();
    EXPECT_FAILURE("FISEncodingException: A string of 4294967561 octets is longer than the longest one that "
                   "can be written, of 4294967560",
                   writer.comment(text.view()));
    EXPECT_EQ(hex(counting.small), hex(document("00")));
    writer.comment(text.view().substr(1));
    EXPECT_EQ(hex(counting.small), hex(document("00 E2 0C FF FF FF FF")));
    EXPECT_EQ(counting.large, LONGEST);
}

// The reader and the writer count the same entries: 2^20 and none more.
TEST(LargeTest, MoreNamesThanAnIndexCanName) {
    constexpr int COUNT = 1048576;
    constexpr int SQUARE = 1024;
    const struct {
        bool areQualified; // elements in 1024 namespaces with 1024 local names, or with a local name each
        const char* failure;
    } rows[] = {
        {false, "FISEncodingException: The document's table of identifying strings is full with 1048576 "
                "entries and does not have \"new\""},
        {true, "FISEncodingException: The document's table of element names is full with 1048576 entries "
               "and does not have \"new\""}};
    for (const auto& row : rows) {
        std::ostringstream stream;
        FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
        writer.startDocument();
        const auto name = [](int i) { return "n" + std::to_string(i); };
        for (int i = 0; row.areQualified && i < SQUARE; ++i) {
            writer.startPrefixMapping(name(i), name(i));
        }
        for (int i = 0; i < COUNT; ++i) {
            const std::string uri = row.areQualified ? name(i / SQUARE) : "";
            const std::string local = name(row.areQualified ? i % SQUARE : i);
            writer.startElement(uri, local, row.areQualified ? uri + ":" + local : local);
            i == 0 ? void() : writer.endElement();
        }
        EXPECT_FAILURE(row.failure, writer.startElement("", "new", "new"));
        // Nothing is left of what was refused. An index in the longest form (X.891, C.27.4), behind which the
        // rest of the element follows, comes last.
        const std::string last = row.areQualified ? "<{n1}n1:n2 n3=\"x\"|>|<{n1023}n1023:n1022 n3=\"x\"|'t"
                                                  : "<n2 n3=\"x\"|>|<n1048574 n3=\"x\" n4=\"y\"|'t";
        play(last + "|>|>|$", writer);
        const std::string events = eventsOf(stream.str());
        EXPECT_EQ(events.substr(std::min(events.find("<n2 n3"), events.find("<{n1}n1:n2 n3"))),
                  last + "|>|>|$");
    }
}

TEST(LargeTest, MoreStringsThanAnIndexCanName) {
    constexpr int COUNT = 1048576;
    // What is not kept is written in full each time, by the writer as well.
    const std::string events = eventsOf(document(
        [&](FastInfosetWriter& writer) {
            writer.startDocument();
            for (int i = 1; i <= COUNT + 2; ++i) {
                writer.characters(std::to_string(i));
            }
            play("'1048576|'1048577|'1048578|$", writer);
        },
        DocumentVocabulary::VOC_MAP));
    EXPECT_EQ(events.substr(events.rfind("'1048575|")),
              "'1048575|'1048576|'1048577|'1048578|'1048576|'1048577|'1048578|$");

    // Documents that have all of them added.
    std::string all = document("00");
    for (int i = 1; i <= COUNT + 2; ++i) {
        const std::string text = std::to_string(i);
        all += text.size() < 3 ? std::string{static_cast<char>(0x90 + text.size() - 1)}
                               : std::string{'\x92', static_cast<char>(text.size() - 3)};
        all += text;
    }
    all += octets("B8 0B FB EF F0"); // the entry with the index 2^20
    for (const auto impl : {DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP}) {
        FastInfosetParser parser(impl);
        EventRecorder recorder;
        recorder.connect(parser);
        parseMemory(parser, all);
        EXPECT_EQ(recorder.events().substr(recorder.events().rfind("'1048578")), "'1048578|'1048576|$");
        EXPECT_EQ(parser.vocabulary().vocabulary(DocumentVocabulary::CONTENT_CHARACTER_CHUNK).size(),
                  COUNT + 1u);
        ParserLimits limits;
        limits.maxTableEntries = COUNT + 1;
        parser.setLimits(limits);
        EXPECT_FAILURE("FISException: Limit exceeded: table entries: 1048577", parseMemory(parser, all));
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
