// What the parser makes of documents assembled octet by octet, among them many that our writer never writes;
// those that the strict mode refuses are rows of StrictParserTest, for both modes.
#include "DocumentTest.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetPushParser.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/DefaultHandler.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/SAXException.h"
#include <cstdio>
#include <fstream>

namespace Tamo::FastInfoset::Test {
namespace {

using XML::XMLReader;

// Octets behind a document or its fault, which no reader looks at: with them there is nothing about the end
// of the input in what is read before.
const std::string PLENTY = " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST(ParserTest, HandlersFeaturesAndProperties) {
    FastInfosetParser parser;
    std::ostringstream stream;
    FastInfosetWriter writer(stream);
    EXPECT_TRUE(!parser.getContentHandler() && !parser.getDTDHandler() && !parser.getDocumentHandler());
    parser.initialize(&writer);
    parser.initialize(static_cast<FastInfosetWriter*>(nullptr)); // is left out
    parser.initialize(static_cast<FISDefaultHandler*>(nullptr));
    EXPECT_TRUE(parser.getContentHandler() == &writer && parser.getDTDHandler() == &writer);
    EXPECT_TRUE(parser.getDocumentHandler() == &writer && parser.getLexicalHandler() == &writer);
    XML::DefaultHandler other;
    parser.setEntityResolver(&other);
    parser.setErrorHandler(&other);
    parser.setProperty(XMLReader::PROPERTY_DECLARATION_HANDLER, static_cast<void*>(&stream));
    EXPECT_TRUE(parser.getEntityResolver() == &other && parser.getErrorHandler() == &other);
    EXPECT_EQ(parser.getProperty(XMLReader::PROPERTY_DECLARATION_HANDLER), &stream);
    parser.setDeclHandler(nullptr);
    EXPECT_EQ(parser.getProperty(XMLReader::PROPERTY_DECLARATION_HANDLER), nullptr);
    parser.setFeature(XMLReader::FEATURE_NAMESPACES, true);
    EXPECT_FAILURE("SAXNotSupportedException: namespace support cannot be disabled",
                   parser.setFeature(XMLReader::FEATURE_NAMESPACES, false));
    EXPECT_TRUE(parser.getFeature(XMLReader::FEATURE_NAMESPACES));
    EXPECT_TRUE(parser.getFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES));
    const std::function<void()> unknown[] = {
        [&] { parser.setFeature("x", true); }, [&] { parser.getFeature("x"); },
        [&] { parser.setProperty("x", nullptr); }, [&] { parser.setProperty("x", std::string("v")); },
        [&] { parser.getProperty("x"); }};
    for (const auto& use : unknown) {
        EXPECT_FAILURE("SAXNotRecognizedException: x", use());
    }
    for (const std::string name :
         {XMLReader::PROPERTY_DECLARATION_HANDLER, XMLReader::PROPERTY_LEXICAL_HANDLER}) {
        EXPECT_FAILURE("SAXNotSupportedException: property does not take a string value: " + name,
                       parser.setProperty(name, std::string("v")));
    }
}

// Writes down where what an event reports begins.
struct Places : XML::DefaultHandler {
    FastInfosetParser parser;
    std::string places;

    Places() {
        parser.setContentHandler(this);
        parser.setLexicalHandler(this);
    }
    void add(char kind) { places.append(1, kind).append(std::to_string(parser.position())) += ' '; }
    void startDocument() override { add('^'); }
    void endDocument() override { add('$'); }
    void startElement(const std::string&, const std::string&, const std::string&,
                      const XML::Attributes&) override {
        add('<');
    }
    void endElement(const std::string&, const std::string&, const std::string&) override { add('>'); }
    void characters(const char[], int, int) override { add('\''); }
    void comment(const char[], int, int) override { add('#'); }
    void processingInstruction(const std::string&, const std::string&) override { add('?'); }
};

// In memory, in streams however they come, fed octet by octet, and for the cursor.
TEST(ParserTest, SaysWhereConstructsBegin) {
    const struct {
        const char* name;
        std::string octets;
        const char* places;
    } rows[] = {
        {"an element", document("00 3C 00 61 FF"), "^0 <5 >8 $8 "},
        {"an end in half an octet",
         document("00 E2 00 61 3C 00 61 82 00 74 65 78 3C 00 62 F0 E1 00 70 00 64 FF"),
         "^0 #5 <8 '11 <16 >19 ?20 >25 $25 "},
        {"an end with that of the attributes",
         document("00 3C 00 72 7C 00 61 78 00 78 40 31 FF 3C 00 62 F0 82 00 74 65 78 FF"),
         "^0 <5 <8 >16 <17 >20 '21 >26 $26 "},
        {"a text that no buffer holds",
         document("00 3C 00 61 83 00 00 08 00") + std::string(2048 + 259, 'x') + octets("3C 00 62 FF F0"),
         "^0 <5 '8 <2320 >2323 >2323 $2324 "}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Places in;
        const auto expect = [&](const char* how, const auto& read) {
            SCOPED_TRACE(how);
            in.places.clear();
            EXPECT_EQ(failureOf(read), "");
            EXPECT_EQ(in.places, row.places);
        };
        expect("memory", [&] { parseMemory(in.parser, row.octets); });
        DribblingStream stream(row.octets);
        expect("stream", [&] { parseStream(in.parser, stream); });
        DribblingStream live(row.octets);
        expect("live", [&] { parseLive(in.parser, live); });
        expect("fed", [&] {
            FastInfosetPushParser fed(in.parser);
            for (const char octet : row.octets) {
                fed.feed(std::as_bytes(std::span(&octet, 1)));
            }
        });
        expect("cursor", [&] {
            FastInfosetReader reader;
            std::istringstream source(row.octets);
            reader.open(source);
            do {
                const char kind = " ^[]<>'#?$&"[static_cast<int>(reader.next())];
                in.places.append(1, kind).append(std::to_string(reader.position())) += ' ';
            } while (reader.event() != FastInfosetReader::END_DOCUMENT);
        });
    }
}

TEST(ParserTest, ExceptionsSayWhere) {
    const auto whatOf = [](const auto& read) -> std::string {
        try {
            read();
        } catch (const FISException& e) {
            return e.position() ? std::to_string(*e.position()) + ": " + e.what() : e.what();
        }
        return "";
    };
    FastInfosetParser parser;
    EXPECT_EQ(
        whatOf([&] { parser.parseMemory(document("00 3C 00 61 82 00 74 65")); }),
        "8: FastInfoset Parse Exception: Unexpected end of stream while parsing octet string at octet 8");
    EXPECT_EQ(whatOf([&] { parser.parse(std::string("/no/such/file")); }),
              "FastInfoset Parse Exception: Cannot resolve system identifier: /no/such/file");
    // What is fed ends between two items, or one of them is too large.
    const std::string fed = document("00 3C 00 61 82 01 74 65 78 74");
    FastInfosetPushParser push(parser);
    push.feed(std::as_bytes(std::span(fed)));
    EXPECT_EQ(whatOf([&] { push.finish(); }).substr(0, 4), "14: ");
    push.reset();
    push.setMaxItemSize(5);
    EXPECT_EQ(whatOf([&] { push.feed(std::as_bytes(std::span(fed))); }),
              "8: FastInfoset Exception: Limit exceeded: item size: 5 at octet 8");
    struct Refusing : XML::DefaultHandler {
        void characters(const char[], int, int) override { throw FISException("mine"); }
    } refusing;
    parser.setContentHandler(&refusing);
    EXPECT_EQ(whatOf([&] { parser.parseMemory(document("00 3C 00 61 80 74 FF")); }),
              "8: FastInfoset Exception: mine at octet 8");
    // What says it itself does not say it twice, and an octet within the construct is closer.
    parser.setStrict(true);
    EXPECT_EQ(whatOf([&] { parser.parseMemory(document("00 3C 00 61 82 00 74 E9 65 FF")); }),
              "11: FastInfoset Encoding Exception: text that is not well-formed UTF-8 (X.891, 7.17.3), at "
              "octet 11");
    // An index that stands for nothing is no std::out_of_range for the cursor.
    FastInfosetReader reader;
    reader.setStrict(false);
    const std::string dangling = document("00 3C 00 61 A5 FF");
    reader.open(dangling);
    reader.next(), reader.next();
    EXPECT_EQ(whatOf([&] { reader.skipElement(); }),
              "8: FastInfoset Exception: index out of range at octet 8");
    EXPECT_EQ(reader.position(), 8u);
}

TEST(ParserTest, Sources) {
    const std::string good = document("00 3C 00 61 FF");
    const std::string path = testing::TempDir() + "tamo-parser-source.finf";
    std::ofstream(path, std::ios::binary) << good;
    std::istringstream bytes(good), characters(good);
    XML::InputSource source(path);
    FastInfosetParser parser;
    EventRecorder recorder;
    recorder.connect(parser);
    const auto parse = [&] {
        recorder.clear();
        parser.parse(&source);
        return recorder.events();
    };
    EXPECT_EQ(parse(), "^|<a|>|$"); // by the system identifier
    source.setCharacterStream(characters);
    EXPECT_EQ(parse(), "^|<a|>|$");
    source.setByteStream(bytes);
    EXPECT_EQ(parse(), "^|<a|>|$");
    source.setSystemId("file:/no/such/file");
    EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing document header",
                   parse()); // read before
    EXPECT_FAILURE("FISParseException: Cannot resolve system identifier: /no/such/file",
                   parser.parse(std::string("/no/such/file")));
    std::remove(path.c_str());
}

TEST(ParserTest, ReadsWhatTheWriterNeverWrites) {
    const struct {
        const char* name;
        const char* body;
        const char* events;
    } rows[] = {
        {"octets behind the end", "3C 00 61 FF FF 00 12", "<a|>"},
        {"padding that is not zero", "78 CF 00 70 00 75 FF FC 00 61 7C 00 62 40 63 F5 3C 00 63 FF F0",
         R"(+p=u|<a b="c"|<c|>|>)"},
        {"an empty attribute list", "7C 00 61 FF F0", "<a|>"},
        {"the empty string by its index", "7C 00 61 78 00 62 FF FF E2 FF F0", R"(<a b=""|>|#)"},
        {"UTF-16, supplementary plane and lone surrogate", "85 00 E9 86 01 D8 3D DE 00 85 DC 00 F0",
         "'\xC3\xA9|'\xF0\x9F\x98\x80|'?"},
        {"restricted alphabets", "98 01 12 3F A0 88 05 1B 2F F0", "'123|'123|'1:2"},
        {"octets enter the table as text", "9C 01 0A 1B A0 9C 04 FF A1 F0",
         "=binary 0A 1B|'0A1B|=binary FF|'/w=="},
        {"numbers enter the table as text", "9C 0E 01 00 00 00 2A A0 F0", "=int 42|'42"},
        {"CDATA enters the table as text", "9C 24 78 A0 F0", "[|'x|]|'x"},
        {"a typed attribute value", "7C 00 61 78 00 62 70 33 00 00 00 05 78 00 63 80 FF F0",
         R"(<a b="5" c="5"|>)"},
        {"octets as comment and data", "E2 70 10 FF E1 00 74 80 E2 70 01 0A 1B E2 81 F0",
         "#/w==|?t /w==|#0A1B|#0A1B"},
        {"UTF-16 and an alphabet as values", "7C 00 61 78 00 62 11 00 E9 78 00 63 20 01 12 3F FF F0",
         "<a b=\"\xC3\xA9\" c=\"123\"|>"},
        {"an entity reference fills its tables", "CB 00 65 00 73 00 70 E1 80 40 64 C7 80 81 FF",
         "?e d|!,p,s|~"},
        {"entity references without identifiers", "C8 00 65 CA 80 00 73 C9 80 00 70 F0", ""},
        {"a declaration's items are not told apart", "C4 E1 00 74 40 64 00 80 80 FF", "!,,|?t d|?t d|~"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string events = row.events;
        for (const std::string& behind : {std::string(), PLENTY}) {
            expectEvents(document(std::string("00 ") + row.body + behind),
                         "^|" + events + (events.empty() ? "$" : "|$"));
        }
    }
}

TEST(ParserTest, HandlersThatAreAbsent) {
    // A prefix, a typed value that is added, CDATA, a comment, a declaration with a processing instruction.
    const std::string all = document("00 38 CF 00 70 00 75 F0 3F 81 81 00 61 9C 0E 01 00 00 00 2A 9C 24 78 "
                                     "E2 40 63 C4 E1 00 74 40 64 FF F0");
    FastInfosetParser parser;
    parseMemory(parser, all);
    EXPECT_EQ(parser.vocabulary().value(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, 1), "42");
    EXPECT_EQ(parser.vocabulary().value(DocumentVocabulary::OTHER_STRING, 2), "d");
    EventRecorder recorder;
    parser.setContentHandler(&recorder);
    parser.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, false);
    parseMemory(parser, all);
    EXPECT_EQ(recorder.events(), "^|+p=u|<{u}a|'42|'x|?t d|>|-p|$");
    EventRecorder lexical;
    lexical.connect(parser);
    parser.setContentHandler(nullptr);
    parseMemory(parser, all);
    EXPECT_EQ(lexical.events(), "[|]|#c|!,,|~");
    // The tables are those of the last document.
    EXPECT_FAILURE("out_of_range: index out of range", parseMemory(parser, document("00 A0 F0")));
}

TEST(ParserTest, AttributesByName) {
    struct Handler : FISDefaultHandler {
        std::string seen;
        void startElement(const std::string&, const std::string&, const std::string&,
                          const XML::Attributes& list) override {
            seen = list.getValue("u", "b") + "|" + list.getValue("", "b") + "|" + list.getValue("", "c") +
                   "|" + list.getValue("p:b") + "|" + std::to_string(list.getIndex("", "b")) +
                   std::to_string(list.getIndex("u", "c")) + std::to_string(list.getIndex("p:b")) +
                   list.getQName(0) + list.getType(0) + list.getType("u", "b") + list.getType("p:b");
            EXPECT_FAILURE("AssertionViolationException: i >= 0 && static_cast<std::size_t>(i) < _count",
                           list.getValue(2));
            EXPECT_EQ(XML::AttributesImpl(list).getValue("u", "b"), "1");
        }
    } handler;
    FastInfosetParser parser;
    parser.initialize(&handler);
    parseMemory(parser, document("00 78 CF 00 70 00 75 F0 3C 00 61 7B 81 81 00 62 40 31 78 81 00 32 FF F0"));
    EXPECT_EQ(handler.seen, "1|2|||1-1-1");
}

TEST(ParserTest, Refusals) {
    const std::string end = "FISParseException: Unexpected end of stream while ";
    const std::string identifying = end + "parsing identifying string or index";
    const std::string nonIdentifying = end + "parsing non identifying string or index";
    const std::string children = end + "parsing element children";
    const struct {
        const char* body;
        std::string failure;
    } rows[] = {
        {"3C 00 61 DF", "FISEncodingException: Invalid child element"},
        {"E3", "FISEncodingException: Parse error: unknown element child code"},
        {"3C 00 61 3C 00 62 F0 F5", "FISEncodingException: Parse error: unknown element child code"},
        {"7C 00 61 78 00 62 40 63 F1 F0", "FISEncodingException: Parse error: unknown element child code"},
        {"8C 28 00 00", "FISException: Invalid decoding defined"},
        {"8C 7C 00 00", "FISException: Invalid decoding defined"},
        {"7C 00 61 78 00 62 30 50 50", "FISEncodingException: Illegal size entry for bool value"},
        {"", children},
        {"3C 00 61", children},
        {"38", end + "parsing element"},
        {"38 CF", identifying},
        {"3C", identifying},
        {"3C C0", end + "reading integer"},
        {"3C 40", end + "parsing string length"},
        {"7C 00 61", end + "parsing attributes"},
        {"7C 00 61 78 00 62", nonIdentifying},
        {"E1", identifying},
        {"E1 00 74", nonIdentifying},
        {"E2", nonIdentifying},
        {"C4", end + "parsing document type declaration"},
        {"C8", identifying},
        {"88", end + "reading integer"},
        {"3C 01 61", OCTETS_END},
        {"80", OCTETS_END},
        {"3C 60 20 00 00 00 61", OCTETS_END},
        {"8C 0F 20 00 00 01 00 00 00 01 00", OCTETS_END}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        expectFailure(document(std::string("00 ") + row.body), row.failure);
        if (!row.failure.starts_with(end)) {
            expectFailure(document(std::string("00 ") + row.body + PLENTY), row.failure);
        }
    }
}

// Which failure it is depends on the kind of the tables.
TEST(ParserTest, IndexesPastTheirTables) {
    for (const char* const body : {"A0", "00", "3C 80", "3E 82 00 61", "3D 82 00 61", "7C 00 61 00 80",
                                   "7C 00 61 78 00 62 80", "E2 80", "E1 80 FF", "C6 80"}) {
        for (const auto impl : ALL_KINDS) {
            FastInfosetParser parser(impl);
            EXPECT_FAILURE(impl == DocumentVocabulary::VOC_VECTOR
                               ? "out_of_range: index out of range"
                               : "AssertionViolationException: this->_index.size() > idx",
                           parseMemory(parser, document(std::string("00 ") + body)))
                << body;
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
