#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/NullStream.h"
#include "Tamo/XML/AttributesImpl.h"
#include <map>
#include <memory>
#include <vector>

namespace Tamo::FastInfoset::Test {

const std::string EVERY_EVENT =
    R"(Nn,p,s|Ue,p,t,n|^|!,,s|?d e|~|#c|+p=u|<{u}p:a {u}p:b="1" c=""|+q=v|<{v}q:d|'text|[|'x|])"
    "|=int 1|=int 2|=bool true|=binary 01 02|>|?t d|'text|<{w}e|=uuid "
    "6ba7b810-9dad-11d1-80b4-00c04fd430c8|>|>|-p|$";

const std::vector<std::string>& everyConstruct(bool strict) {
    const auto headerOf = [](const std::string& declaration, const char* chunk, const char* integer) {
        return declaration +
               octets(
                   "E0 00 00 01 7F 00 00 75 01 64 64 1F FF 00 76 00 01 61 62 00 00 61 00 00 70 00 00 75 00 "
                   "00 6C 00 00 74 00 00 73 00 11 00 76 00") +
               octets(chunk) + octets("00") + octets(integer) +
               octets(
                   "00 00 00 07 00 03 01 01 00 00 03 01 01 00 C2 00 6E 80 F0 D0 00 65 80 81 F0 04 75 74 66 "
                   "2D 38 01 40 31 C6 80 E1 80 80 F0 40 78 00 61 80");
    };
    static const std::string BODY = octets(
        "E0 00 00 01 00 78 CD 00 75 CF 00 70 00 76 F0 3D 81 00 61 7B 81 82 00 78 40 31 79 81 00 79 40 32 F0 "
        "9C 25 63 64 8C 14 38 8C 1A 01 3F C0 00 00 98 01 12 3F 85 20 AC CB 00 65 00 73 00 70 E2 41 6E 6F FF");
    static const std::vector<std::string> USUAL = {
        headerOf("<?x>", "20 00 00 01", "30 30 33") + octets("FF E1 80 80 A0 FF"), BODY};
    static const std::vector<std::string> STRICT = {
        headerOf("<?xml encoding='finf'?>", "20 00 1F", "30 33") + octets("F0 A0 F0 E1 80 80 F0"), BODY};
    return strict ? STRICT : USUAL;
}

namespace {

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back().push_back(c);
        }
    }
    return pieces;
}

// What stands in front of the first separator, and behind it; nothing is behind when there is none.
std::pair<std::string, std::string> cut(const std::string& text, char separator) {
    const std::size_t at = std::min(text.find(separator), text.size());
    return {text.substr(0, at), text.substr(std::min(at + 1, text.size()))};
}

struct Name {
    std::string uri;
    std::string localName;
    std::string qname;

    explicit Name(const std::string& text) {
        const std::size_t end = text.find('}') + 1; // 0 without a namespace name
        uri = end == 0 ? "" : text.substr(1, end - 2);
        qname = text.substr(end);
        localName = qname.substr(qname.find(':') + 1);
    }
};

void playElement(FastInfosetWriter& writer, const std::string& token) {
    const std::size_t end = token.find(' ');
    XML::AttributesImpl attributes;
    for (std::size_t at = end; at < token.size();) {
        const std::size_t open = token.find('"', at);
        const std::size_t close = token.find('"', open + 1);
        const Name name(token.substr(at + 1, open - at - 2));
        attributes.addAttribute(name.uri, name.localName, name.qname, "CDATA",
                                token.substr(open + 1, close - open - 1));
        at = close + 1;
    }
    const Name name(token.substr(0, end));
    writer.startElement(name.uri, name.localName, name.qname, attributes);
}

void playOctets(FastInfosetWriter& writer, const std::string& text) {
    const std::string data = octets(text);
    writer.binaryData(data.data(), data.size());
}

void playDeclaration(FastInfosetWriter& writer, const std::string& token, bool isNotation) {
    const std::vector<std::string> ids = split(token, ',');
    const auto present = [&](std::size_t i) { return ids.at(i) == "-" ? nullptr : &ids.at(i); };
    if (isNotation) {
        writer.notationDecl(ids.at(0), present(1), present(2));
    } else {
        writer.unparsedEntityDecl(ids.at(0), present(1), ids.at(2), ids.at(3));
    }
}

// How the writer is given an event, by its first character, and a value, by its type.
using Writer = FastInfosetWriter;
using Text = const std::string&;
using Play = void (*)(Writer& writer, Text text);

const std::map<std::string, Play> TYPES = {
    {"binary", playOctets},
    {"short", [](Writer& w, Text t) { w.encodedData(static_cast<Int16>(std::stoi(t))); }},
    {"int", [](Writer& w, Text t) { w.encodedData(Int32{std::stoi(t)}); }},
    {"long", [](Writer& w, Text t) { w.encodedData(Int64{std::stol(t)}); }},
    {"bool", [](Writer& w, Text t) { w.encodedData(t == "true"); }},
    {"float", [](Writer& w, Text t) { w.encodedData(std::stof(t)); }},
    {"double", [](Writer& w, Text t) { w.encodedData(std::stod(t)); }},
    {"uuid", [](Writer& w, Text t) { w.encodedData(UUID(t)); }}};

const std::map<char, Play> KINDS = {
    {'^', [](Writer& w, Text) { w.startDocument(); }},
    {'$', [](Writer& w, Text) { w.endDocument(); }},
    {'<', playElement},
    {'>', [](Writer& w, Text) { w.endElement(); }},
    {'\'', [](Writer& w, Text t) { w.characters(t.data(), 0, static_cast<int>(t.size())); }},
    {'#', [](Writer& w, Text t) { w.comment(t.data(), 0, static_cast<int>(t.size())); }},
    {'?', [](Writer& w, Text t) { w.processingInstruction(cut(t, ' ').first, cut(t, ' ').second); }},
    {'+', [](Writer& w, Text t) { w.startPrefixMapping(cut(t, '=').first, cut(t, '=').second); }},
    {'-', [](Writer& w, Text t) { w.endPrefixMapping(t); }},
    {'[', [](Writer& w, Text) { w.startCDATA(); }},
    {']', [](Writer& w, Text) { w.endCDATA(); }},
    {'!', [](Writer& w, Text t) { w.startDTD(split(t, ',')[0], split(t, ',')[1], split(t, ',')[2]); }},
    {'~', [](Writer& w, Text) { w.endDTD(); }},
    {'N', [](Writer& w, Text t) { playDeclaration(w, t, true); }},
    {'U', [](Writer& w, Text t) { playDeclaration(w, t, false); }},
    {'=', [](Writer& w, Text t) { TYPES.at(cut(t, ' ').first)(w, cut(t, ' ').second); }}};

} // namespace

void play(std::string_view events, FastInfosetWriter& writer) {
    for (const std::string& token : split(events, '|')) {
        KINDS.at(token.at(0))(writer, token.substr(1));
    }
}

std::string document(const std::function<void(FastInfosetWriter&)>& use,
                     DocumentVocabulary::VocabularyImpl impl, bool strict) {
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, impl);
    writer.setStrict(strict);
    use(writer);
    return stream.str();
}

std::string document(std::string_view hexOctets) {
    return octets("E0000001") + octets(hexOctets);
}

std::vector<std::string> documents(const std::string& hexOctets) {
    std::vector<std::string> result;
    for (const std::string& one : split(hexOctets, ';')) {
        result.push_back(document(one));
    }
    return result;
}

std::string naming(const std::string& uri, std::string_view hexOctets) {
    return document("20 10 00") + literal(uri) + octets(hexOctets);
}

void forEachDamaged(const std::string& document, const std::function<void(const std::string&)>& use) {
    for (std::size_t length = 0; length < document.size(); ++length) {
        use(document.substr(0, length));
    }
    for (std::size_t bit = 0; bit < document.size() * 8; ++bit) {
        std::string damaged = document;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (0x80 >> bit % 8));
        use(damaged);
    }
}

unsigned int add(DocumentVocabulary& vocabulary, DocumentVocabulary::ID table,
                 const std::vector<std::string>& texts) {
    bool found = false;
    unsigned int index = 0;
    for (const std::string& text : texts) {
        index = vocabulary.index(table, text, found);
    }
    return index;
}

void addElements(DocumentVocabulary& vocabulary, const std::vector<std::string>& localNames) {
    bool found = false;
    for (const std::string& name : localNames) {
        const unsigned int index = add(vocabulary, DocumentVocabulary::LOCAL_NAME, {name});
        vocabulary.elementVocabulary().index(QualifiedNameEntry(0, 0, index), found);
    }
}

DocumentVocabulary vocabularyOf(const std::string& events, const std::string& uri,
                                DocumentVocabulary::VocabularyImpl impl) {
    NullOutputStream null;
    FastInfosetWriter writer(null, false, impl);
    play(events, writer);
    DocumentVocabulary result = writer.getDocumentVocabulary();
    result.setURI(uri);
    return result;
}

GivenVocabulary::GivenVocabulary(const DocumentVocabulary& vocabulary) : _vocabulary(vocabulary) {
    _vocabulary.setURI("");
}

DocumentVocabulary GivenVocabulary::load(const std::string&) {
    return _vocabulary;
}

std::string eventsOf(const std::string& document) {
    FastInfosetParser parser;
    TypedEventRecorder recorder;
    recorder.connect(parser);
    parseMemory(parser, document);
    return recorder.events();
}

void parseMemory(FastInfosetParser& parser, std::string_view document) {
    const std::unique_ptr<char[]> pBlock(new char[document.size()]);
    std::copy(document.begin(), document.end(), pBlock.get());
    parser.parseMemoryNP(pBlock.get(), document.size());
}

void parseStream(FastInfosetParser& parser, std::istream& stream) {
    parser.parse(stream);
}

void parseLive(FastInfosetParser& parser, std::istream& stream) {
    struct Live {
        FastInfosetParser& parser;
        explicit Live(FastInfosetParser& p) : parser(p) { parser.setLive(true); }
        ~Live() { parser.setLive(false); }
    } live(parser);
    parseStream(parser, stream);
}

void expectEvents(const std::string& document, const std::string& events) {
    for (const auto impl : ALL_KINDS) {
        SCOPED_TRACE("tables of kind " + std::to_string(impl));
        TypedEventRecorder recorder;
        FastInfosetParser parser(impl);
        FastInfosetReader reader{DocumentVocabulary(impl)};
        reader.setStrict(false);
        recorder.connect(parser);
        const auto expect = [&](auto read) {
            recorder.clear();
            read();
            EXPECT_EQ(recorder.events(), events);
        };
        const auto expectStream = [&](std::istream&& forParser, std::istream&& forReader) {
            expect([&] { parseStream(parser, forParser); });
            expect([&] { reader.open(forReader), replay(reader, recorder); });
        };
        // One behind the other, to the last octet.
        const auto expectLive = [&](std::istream&& stream) {
            expect([&] { EXPECT_TRUE(parser.parseNext(stream)); });
            EXPECT_TRUE(reader.openNext(stream));
            expect([&] { replay(reader, recorder); });
            EXPECT_EQ(stream.get(), '$');
        };
        expect([&] { parseMemory(parser, document); });
        expectStream(std::istringstream(document), std::istringstream(document));
        expectStream(DribblingStream(document), DribblingStream(document));
        const std::string own = document.substr(0, parser.documentSize()); // some have octets behind
        expectLive(std::istringstream(own + own + '$'));
        expectLive(DribblingStream(own + own + '$'));
        expect([&] { reader.open(document), replay(reader, recorder); });
    }
}

void expectRewritten(const std::string& document, int maxIndexedStringLength) {
    for (const auto impl : {DocumentVocabulary::VOC_MAP, DocumentVocabulary::VOC_HASH}) {
        std::ostringstream again;
        FastInfosetWriter writer(again);
        writer.setMaxIndexedStringLength(maxIndexedStringLength);
        FastInfosetParser parser(impl);
        parser.initialize(&writer);
        parseMemory(parser, document);
        EXPECT_EQ(hex(again.str()), hex(document));
    }
}

void expectDocuments(const std::vector<DocumentRow>& rows) {
    for (const DocumentRow& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string expected = document(row.octets);
        const auto write = [&](FastInfosetWriter& writer) {
            writer.setMaxIndexedStringLength(row.maxIndexedStringLength);
            play(row.written, writer);
        };
        EXPECT_EQ(hex(document(write, DocumentVocabulary::VOC_MAP)), hex(expected));
        EXPECT_EQ(hex(document(write, DocumentVocabulary::VOC_HASH)), hex(expected));
        expectEvents(expected, row.read.empty() ? row.written : row.read);
        expectRewritten(expected, row.maxIndexedStringLength);
    }
}

void expectFailure(const std::string& document, const std::string& failure) {
    for (const auto impl : ALL_KINDS) {
        SCOPED_TRACE("tables of kind " + std::to_string(impl));
        FastInfosetParser parser(impl);
        EXPECT_FAILURE(failure, parseMemory(parser, document));
        const UInt64 position = parser.position();
        EXPECT_LE(position, document.size());
        std::istringstream stream(document);
        EXPECT_FAILURE(failure, parseStream(parser, stream));
        EXPECT_EQ(parser.position(), position);
        DribblingStream dribble(document);
        EXPECT_FAILURE(failure, parseStream(parser, dribble));
        TypedEventRecorder recorder;
        FastInfosetReader reader{DocumentVocabulary(impl)};
        reader.setStrict(false);
        reader.open(document);
        EXPECT_FAILURE(cursorFailureOf(failure), replay(reader, recorder));
        EXPECT_EQ(reader.position(), parser.position());
        EXPECT_FAILURE("InvalidAccessException: No document is open", reader.next());
        recorder.clear();
        recorder.connect(parser);
        parseMemory(parser, octets("E0000001003C0061FF"));
        EXPECT_EQ(recorder.events(), "^|<a|>|$");
    }
}

} // namespace Tamo::FastInfoset::Test
