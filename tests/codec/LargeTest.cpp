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

TEST(LargeTest, TextBeyondTheRangeOfInt) {
    // The parser reports it in pieces, which the cursor joins.
    const std::string before = document("00 83 7F FF FF 01");
    Zeros octets(before.size() + MOST + 5 + 1);
    octets.set(0, before);
    octets.set(octets.view().size() - 1, "\xF0");
    FastInfosetReader reader;
    reader.open(octets.view());
    reader.next();
    EXPECT_EQ(reader.next(), FastInfosetReader::TEXT);
    EXPECT_EQ(reader.text().size(), MOST + 5);

    // The writer cuts text, so that its documents can be read.
    struct Counting : std::streambuf {
        std::string small;
        std::vector<std::size_t> large;
        std::streamsize xsputn(const char* p, std::streamsize n) override {
            n < 100 ? void(small.append(p, static_cast<std::size_t>(n)))
                    : large.push_back(static_cast<std::size_t>(n));
            return n;
        }
    } counting;
    const Zeros text(MOST + 5);
    std::ostream stream(&counting);
    FastInfosetWriter writer(stream);
    writer.startDocument();
    writer.characters(text.view());
    EXPECT_EQ(hex(counting.small), hex(document("00 83 7F FF FE FC 92 02 00 00 00 00 00")));
    EXPECT_EQ(counting.large, std::vector<std::size_t>{MOST});
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
