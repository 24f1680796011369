// What the writer writes, octet by octet, and that every reader understands it.
#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/MapVocabulary.h"
#include "Tamo/HashKey.h"
#include "Tamo/XML/AttributesImpl.h"
#include <bit>
#include <cstring>

namespace Tamo::FastInfoset::Test {
namespace {

// Collects octets through a put area of a fixed size, or octet by octet.
class SmallBuffer : public std::streambuf {
public:
    explicit SmallBuffer(std::size_t size) : _area(size, '!') { setp(_area.data(), _area.data() + size); }
    const std::string& collected() {
        pubsync();
        return _collected;
    }
    std::size_t passedOn() const { return _collected.size(); }
    /// What stands behind the octets in the put area.
    std::string_view behind() const { return {pptr(), epptr()}; }

protected:
    int overflow(int c) override {
        sync();
        return c == EOF        ? 0
               : _area.empty() ? (_collected.push_back(static_cast<char>(c)), c)
                               : sputc(static_cast<char>(c));
    }
    int sync() override {
        _collected.append(pbase(), pptr());
        setp(_area.data(), _area.data() + _area.size());
        return 0;
    }

private:
    std::string _area;
    std::string _collected;
};

// Takes octets in one way only, and throws behind some of them.
class OneWay : public std::streambuf {
public:
    struct Full {};
    OneWay(std::string& octets, std::size_t capacity) : _octets(octets), _capacity(capacity) {}

protected:
    std::streamsize xsputn(const char* p, std::streamsize n) override {
        if (_octets.size() + static_cast<std::size_t>(n) > _capacity) {
            throw Full();
        }
        _octets.append(p, static_cast<std::size_t>(n));
        return n;
    }
    int sync() override { return _octets.size() == _capacity ? throw Full() : 0; }

private:
    std::string& _octets;
    std::size_t _capacity;
};

constexpr const char* EVERY_CONSTRUCT =
    "^|!,p,s|?t d|~|+p=u|<{u}p:a {u}p:b=\"12\" c=\"a value\" d=\"\"|'x|'text|'a "
    "longer text|#c|[|'y|]|=int 1|=bool true|<b e=\"12\"|>|>|-p|$";

TEST(WriterTest, TheStreamsBufferIsTheUsers) {
    const std::string expected = document([](auto& w) { play(EVERY_CONSTRUCT, w); });
    // Nothing behind the last octet is touched, event by event.
    SmallBuffer buffer(2000);
    std::ostream stream(&buffer);
    FastInfosetWriter writer(stream);
    writer.setFlush(FastInfosetWriter::Flush::NEVER);
    std::istringstream events(EVERY_CONSTRUCT);
    for (std::string event; std::getline(events, event, '|');) {
        play(event, writer);
        ASSERT_EQ(buffer.behind().find_first_not_of('!'), std::string::npos) << event;
    }
    EXPECT_EQ(hex(buffer.collected()), hex(expected));
    std::ostringstream bits("ABCDEFGHIJKLMNOP");
    BitStreamWriter(bits, false).write(0x3132u, 16);
    EXPECT_EQ(bits.str(), "12CDEFGHIJKLMNOP");

    // A buffer of one operation, which fails at each place; what it throws arrives when it is asked for.
    for (std::size_t capacity = 0; capacity <= expected.size() + 1; ++capacity) {
        for (const bool throws : {false, true}) {
            std::string octets;
            OneWay oneWay(octets, capacity);
            std::ostream into(&oneWay);
            into.exceptions(throws ? std::ios_base::badbit : std::ios_base::goodbit);
            const auto write = [&] {
                FastInfosetWriter one(into);
                play(EVERY_CONSTRUCT, one);
            };
            if (capacity > expected.size()) {
                write();
                EXPECT_EQ(hex(octets), hex(expected));
            } else if (throws) {
                EXPECT_THROW(write(), OneWay::Full) << capacity;
                EXPECT_TRUE(into.bad());
            } else {
                EXPECT_FAILURE("IOException: error while writing Fast Infoset document to stream", write());
            }
        }
    }
}

TEST(WriterTest, DocumentsElementsAndAttributes) {
    expectDocuments(
        {{"nothing", "^|$", "00 F0"},
         {"a name again", "^|<r|<a|>|<a|>|>|$", "00 3C 00 72 3C 00 61 F0 01 FF F0"},
         {"name and value again", R"(^|<r|<a b="c"|>|<a b="c"|>|>|$)",
          "00 3C 00 72 7C 00 61 78 00 62 40 63 FF 41 00 80 FF FF"},
         {"an empty value", R"(^|<a b=""|>|$)", "00 7C 00 61 78 00 62 FF FF F0"},
         {"children behind attributes", R"(^|<a b="c"|<a|>|>|$)", "00 7C 00 61 78 00 62 40 63 F0 00 FF F0"}});
}

TEST(WriterTest, Namespaces) {
    expectDocuments(
        {{"a prefix", "^|+p=u|<{u}p:e|>|-p|$", "00 38 CF 00 70 00 75 F0 3F 81 81 00 65 FF"},
         {"the default namespace", "^|+=u|<{u}e|>|-|$", "00 38 CD 00 75 F0 3D 81 00 65 FF"},
         {"undeclared", "^|+=u|<{u}e|+=|<f|>|-|>|-|$",
          "00 38 CD 00 75 F0 3D 81 00 65 38 CC F0 3C 00 66 FF F0"},
         // The reader ends the mappings of the element that was started last.
         {"mappings of a parent", "^|+p=u|<{u}p:a|<b|>|>|-p|$",
          "00 38 CF 00 70 00 75 F0 3F 81 81 00 61 3C 00 62 FF F0", "^|+p=u|<{u}p:a|<b|>|>|$"},
         {"mappings of a child", "^|<a|+p=u|<{u}p:b|>|-p|>|$",
          "00 3C 00 61 38 CF 00 70 00 75 F0 3F 81 81 00 62 FF F0", "^|<a|+p=u|<{u}p:b|>|-p|>|-p|$"},
         {"ascending prefixes, never xml", "^|+q=v|+xml=w|+p=u|<e|>|-p|-q|-xml|$",
          "00 38 CF 00 70 00 75 CF 00 71 00 76 F0 3C 00 65 FF", "^|+p=u|+q=v|<e|>|-p|-q|$"},
         {"a prefix that the name alone declares", "^|<{u}p:e|>|$",
          "00 38 CF 00 70 00 75 F0 3F 81 81 00 65 FF", "^|+p=u|<{u}p:e|>|-p|$"},
         {"a prefix that the name binds anew", "^|+p=u|<{v}p:e|>|-p|$",
          "00 38 CF 00 70 00 76 F0 3F 81 81 00 65 FF", "^|+p=v|<{v}p:e|>|-p|$"},
         {"generated prefixes, for siblings too", "^|<r|<{u}e|>|<{u}e|>|<{v}f|>|>|$",
          "00 3C 00 72 38 CF 02 6E 73 31 00 75 F0 3F 81 81 00 65 F0 38 CF 81 81 F0 01 F0"
          "38 CF 81 81 CF 02 6E 73 32 00 76 F0 3F 82 82 00 66 FF F0",
          "^|<r|+ns1=u|<{u}ns1:e|>|-ns1|+ns1=u|<{u}ns1:e|>|-ns1"
          "|+ns1=u|+ns2=v|<{v}ns2:f|>|-ns1|-ns2|>|-ns1|-ns2|$"},
         {"an attribute in the element's namespace", R"(^|+p=u|<{u}p:e {u}p:a="v"|>|-p|$)",
          "00 78 CF 00 70 00 75 F0 3F 81 81 00 65 79 81 00 61 40 76 FF F0",
          R"(^|+p=u|<{u}p:e {u}a="v"|>|-p|$)"},
         {"an attribute in another namespace", R"(^|+p=u|<e {u}p:a="v"|>|-p|$)",
          "00 78 CF 00 70 00 75 F0 3C 00 65 7B 81 81 00 61 40 76 FF F0", R"(^|+p=u|<e {u}a="v"|>|-p|$)"},
         {"an attribute without a bound prefix", R"(^|<e {u}a="v"|>|$)",
          "00 78 CD 00 75 F0 3C 00 65 79 81 00 61 40 76 FF F0", R"(^|+=u|<e {u}a="v"|>|-|$)"}});
}

// Writes the events, and has the writer forget what it remembers of names after each.
void writeEach(const std::vector<std::string>& events, std::ostream& stream, bool forgetful) {
    FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
    for (const std::string& some : events) {
        play(some, writer);
        if (forgetful) {
            writer.getDocumentVocabulary();
        }
    }
}

// What the writer remembers of names must not be seen, nor where the octets go.
TEST(WriterTest, ManyNamesWhateverIsRememberedAndWhateverTheStream) {
    std::vector<std::string> events{"^|+p=u"};
    for (int i = 0; i < 40; ++i) {
        events.push_back("+p" + std::to_string(i) + "=w" + std::to_string(i));
    }
    events.push_back("<{u}p:root");
    for (int i = 0; i < 9000; ++i) {
        // Names of all sizes, more of them than are remembered; of each third some come again soon.
        const int n = i % 3 == 0 ? i % 1500 : i % 7;
        const std::string name = "n" + std::string(static_cast<std::size_t>(n % 40), 'x') + std::to_string(n);
        const std::string uri = "http://example.com/" + std::to_string(n % 50);
        std::string attributes;
        for (int a = 0; a < (i % 100 == 0 ? 20 : i % 3); ++a) {
            attributes += " a" + std::to_string(a + n) + "=\"" +
                          std::string(static_cast<std::size_t>(i % 18), 'v') + "\" {u}p:b" +
                          std::to_string(a) + "=\"" + std::to_string(n) + "\"";
        }
        events.push_back(i % 5 == 0 ? "+q=" + uri + "|<{" + uri + "}q:" + name + attributes + "|>|-q"
                                    : "<" + name + attributes + "|>");
        if (i % 13 == 0) {
            const std::string number = std::to_string(i % 40);
            events.push_back("<{w" + number + "}p" + number + ":" + name + "|>");
        }
        events.push_back(i % 11 == 0 ? "<{u}" + name + "|<{u}p:" + name + "|>|>" : "'" + attributes + " ");
    }
    events.push_back(">");
    for (int i = 0; i < 40; ++i) {
        events.push_back("-p" + std::to_string(i));
    }
    events.push_back("-p|$");
    std::ostringstream expected;
    writeEach(events, expected, true);
    expectRewritten(expected.str());
    for (const std::size_t size : {0, 1, 7, 600, 100000}) {
        SmallBuffer buffer(size);
        std::ostream stream(&buffer);
        writeEach(events, stream, false);
        EXPECT_TRUE(buffer.collected() == expected.str()) << "with " << size << " octets of buffer";
    }
}

// What has left the stream's buffer after each event: all but what the last construct has added.
TEST(WriterTest, FlushesAtTheStartOfEachConstruct) {
    const struct {
        const char* events;
        std::size_t flushed; // octets
    } rows[] = {{"^", 0},   {"<r", 5},  {"<a", 8},  {"'t", 11},   {">", 11},  {"<b c=\"d\"", 14}, {">", 14},
                {"'t", 23}, {"'t", 24}, {"#x", 25}, {"?t d", 28}, {"'t", 33}, {">", 33},          {"$", 35}};
    SmallBuffer buffer(600);
    std::ostream stream(&buffer);
    FastInfosetWriter writer(stream);
    for (const auto& row : rows) {
        play(row.events, writer);
        EXPECT_EQ(buffer.passedOn(), row.flushed) << row.events;
    }
}

// What is remembered of names must tell them apart whatever they share, and goes when the tables change.
TEST(WriterTest, RemembersNamesForWhatTheyAre) {
    const auto write = [](const std::vector<std::string>& events, bool forgetful) {
        std::ostringstream stream;
        writeEach(events, stream, forgetful);
        return stream.str();
    };
    for (std::size_t size = 1; size <= 70; ++size) {
        const std::string uri(size, 'u');
        const std::string element =
            "<{" + uri + "}q:n n=\"1\" {" + uri + "}q:n=\"2\" {v}p:n=\"3\"|<n n=\"4\"|>|>";
        const std::vector<std::string> events{"^|+p=v|+q=" + uri + "|<r", element, element, ">|-p|-q|$"};
        ASSERT_EQ(write(events, false), write(events, true)) << size;
    }

    // The default namespace, and the same namespace where it is not.
    std::vector<std::string> events{"^|+p=u|<{u}p:r"};
    for (int i = 0; i < 200; ++i) {
        const std::string uri = "d" + std::to_string(i % 3), name = "n" + std::to_string(i);
        events.push_back("+=" + uri + "|<{" + uri + "}" + name + "|<{" + uri + "}x" + name + "|>|<{u}y" +
                         name + "|>|<{d1}w" + name + "|>|>|-|<{" + uri + "}z" + name + "|>");
    }
    events.push_back(">|-p|$");
    EXPECT_EQ(write(events, false), write(events, true));
    // The same name under other bindings of one namespace.
    const std::string twice = "<{u}e|>";
    const std::vector<std::string> bindings{"^|+p=u|<{u}r", twice, twice, "+=u|<s", twice,
                                            twice,          ">|-", twice, ">|-p|$"};
    EXPECT_EQ(write(bindings, false), write(bindings, true));
    // A prefix is made where the namespace is not the default one, and serves the elements behind it as well.
    EXPECT_NE(write(events, false).find("ns4"), std::string::npos);
    EXPECT_EQ(write(events, false).find("ns5"), std::string::npos);

    // Names of 32 octets whose keys are equal, as a hostile document can have them.
    constexpr Tamo::UInt64 K[] = {0x9E3779B97F4A7C15, 0xD6E8FEB86659FD93};
    std::vector<std::string> twins;
    for (Tamo::UInt64 word : {0x6161616161616161u, 0x6262626262626262u}) {
        std::string name(32, '\0');
        for (int half = 0; half < 2; ++half) {
            const Tamo::UInt64 k = K[half];
            Tamo::UInt64 inverse = k;
            for (int i = 0; i < 6; ++i) {
                inverse *= 2 - k * inverse;
            }
            const Tamo::UInt64 state =
                std::rotl((half == 0 ? 32 : Tamo::UInt64{0}) ^ (word * k), half == 0 ? 29 : 31) * K[1 - half];
            const Tamo::UInt64 second = (state ^ 0x7172737475767778u) * inverse;
            std::memcpy(name.data() + 8 * half, &word, 8);
            std::memcpy(name.data() + 16 + 8 * half, &second, 8);
        }
        twins.push_back(name);
    }
    ASSERT_TRUE(Tamo::HashKey::of(twins[0]) == Tamo::HashKey::of(twins[1]) && twins[0] != twins[1]);
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
    writer.startDocument();
    for (const std::string& name : {twins[0], twins[1], twins[0], twins[1]}) {
        writer.emptyElement("", name, name);
    }
    EXPECT_EQ(writer.getDocumentVocabulary().elementVocabulary().size(), 3u);
    EXPECT_NE(stream.str().find(twins[1]), std::string::npos);

    // The same octets each time when the tables have become empty.
    for (const bool replaces : {false, true}) {
        std::ostringstream octets;
        FastInfosetWriter second(octets, false, DocumentVocabulary::VOC_MAP);
        play("^|+p=u|<{u}p:r", second);
        std::vector<std::string> parts;
        for (int i = 0; i < 3; ++i) {
            if (replaces) {
                second.setDocumentVocabulary(DocumentVocabulary(DocumentVocabulary::VOC_MAP));
            } else {
                second.getDocumentVocabulary().reset();
            }
            const std::size_t begin = octets.str().size();
            play("<{u}p:a b=\"c\"|<{u}p:d|>|>'t", second);
            parts.push_back(octets.str().substr(begin));
        }
        EXPECT_EQ(parts[1], parts[2]);
        EXPECT_NE(parts[1].find('u'), std::string::npos);
    }
}

TEST(WriterTest, Content) {
    const std::string s16(16, 's');
    const std::string s17(17, 's');
    const std::string twice17 = "^|'" + s17 + "|'" + s17 + "|$";
    expectDocuments(
        {{"text", "^|<a|'xy|'xy|>|$", "00 3C 00 61 91 78 79 A0 FF"},
         {"as long as may be indexed", "^|'" + s16 + "|'" + s16 + "|$", "00 92 0D " + hex(s16) + "A0 F0"},
         {"longer than that", twice17, "00 82 0E " + hex(s17) + "82 0E " + hex(s17) + "F0"},
         {"everything is indexed", twice17, "00 92 0E " + hex(s17) + "A0 F0", "", -1},
         {"nothing is indexed", "^|'s|'s|$", "00 80 73 80 73 F0", "", 0},
         {"the empty value is indexed all the same", R"(^|<a b=""|>|$)", "00 7C 00 61 78 00 62 FF FF F0", "",
          0},
         {"comments", "^|#c|#c|#|$", "00 E2 40 63 E2 80 E2 FF F0"},
         {"processing instructions share strings with comments", "^|?t d|?t d|#d|?t|$",
          "00 E1 00 74 40 64 E1 80 80 E2 80 E1 80 FF F0"},
         {"CDATA, and text that was there before", "^|<a|[|'x|]|[|'x|]|[|]|>|$", "00 3C 00 61 9C 24 78 A0 FF",
          "^|<a|[|'x|]|'x|>|$"},
         {"typed values, one chunk a type", "^|<a|=int 1|=int -2|=short 3|'x|>|$",
          "00 3C 00 61 8C 0E 05 00 00 00 01 FF FF FF FE 8C 09 00 03 90 78 FF"},
         {"typed values wait for any event",
          "^|<a|=bool true|<b|=bool false|>|=bool true|#c|=bool true|?t|>|$",
          "00 3C 00 61 8C 14 38 3C 00 62 8C 14 30 F0 8C 14 38 E2 40 63 8C 14 38 E1 00 74 FF FF"},
         {"typed values at the end of CDATA", "^|[|=bool true|]|$", "00 8C 14 38 F0", "^|=bool true|$"}});
}

TEST(WriterTest, Declarations) {
    expectDocuments(
        {{"no identifiers", "^|!,,|~|<a|>|$", "00 C4 F0 3C 00 61 FF"},
         {"a system identifier", "^|!,,s|~|<a|>|$", "00 C6 00 73 F0 3C 00 61 FF"},
         {"a public identifier; the name is lost", "^|!a,p,|~|<a|>|$", "00 C5 00 70 F0 3C 00 61 FF",
          "^|!,p,|~|<a|>|$"},
         {"processing instructions", "^|!,p,s|?t d|?t|~|<a|>|$",
          "00 C7 00 73 00 70 E1 00 74 40 64 E1 80 FF F0 3C 00 61 FF"},
         {"notations and unparsed entities in the header",
          "Nn,p,s|Nm,-,t|No,p,-|Ue,-,s,n|Uf,q,s,m|^|!,,s|~|$",
          "18 C3 00 6E 00 73 00 70 C2 00 6D 00 74 C1 00 6F 81 F0 D0 00 65 80 80 D1 00 66 80 00 71 81 F0"
          "C6 80 FF"},
         {"an empty identifier is none", "Nn,,|Ue,,s,n|^|$", "18 C0 00 6E F0 D0 00 65 00 73 80 F0 F0",
          "Nn,-,-|Ue,-,s,n|^|$"}});
}

// The operations beyond the handlers, and the names that readers without namespace processing report.
TEST(WriterTest, Conveniences) {
    using namespace std::string_literals;
    const char* const E = "";
    const struct {
        const char* name;
        std::function<void(FastInfosetWriter&)> use;
        std::string read;
    } rows[] = {
        {"three arguments", [&](auto& w) { w.startElement(E, "a", E), w.endElement(E, E, E); }, "<a|>"},
        {"emptyElement", [&](auto& w) { w.emptyElement("u", "a", "p:a"); }, "+p=u|<{u}p:a|>|-p"},
        {"qualified names alone", [&](auto& w) { w.emptyElement(E, E, "p:a"); }, "<p:a|>"},
        {"dataElement", [&](auto& w) { w.dataElement(E, "a", E, "text", "p:b", "1", E, "2", "c", "3"); },
         R"(<a b="1" c="3"|'text|>)"},
        {"dataElement without data", [&](auto& w) { w.dataElement(E, "a", E, E, E, E, "b", "2", E, E); },
         R"(<a b="2"|>)"},
        {"text as a string", [](auto& w) { w.characters("x\0y"s); }, "'x\0y"s},
        {"text up to a NUL", [](auto& w) { w.characters("ab\0de", 0, 5); }, "'ab"},
        {"text from the middle", [](auto& w) { w.characters("abcde", 1, 3); }, "'bcd"},
        {"white space", [](auto& w) { w.ignorableWhitespace("a  b", 1, 2); }, "'  "},
        {"a comment across a NUL", [](auto& w) { w.comment("a-\0c", 1, 3); }, "#-\0c"s},
        {"events that leave nothing",
         [](auto& w) {
             w.setDocumentLocator(nullptr), w.skippedEntity("e"), w.startEntity("e"), w.endEntity("e");
         },
         ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string octets =
            document([&](FastInfosetWriter& w) { w.startDocument(), row.use(w), w.endDocument(); });
        EXPECT_EQ(eventsOf(octets), "^|" + row.read + (row.read.empty() ? "$" : "|$"));
    }
}

// Octet for octet, in both modes.
TEST(WriterTest, CallsWriteWhatTheirEventsDo) {
    const std::vector<double> numbers{0.5, 12};
    const std::vector<bool> flags{true, false};
    const Int32 array[] = {1, 2};
    const std::string empty;
    const struct {
        std::function<void(FastInfosetWriter&)> use;
        std::string events;
    } rows[] = {
        {[](auto& w) {
             w.startElement("a", {{"x", "1"}, {"p:y", ""}}), w.endElement();
         },
         R"(<{d}a x="1" {u}p:y=""|>)"},
        {[](auto& w) {
             w.element("p:b", {{"xml:lang", "de"}}, std::string("text"));
         },
         R"(<{u}p:b {http://www.w3.org/XML/1998/namespace}xml:lang="de"|'text|>)"},
        {[](auto& w) { w.element("c"), w.element("c", "12.5"), w.element("c", 12.5), w.element("c", 7); },
         "<{d}c|>|<{d}c|'12.5|>|<{d}c|=double 12.5|>|<{d}c|=int 7|>"},
        {[&](auto& w) {
             w.text(numbers), w.text(empty), w.text(true), w.text(std::as_bytes(std::span("", 1)));
         },
         "=double 0.5|=double 12|=bool true|=binary 00"},
        {[&](auto& w) { w.text(flags), w.text(array); }, "=bool true|=bool false|=int 1|=int 2"}};
    for (const bool isStrict : {false, true}) {
        const std::string octets = document(
            [&](FastInfosetWriter& writer) {
                const FastInfosetWriter::Document scope(writer);
                writer.startPrefixMapping("", "d"), writer.startPrefixMapping("p", "u");
                writer.startElement("root");
                for (const auto& row : rows) {
                    row.use(writer);
                }
                EXPECT_FAILURE("FISEncodingException: No namespace is bound to the prefix of the name: q:a",
                               writer.element("q:a"));
                EXPECT_FAILURE("FISEncodingException: A namespace declaration is no attribute, but a call of "
                               "startPrefixMapping: xmlns",
                               writer.element("a", {{"xmlns", "w"}}));
                writer.endElement();
            },
            DocumentVocabulary::VOC_HASH, isStrict);
        std::string events = "^|+=d|+p=u|<{d}root|";
        for (const auto& row : rows) {
            events += row.events + "|";
        }
        const std::string expected = document([&](auto& writer) { play(events + ">|$", writer); },
                                              DocumentVocabulary::VOC_HASH, isStrict);
        EXPECT_EQ(hex(octets), hex(expected));
    }
}

TEST(WriterTest, AScopeEndsADocumentThatIsWhole) {
    std::ostringstream stream;
    FastInfosetWriter writer(stream);
    writer.setStrict(true);
    EXPECT_THROW({ const FastInfosetWriter::Document none(writer); }, FISEncodingException); // no element
    writer.reset(stream);
    EXPECT_THROW(
        {
            const FastInfosetWriter::Document torn(writer);
            writer.startElement("a");
            throw IOException("of the program's own");
        },
        IOException);
    stream.str("");
    writer.reset(stream);
    {
        const FastInfosetWriter::Document whole(writer);
        writer.element("a");
    }
    EXPECT_EQ(stream.str(), document("00 3C 00 61 FF"));
}

TEST(WriterTest, OptionsAndLifecycle) {
    EXPECT_EQ(document([](FastInfosetWriter&) {}), "");
    std::ostringstream stream;
    FastInfosetWriter declaring(stream, true, DocumentVocabulary::VOC_MAP);
    play("^|$", declaring);
    EXPECT_EQ(stream.str(), "<?xml encoding='finf'?>" + document("00 F0"));
    // A comment in a CDATA section is marked like its text.
    EXPECT_EQ(document([](auto& w) { play("^|[|#c|]|$", w); }), document("00 E2 70 90 63 F0"));
    // A second document starts with the first one's tables unless they are replaced; prefixes count on.
    stream.str("");
    FastInfosetWriter writer(stream);
    play("^|<{u}a|>|$", writer);
    EXPECT_FAILURE("FISEncodingException: Illegal startposition for an writeIdentifyingStringIndex",
                   writer.startDocument());
    FastInfosetWriter counting(stream);
    play("^|<{u}a|>|$", counting);
    stream.str("");
    counting.setDocumentVocabulary(DocumentVocabulary(DocumentVocabulary::VOC_MAP));
    play("^|<{u}a|>|$", counting);
    EXPECT_EQ(eventsOf(stream.str()), "^|+ns2=u|<{u}ns2:a|>|-ns2|$");
}

// A writer that goes on to another document writes what a new one does, whatever it has written before.
TEST(WriterTest, AnotherDocument) {
    std::string many = "^|+p=u|<{u}p:r";
    for (int i = 0; i < 600; ++i) {
        const std::string n = std::to_string(i);
        many += "|<{u}p:e" + n + " a" + n + "=\"" + n + "\"|'text " + n + "|>";
    }
    using Use = std::function<void(FastInfosetWriter&)>;
    const std::vector<Use> uses{
        [](auto& w) { play("^|<{u}a b=\"c\"|'text|#comment|?t d|<{v}b|>|>|$", w); },
        [&](auto& w) { play(many + "|>|-p|$", w); },
        [](auto& w) { play("^|+p=u|<{u}p:a|[|'open", w); },
        [](auto& w) { play("^|<r|<a|>", w), w.encodedData(1.5); },
        [](auto& w) { w.notationDecl("n", nullptr, nullptr), play("^|<r|>|$", w); },
        [](auto& w) { play("^|+=u|<{u}a|>|<a|>|<{v}q:a {u}p:b=\"c\" b=\"\"|>|-|$", w); },
        [](auto& w) { w.getDocumentVocabulary().restrictedAlphabets().add("ab"), play("^|<r|>|$", w); },
        [](auto& w) { failureOf([&] { play("^|<a|'|[|[", w); }); },
        [](auto& w) {
            w.setDocumentVocabulary(DocumentVocabulary(DocumentVocabulary::VOC_MAP)), play("^|<a|>|$", w);
        }};
    for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
        std::ostringstream none;
        FastInfosetWriter writer(none, true, impl);
        writer.setMaxIndexedStringLength(9);
        for (std::size_t i = 0; i < 6 * uses.size(); ++i) {
            const Use& use = uses[i * 7 % uses.size()];
            std::ostringstream expected;
            FastInfosetWriter fresh(expected, true, impl);
            fresh.setMaxIndexedStringLength(9);
            use(fresh);
            std::ostringstream stream;
            writer.reset(stream);
            use(writer);
            EXPECT_EQ(hex(stream.str()), hex(expected.str())) << i;
            if (i % 2 == 0) {
                writer.reset(none); // the stream may be gone
            }
        }
        EXPECT_EQ(none.str(), "");
        writer.reset(none);
    }
}

TEST(WriterTest, Vocabularies) {
    // What is in the tables before the document is announced, as far as the header can carry it.
    const auto start = [](const std::function<void(DocumentVocabulary&)>& prepare) {
        std::ostringstream stream;
        FastInfosetWriter writer(stream);
        prepare(writer.getDocumentVocabulary());
        const std::string failure = failureOf([&] { writer.startDocument(); });
        return failure.empty() ? hex(stream.str()) : failure;
    };
    EXPECT_EQ(start([](auto& v) { add(v, DocumentVocabulary::LOCAL_NAME, {"e"}); }),
              "E0 00 00 01 20 00 80 00 00 65");
    EXPECT_EQ(start([](auto& v) { v.restrictedAlphabets().add("ab"); }), "E0 00 00 01 20 08 00 00 01 61 62");
    EXPECT_EQ(start([](auto& v) { add(v, DocumentVocabulary::ATTRIBUTE_VALUE, {"e"}); }),
              "AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
    EXPECT_EQ(start([](auto& v) { addElements(v, {"l"}); }),
              "FISEncodingException: Illegal startposition for an writeIdentifyingStringIndex");
    // A table that the application has put in the place of another one is the one that is used.
    const auto named = [&](bool replaces) {
        return document([&](FastInfosetWriter& writer) {
            DocumentVocabulary& v = writer.getDocumentVocabulary();
            if (replaces) {
                v.initialize(DocumentVocabulary::LOCAL_NAME, new MapVocabulary<std::string>());
            }
            add(v, DocumentVocabulary::LOCAL_NAME, {"e"});
            play("^|<e|>|$", writer);
        });
    };
    EXPECT_EQ(hex(named(true)), hex(named(false)));
    // Only setDocumentVocabulary refuses tables that cannot be searched quickly.
    const DocumentVocabulary vector(DocumentVocabulary::VOC_VECTOR);
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, vector);
    EXPECT_FAILURE(
        "InvalidArgumentException: A DocumentVocabulary with VOC_VECTOR implementation cannot be used "
        "by FastInfosetWriter",
        writer.setDocumentVocabulary(vector));
    play("^|<a|>|<a|>|$", writer);
    EXPECT_EQ(eventsOf(stream.str()), "^|<a|>|<a|>|$");
}

TEST(WriterTest, Refusals) {
    std::string comments = "^";
    for (char c = 'a'; c <= 's'; ++c) {
        comments += std::string("|#") + c; // 19 strings; the table has room for 18
    }
    const struct {
        std::function<void(FastInfosetWriter&)> use;
        const char* failure;
    } rows[] = {
        {[](auto& w) { w.startFragment(); }, "FISException: startFragment() not allowed"},
        {[](auto& w) { w.endFragment(); }, "FISException: endFragment() not allowed"},
        {[](auto& w) { play("^|[|[", w); }, "FISException: Cannot nest CDATA sections"},
        {[](auto& w) { w.startDocument(), w.startElement("u", "", "p:a"); },
         "FISException: Tag mismatch: p:a"},
        {[](auto& w) { w.startDocument(), w.startElement("u", "", ""); }, "FISException: Tag mismatch"},
        {[](auto& w) { play("^|Nn,p,s", w); },
         "AssertionViolationException: _states.back() == UNINITIALIZED"},
        {[](auto& w) { play("^|Ue,p,s,n", w); },
         "AssertionViolationException: _states.back() == UNINITIALIZED"},
        {[](auto& w) { play("^|!,,|<a|>|~", w); }, "AssertionViolationException: _writer.bitPos() == 4"},
        {[](auto& w) { w.startDocument(), w.characters(""); },
         "FISEncodingException: Value zero must start on the second bit of a byte"},
        {[](auto& w) { play("^|<a", w), w.binaryData("", 0); },
         "FISEncodingException: Zero-length data for dword encoding"},
        {[&](auto& w) { play(comments, w); }, "PoolOverflowException: Vocabulary hash table full"}};
    for (const auto& row : rows) {
        std::ostringstream stream;
        FastInfosetWriter writer(stream);
        EXPECT_FAILURE(row.failure, row.use(writer));
    }
    EXPECT_NE(document([&](FastInfosetWriter& w) { play(comments, w); }, DocumentVocabulary::VOC_MAP), "");
}

} // namespace
} // namespace Tamo::FastInfoset::Test
