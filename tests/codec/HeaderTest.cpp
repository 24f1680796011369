#include "EventTrace.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <map>

namespace Tamo::FastInfoset::Test {
namespace {

// The events of octets, or how they fail, from memory and from a stream.
void expectRead(const std::string& hexOctets, const std::string& fromMemory, const std::string& fromStream) {
    SCOPED_TRACE(hexOctets);
    const std::string document = octets(hexOctets);
    for (const bool stream : {false, true}) {
        TraceRecorder recorder;
        FastInfosetParser parser;
        recorder.connect(parser);
        std::istringstream input(document);
        XML::InputSource source(input);
        const std::string failure = failureOf([&] {
            if (stream) {
                parser.parse(&source);
            } else {
                parser.parseMemoryNP(document.data(), document.size());
            }
        });
        EXPECT_EQ(failure.empty() ? recorder.events : failure, stream ? fromStream : fromMemory);
    }
}

void expectRead(const std::string& hexOctets, const std::string& expected) {
    expectRead(hexOctets, expected, expected);
}

TEST(Header, EveryComponent) {
    // Declaration; additional data; notations and unparsed entities; encoding scheme, standalone, version.
    expectRead("3C 3F 78 3E E0 00 00 01 00 F0", "doc( )");
    expectRead("E0 00 00 01 40 00 00 75 01 64 64 3C 00 61 FF", "doc( <a >a )");
    expectRead("E0 00 00 01 10 C3 00 6E 00 73 00 70 C1 00 6D 81 F0 F0",
               "notation:n,p,s notation:m,p,null doc( )");
    expectRead("E0 00 00 01 08 D1 00 65 00 73 00 70 00 6E D0 00 66 80 81 F0 F0",
               "unparsed:e,p,s,n unparsed:f,null,s,n doc( )");
    expectRead("E0 00 00 01 10 F0 F0", "doc( )");
    expectRead("E0 00 00 01 07 04 75 74 66 2D 38 01 40 31 3C 00 61 E2 80 FF", "doc( <a !1 >a )");
}

TEST(Header, EveryTableOfTheInitialVocabulary) {
    // An alphabet "ab", an algorithm URI, one entry each of the ten tables: p, u, l, t, s; attribute value
    // "v" in UTF-16, chunk "01" in alphabet 1 (its index read twice), other string "7" as int; {u}p:l twice
    // as a name.
    const std::string vocabulary = "0F FF 00 01 61 62 00 00 61 00 00 70 00 00 75 00 00 6C 00 00 74 00 00 73 "
                                   "00 11 00 76 00 20 00 00 01 00 30 30 33 00 00 00 07 "
                                   "00 03 01 01 00 00 03 01 01 00";
    expectRead("E0 00 00 01 20 " + vocabulary + " 40 78 00 61 80 FF E1 80 80 A0 FF",
               "doc( <{u}l[p:l] a=v >l ?t=7 '01 )");
    // A surrogate without prefix and namespace name.
    expectRead("E0 00 00 01 20 00 82 00 00 6C 00 00 00 00 FF", "doc( <l >l )");
    expectRead("E0 00 00 01 20 00 00",
               "FISException: Initial Vocabulary detected with zero information in it - at "
               "least one dictionary required");
    expectRead("E0 00 00 01 20 00 80 01 00 6C 00 6C", "AssertionViolationException: !existed");
}

TEST(Header, Refusals) {
    const std::string pStream = "AssertionViolationException: _pStream";
    expectRead("00 00 00 00", "FISException: Not a valid Fast Infoset document (invalid header)");
    expectRead("", pStream, "FISException: Not a valid Fast Infoset document (invalid header)");
    expectRead("3C 3F 78 6D 6C", "FISParseException: Unexpected end of stream while parsing XML declaration");
    expectRead("E0 00 00 02 00", "FISException: Unsupported Fast Infoset document version");
    expectRead("E0 00 00 01 10 30", "AssertionViolationException: id == 60");
    expectRead("E0 00 00 01 08 30", "AssertionViolationException: id == 120");
    expectRead("E0 00 00 01 20 00 80 8F FF FF 00",
               "FISParseException: Unexpected end of stream while parsing octet string");
    expectRead("E0 00 00 01 20 00 80 00 60 FF FF FF FF 61",
               "FISParseException: Unexpected end of stream while parsing octet string");
}

TEST(Body, Refusals) {
    const std::string head = "E0 00 00 01 00 ";
    const char* const rows[][2] = {
        {"C0", "FISEncodingException: Invalid child element"},
        {"E3", "FISEncodingException: Parse error: unknown element child code"},
        {"3C 00 61 AF", "out_of_range: index out of range"},
        {"00 00", "out_of_range: index out of range"},
        {"3C 00 61 8C 0C 00 00 00", "FISEncodingException: Illegal size entry for Tamo::Int32 value"},
        {"3C 00 61 8C 20 00", "FISEncodingException: Illegal size entry for Tamo::UUID value"},
        {"3C 00 61 8C 14 F0", "FISEncodingException: Illegal size entry for bool value"},
        {"3C 00 61 8C 2C 00 00", "FISException: Invalid decoding defined"},
        {"3C 00 61 8C 7C 00 00", "FISException: Invalid decoding defined"},
        {"3C 00 61 88 08 00 12", "FISEncodingException: Illegal restricted alphabet: the index is reserved"},
        {"C4 00", "AssertionViolationException: stat == 0x0f"}};
    for (const auto& row : rows) {
        expectRead(head + row[0], row[1]);
    }
    // UTF-16, an alphabet, a typed value that enters the table as text; an entity reference; two roots.
    expectRead(head + "3C 00 61 85 20 AC 98 01 12 3F 9C 00 0A A1 FF",
               "doc( <a '\xE2\x82\xAC '123 '0A '0A >a )");
    expectRead(head + "CB 00 65 00 73 00 70 3C 00 61 FC 3C 00 62 FF", "doc( <a >a <b >b )");
    // Mappings end with the element started last: none here, and twice there.
    expectRead(head + "38 CF 00 70 00 75 F0 3D 81 00 61 3C 00 62 FF F0", "doc( +p=u <{u}a <b >b >a )");
    expectRead(head + "3C 00 61 38 CF 00 70 00 75 F0 3C 00 62 FF F0", "doc( <a +p=u <b >b -p >a -p )");
}

class Loader : public ExternalVocabularyLoader {
public:
    std::map<std::string, std::string> resources; // Fast Infoset documents
    int loads = 0;

    DocumentVocabulary load(const std::string& uri) override {
        ++loads;
        const auto it = resources.find(uri);
        if (it == resources.end()) {
            throw FISException("not for this program", uri);
        }
        std::istringstream stream(it->second);
        return loadFastInfoset(stream, *this);
    }
};

TEST(ExternalVocabulary, IsGivenLoadedSharedAndRefused) {
    const std::string named = octets("E0 00 00 01 20 10 00 00 76 00 FF"); // vocabulary "v", element name 1
    Loader loader;
    loader.resources["v"] = octets("E0 00 00 01 00 3C 00 61 FF");
    TraceRecorder recorder;
    FastInfosetParser parser;
    recorder.connect(parser);
    parser.setExternalVocabularyLoader(&loader);
    for (int i = 1; i <= 2; ++i) {
        parser.parseMemoryNP(named.data(), named.size());
        EXPECT_EQ(loader.loads, i); // loaded anew for each document
    }
    EXPECT_EQ(recorder.events, "doc( <a >a ) doc( <a >a )");

    DocumentVocabulary prepared("v", DocumentVocabulary::VOC_MAP);
    std::ostringstream dropped;
    FastInfosetWriter sample(dropped, false, prepared);
    sample.startDocument();
    sample.emptyElement("", "a", "a");
    sample.endDocument();
    prepared = sample.getDocumentVocabulary();
    prepared.setURI("v");
    std::ostringstream message;
    FastInfosetWriter writer(message, false, prepared);
    writer.setExternalVocabulary("v", prepared);
    writer.startDocument();
    writer.emptyElement("", "a", "a");
    writer.endDocument();
    EXPECT_EQ(hex(message.str()), hex(named));
    TraceRecorder given;
    FastInfosetParser reader(prepared);
    Loader untouched;
    reader.setExternalVocabularyLoader(&untouched);
    given.connect(reader);
    reader.parseMemoryNP(named.data(), named.size());
    EXPECT_EQ(given.events, "doc( <a >a )");
    EXPECT_EQ(untouched.loads, 0);

    loader.resources["v"] = named;
    EXPECT_FAILURE("FISException: An external vocabulary names itself: v",
                   parser.parseMemoryNP(named.data(), named.size()));
    loader.resources.clear();
    EXPECT_FAILURE("FISException: not for this program: v", parser.parseMemoryNP(named.data(), named.size()));
    parser.setExternalVocabularyLoader(nullptr); // the default opens the URI
    EXPECT_FAILURE("FileNotFoundException: v", parser.parseMemoryNP(named.data(), named.size()));
}

TEST(PreparedVocabulary, IsAnnouncedOrRefused) {
    const auto start = [](DocumentVocabulary::ID id, int entries) {
        std::ostringstream stream;
        FastInfosetWriter writer(stream);
        for (int i = 0; i < entries; ++i) {
            bool found = false;
            writer.getDocumentVocabulary().index(id, "e" + std::to_string(i), found);
        }
        const std::string failure = failureOf([&] { writer.startDocument(); });
        return failure.empty() ? hex(stream.str()) : failure;
    };
    EXPECT_EQ(start(DocumentVocabulary::LOCAL_NAME, 1), "E0 00 00 01 20 00 80 00 01 65 30");
    EXPECT_EQ(start(DocumentVocabulary::ATTRIBUTE_VALUE, 1),
              "AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)");
    std::ostringstream stream;
    FastInfosetWriter writer(stream);
    bool found = false;
    writer.getDocumentVocabulary().index(DocumentVocabulary::LOCAL_NAME, "l", found);
    writer.getDocumentVocabulary().elementVocabulary().index(QualifiedNameEntry(0, 0, 1), found);
    EXPECT_FAILURE("FISEncodingException: Illegal startposition for an writeIdentifyingStringIndex",
                   writer.startDocument());
    EXPECT_FAILURE(
        "InvalidArgumentException: A DocumentVocabulary with VOC_VECTOR implementation cannot be used "
        "by FastInfosetWriter",
        writer.setDocumentVocabulary(DocumentVocabulary(DocumentVocabulary::VOC_VECTOR)));
    const std::string id("n");
    writer.startDTD("", "", "");
    EXPECT_FAILURE("AssertionViolationException: _states.back() == UNINITIALIZED",
                   writer.notationDecl(id, &id, nullptr));
}

TEST(Parser, FeaturesPropertiesAndSources) {
    FastInfosetParser parser;
    parser.setFeature(XML::XMLReader::FEATURE_NAMESPACES, true);
    EXPECT_FAILURE("SAXNotSupportedException: namespace support cannot be disabled",
                   parser.setFeature(XML::XMLReader::FEATURE_NAMESPACES, false));
    EXPECT_FAILURE("SAXNotRecognizedException: f", parser.getFeature("f"));
    EXPECT_FAILURE("SAXNotSupportedException: property does not take a string value: " +
                       XML::XMLReader::PROPERTY_LEXICAL_HANDLER,
                   parser.setProperty(XML::XMLReader::PROPERTY_LEXICAL_HANDLER, std::string("x")));
    EXPECT_FAILURE("FISParseException: Cannot resolve system identifier: /no/such/file",
                   parser.parse(std::string("/no/such/file")));
}

} // namespace
} // namespace Tamo::FastInfoset::Test
