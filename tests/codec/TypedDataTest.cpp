// Typed data from an application through the writer and the parser to another application.
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/XML/XMLWriter.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <span>

namespace Tamo::FastInfoset::Test {
namespace {

// What a plain handler reports.
std::string plainEventsOf(const std::string& document) {
    FastInfosetParser parser;
    EventRecorder recorder;
    recorder.connect(parser);
    parseMemory(parser, document);
    return recorder.events();
}

TEST(TypedDataTest, EveryTypeTypedAndPlain) {
    const struct {
        const char* written;
        const char* octets; ///< the chunks
        const char* plain;
    } rows[] = {{"=short -2|=short 7", "8C 0A 01 FF FE 00 07", "'-2 7"},
                {"=int 42", "8C 0E 01 00 00 00 2A", "'42"},
                {"=long -9223372036854775808", "8C 12 05 80 00 00 00 00 00 00 00", "'-9223372036854775808"},
                {"=bool true|=bool false|=bool true|=bool true|=bool true", "8C 15 7B 80",
                 "'true false true true true"},
                {"=float 1.5|=float -0", "8C 1A 05 3F C0 00 00 80 00 00 00", "'1.5 -0"},
                {"=double 0.1", "8C 1E 05 3F B9 99 99 99 99 99 9A", "'0.1"},
                {"=uuid 6ba7b810-9dad-11d1-80b4-00c04fd430c8",
                 "8C 22 0D 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8",
                 "'6BA7B810-9DAD-11D1-80B4-00C04FD430C8"},
                {"=binary 01 02 03", "8C 06 00 01 02 03", "'AQID"},
                {"=short 1|=int 1|=short 1", "8C 09 00 01 8C 0E 01 00 00 00 01 8C 09 00 01", "'1|'1|'1"},
                // What stands between them is one chunk of its own.
                {"=bool true|'x|=bool true", "8C 14 38 90 78 8C 14 38", "'true|'x|'true"}};
    for (const auto& row : rows) {
        const std::string octets = std::string("00 3C 00 61 ") + row.octets + " FF";
        expectDocuments({{row.written, std::string("^|<a|") + row.written + "|>|$", octets}});
        EXPECT_EQ(plainEventsOf(document(octets)), std::string("^|<a|") + row.plain + "|>|$");
    }
    // Two octet strings in a row are one, as consecutive values of one type are.
    const std::string joined = document([](auto& w) { play("^|=binary 01|=binary 02 03|$", w); });
    EXPECT_EQ(hex(joined), hex(document("00 8C 06 00 01 02 03 F0")));
}

TEST(TypedDataTest, EncodingsFromTheApplication) {
    const auto insert = [](std::initializer_list<Encoding*> encodings) {
        return hex(document([&](FastInfosetWriter& writer) {
            const FastInfosetWriter::Document scope(writer);
            for (Encoding* const pEncoding : encodings) {
                writer.insertEncoding(AutoPtr<Encoding>(pEncoding));
            }
        }));
    };
    EXPECT_EQ(insert({new HexEncoding("0A1B")}), hex(document("00 8C 01 0A 1B F0")));
    // Text is indexed like text; a CDATA value outside a CDATA section loses its mark.
    EXPECT_EQ(insert({new NullEncoding("x"), new CDataEncoding("x")}), hex(document("00 90 78 A0 F0")));
    // An object that takes part in merging belongs to the writer then, but is not copied.
    const AutoPtr<BoolEncoding> pShared(new BoolEncoding(true));
    document([&](FastInfosetWriter& writer) {
        writer.insertEncoding(pShared);
        writer.encodedData(false);
    });
    std::string text = (pShared->createContent(), static_cast<const Encoding&>(*pShared).content());
    EXPECT_EQ(text, "true false");
    // One that has waited and is written has its content.
    const AutoPtr<Encoding> pWritten(new BoolEncoding(true));
    document([&](FastInfosetWriter& writer) {
        play("^", writer), writer.insertEncoding(pWritten), play("$", writer);
    });
    EXPECT_EQ(static_cast<const Encoding&>(*pWritten).content(), "true");
}

// An algorithm of the application: small numbers, an octet each.
class SmallNumbers : public Encoding {
public:
    static constexpr unsigned int TYPE = EncodingAlgorithm::USER_DEFINED;

    explicit SmallNumbers(const std::string& octets) : _octets(octets) {}

    static void encode(BitStreamWriter& writer, const std::string& text) {
        Encoder::nonEmptyOctetString(writer, text);
    }
    static int check(const std::string& text) { return text == "positions" ? 1 : 0; }
    static AutoPtr<Encoding> decode(BitStreamReader& reader) {
        std::string octets;
        Decoder::nonEmptyOctetString(reader, octets);
        return new SmallNumbers(octets);
    }
    unsigned int type() const override { return TYPE; }
    bool merge(const Encoding& other) override {
        const auto* pOther = dynamic_cast<const SmallNumbers*>(&other);
        _octets += pOther ? pOther->_octets : "";
        return pOther;
    }
    void write(BitStreamWriter& writer) const override { Encoder::nonEmptyOctetString(writer, _octets); }
    DecodeMethod decodeMethod() const override { return &decode; }
    CheckMethod checkMethod() const override { return &check; }
    EncodeMethod encodeMethod() const override { return &encode; }
    using Encoding::handle;
    void handle(FISContentHandler* handler) const override {
        for (const char octet : _octets) {
            handler->encodedData(Int32{octet});
        }
    }
    void createContent() override {
        _content.clear();
        for (const char octet : _octets) {
            _content += (_content.empty() ? "" : ";") + std::to_string(octet);
        }
    }

private:
    std::string _octets;
};

TEST(TypedDataTest, AlgorithmsOfTheApplication) {
    std::ostringstream stream;
    FastInfosetWriter writer(stream);
    writer.encodingAlgorithms().add(&SmallNumbers::encode, &SmallNumbers::check);
    EXPECT_EQ(writer.encodingAlgorithms().findEncoding("positions"), SmallNumbers::TYPE);
    play("^|<a", writer);
    writer.insertEncoding(AutoPtr<Encoding>(new SmallNumbers("de")));
    writer.insertEncoding(AutoPtr<Encoding>(new SmallNumbers("c")));
    play(">|$", writer);
    const std::string octets = stream.str();
    EXPECT_EQ(hex(octets), hex(document("00 3C 00 61 8C 7E 00 64 65 63 FF")));

    FastInfosetParser parser;
    TypedEventRecorder typed;
    typed.connect(parser);
    EXPECT_FAILURE("FISException: Invalid decoding defined", parseMemory(parser, octets));
    typed.clear();
    parser.decodingAlgorithms().add(&SmallNumbers::decode);
    for (int i = 0; i < 2; ++i) { // the header resets the tables, not the algorithms
        typed.clear();
        parseMemory(parser, octets);
        EXPECT_EQ(typed.events(), "^|<a|=int 100|=int 101|=int 99|>|$");
    }
    // Text for a plain handler, an attribute value and a table; then an initial vocabulary in between.
    EventRecorder plain;
    plain.connect(parser);
    parseMemory(parser, document("20 00 80 00 00 61 7C 80 78 00 62 71 F1 64 65 F0 9C 7C 05 A0 FF"));
    EXPECT_EQ(plain.events(), R"(^|<a b="100;101"|'5|'5|>|$)");
    std::ostringstream xml;
    XML::XMLWriter xmlWriter(xml);
    parser.initialize(&xmlWriter);
    parseMemory(parser, octets);
    EXPECT_EQ(xml.str(), "<a>100;101;99</a>");
}

// An element with a typed attribute "v" between two of text, as the handlers of both kinds and the cursor get
// it, and as it is written again.
class AttributeReader : public FISDefaultHandler {
public:
    void startElement(const std::string&, const std::string&, const std::string&,
                      const XML::Attributes& attributes) override {
        const auto* const pTyped = dynamic_cast<const TypedAttributes*>(&attributes);
        isTyped = pTyped && pTyped->isTyped(1) && !pTyped->isTyped(0) && pTyped->getValue(2) == "z";
        text = attributes.getValue("", "v");
        uri = pTyped ? pTyped->algorithmURI(1) : "";
    }
    bool isTyped = false;
    std::string text;
    std::string uri;
};

template<class Set>
std::string withAttribute(FastInfosetWriter& writer, std::ostringstream& stream, Set set) {
    TypedAttributes attributes;
    attributes.addAttribute("", "t", "t", "x");
    set(attributes);
    attributes.addAttribute("", "u", "u", "z");
    writer.startDocument();
    for (int i = 0; i < 2; ++i) { // names in full and by their indexes
        writer.startElement("", "a", "a", attributes);
    }
    play(">|>|$", writer);
    return stream.str();
}

TEST(TypedDataTest, AttributesOfEveryType) {
    using Type = FastInfosetReader::ValueType;
    const auto set = [](const auto& value) {
        return [value](TypedAttributes& list) { list.addAttribute("", "v", "v", value); };
    };
    const std::vector<Int16> shorts{-2, 7};
    const std::vector<Int32> ints{42};
    const std::vector<Int64> longs{-1};
    const std::vector<float> floats{1.5f, -0.0f};
    const std::vector<double> doubles(2000, 0.1);
    const std::vector<UUID> uuids{UUID("6ba7b810-9dad-11d1-80b4-00c04fd430c8")};
    const std::byte octets[] = {std::byte{1}, std::byte{2}, std::byte{3}};
    std::string tenths;
    std::string tenthsOctets = "30 7C 00 00 3D 77"; // 16,000 octets
    for (std::size_t i = 0; i < doubles.size(); ++i) {
        tenths += i == 0 ? "0.1" : " 0.1";
        tenthsOctets += " 3F B9 99 99 99 99 99 9A";
    }
    const struct {
        std::function<void(TypedAttributes&)> set;
        std::string octets; ///< the value
        std::string text;
        Type type;
        std::function<bool(const FastInfosetReader&)> isRead;
    } rows[] = {{set(std::span(shorts)), "30 23 FF FE 00 07", "-2 7", Type::INT16,
                 [&](const auto& r) { return std::ranges::equal(r.attributeInt16Values(1), shorts); }},
                {set(std::span(ints)), "30 33 00 00 00 2A", "42", Type::INT32,
                 [&](const auto& r) { return std::ranges::equal(r.attributeInt32Values(1), ints); }},
                {set(std::span(longs)), "30 47 FF FF FF FF FF FF FF FF", "-1", Type::INT64,
                 [&](const auto& r) { return std::ranges::equal(r.attributeInt64Values(1), longs); }},
                {set(std::vector<bool>{true, false}), "30 50 28", "true false", Type::BOOLEAN,
                 [&](const auto& r) {
                     return r.attributeBoolValues(1) == std::vector<bool>{true, false};
                 }},
                {set(std::span(floats)), "30 67 3F C0 00 00 80 00 00 00", "1.5 -0", Type::FLOAT,
                 [&](const auto& r) { return std::ranges::equal(r.attributeFloatValues(1), floats); }},
                {set(std::span(doubles)), tenthsOctets, tenths, Type::DOUBLE,
                 [&](const auto& r) { return std::ranges::equal(r.attributeDoubleValues(1), doubles); }},
                {set(std::span(uuids)), "30 88 07 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8",
                 "6BA7B810-9DAD-11D1-80B4-00C04FD430C8", Type::UNIQUE_ID,
                 [&](const auto& r) { return std::ranges::equal(r.attributeUUIDValues(1), uuids); }},
                {set(std::span<const std::byte>(octets)), "30 12 01 02 03", "AQID", Type::OCTETS,
                 [&](const auto& r) { return std::ranges::equal(r.attributeOctets(1), octets); }},
                {set(AutoPtr<Encoding>(new HexEncoding("0A1B"))), "30 01 0A 1B", "0A1B", Type::OCTETS,
                 [&](const auto& r) {
                     return r.attributeOctets(1).size() == 2 && r.attributeInt16Values(0).empty();
                 }},
                // What has no octets, and what is text, is text.
                {set(std::span(shorts).first(0)), "FF", "", Type::PLAIN_TEXT,
                 [&](const auto& r) { return r.attributeInt16Values(1).empty() && !r.typedAttributes(); }},
                {set(AutoPtr<Encoding>(new CDataEncoding("x"))), "80", "x", Type::PLAIN_TEXT,
                 [&](const auto& r) { return r.attributeOctets(1).empty() && !r.typedAttributes(); }}};
    for (const bool strict : {false, true}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.text.substr(0, 40));
            std::ostringstream stream;
            std::ostringstream again;
            FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
            writer.setStrict(strict);
            const std::string written = withAttribute(writer, stream, row.set);
            const bool isTyped = row.type != Type::PLAIN_TEXT;
            if (isTyped) {
                EXPECT_EQ(hex(written),
                          hex(document("00 7C 00 61 78 00 74 40 78 78 00 76 " + row.octets +
                                       " 78 00 75 40 7A F0 40 00 80 01 " + row.octets + " 02 81 FF FF")));
            }
            FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
            parser.setStrict(strict);
            std::string text = row.text;
            if (strict && row.type == Type::UNIQUE_ID) {
                std::ranges::transform(text, text.begin(), [](char c) { return c >= 'A' ? c | 0x20 : c; });
            }
            AttributeReader typed;
            parser.initialize(&typed);
            parseMemory(parser, written);
            EXPECT_EQ(typed.isTyped, isTyped);
            EXPECT_EQ(typed.text, text);
            std::ostringstream xml;
            XML::XMLWriter xmlWriter(xml);
            parser.initialize(&xmlWriter);
            parseMemory(parser, written);
            EXPECT_EQ(xml.str(),
                      "<a t=\"x\" v=\"" + text + "\" u=\"z\"><a t=\"x\" v=\"" + text + "\" u=\"z\"/></a>");
            writer.reset(again);
            parser.initialize(&writer);
            parseMemory(parser, written);
            EXPECT_EQ(hex(again.str()), hex(written));
            FastInfosetReader reader;
            reader.setStrict(strict);
            reader.open(written);
            while (reader.next() != FastInfosetReader::START_ELEMENT) {
            }
            EXPECT_EQ(reader.attributeValueType(1), row.type);
            EXPECT_EQ(reader.attributeValueType(0), Type::PLAIN_TEXT);
            EXPECT_TRUE(row.isRead(reader));
            EXPECT_EQ(reader.attribute("v"), text);
            EXPECT_THROW(reader.attributeValueType(3), AssertionViolationException);
        }
    }
    // The calls make such lists of what they are given: ranges as they are, and a value as an array of one.
    const std::vector<bool> truth{true};
    const std::string calls = document([&](FastInfosetWriter& writer) {
        const FastInfosetWriter::Document scope(writer);
        writer.element("a", {{"b", std::span(octets)},
                             {"c", shorts},
                             {"d", 42},
                             {"e", -1L},
                             {"f", std::array{1.5f, -0.0f}},
                             {"g", 0.1},
                             {"h", uuids[0]},
                             {"i", true},
                             {"j", truth},
                             {"k", "x"},
                             {"l", std::uint8_t{9}}});
    });
    EXPECT_EQ(hex(calls),
              hex(document("00 7C 00 61 78 00 62 30 12 01 02 03 78 00 63 30 23 FF FE 00 07 78 00 64 30 33 00 "
                           "00 00 2A 78 00 65 30 47 FF FF FF FF FF FF FF FF 78 00 66 30 67 3F C0 00 00 80 00 "
                           "00 00 78 00 67 30 77 3F B9 99 99 99 99 99 9A 78 00 68 30 88 07 6B A7 B8 10 9D AD "
                           "11 D1 80 B4 00 C0 4F D4 30 C8 78 00 69 30 50 38 78 00 6A 30 50 38 78 00 6B 40 78 "
                           "78 00 6C 30 21 00 09 FF F0")));
    // A value that is to be entered in the table is typed where it stands, and text where that is referred
    // to.
    AttributeReader typed;
    FastInfosetParser parser;
    parser.initialize(&typed);
    const char* const ends[][2] = {{" FF F0", "5"}, {" F0 40 00 80 01 80 02 82 FF FF", "AQIDBA=="}};
    for (const auto& [end, text] : ends) {
        parseMemory(parser,
                    document(std::string("00 7C 00 61 78 00 74 70 13 01 02 03 04 78 00 76 70 21 00 05 "
                                         "78 00 75 40 7A") +
                             end));
        EXPECT_EQ(typed.text, text);
    }
}

TEST(TypedDataTest, AttributesByAlgorithmsOfTheApplication) {
    const auto set = [](TypedAttributes& list) {
        list.addAttribute("", "v", "v", AutoPtr<Encoding>(new SmallNumbers("de")));
    };
    std::ostringstream again;
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, DocumentVocabulary::VOC_MAP);
    writer.setStrict(true);
    EXPECT_FAILURE(
        "FISEncodingException: Cannot write a value by the encoding algorithm 32: it is not registered "
        "with a URI",
        withAttribute(writer, stream, set));
    stream.str("");
    writer.reset(stream);
    writer.encodingAlgorithms().add("urn:s", &SmallNumbers::encode, &SmallNumbers::check);
    const std::string written = withAttribute(writer, stream, set);
    EXPECT_NE(written.find("\x31\xF1"
                           "de"),
              std::string::npos);

    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setStrict(true);
    parser.decodingAlgorithms().add("urn:s", &SmallNumbers::decode);
    AttributeReader typed;
    parser.initialize(&typed);
    parseMemory(parser, written);
    EXPECT_TRUE(typed.isTyped);
    EXPECT_EQ(typed.text + typed.uri, "100;101urn:s");
    writer.reset(again);
    parser.initialize(&writer);
    parseMemory(parser, written);
    EXPECT_EQ(hex(again.str()), hex(written));
    // A writer that does not know the algorithm writes the text.
    std::ostringstream texts;
    FastInfosetWriter plain(texts, false, DocumentVocabulary::VOC_MAP);
    parser.setContentHandler(&plain);
    parser.setDocumentHandler(nullptr); // who would else give the writer the document's algorithms
    for (const bool strict : {false, true}) {
        plain.reset(texts);
        plain.setStrict(strict);
        texts.str("");
        parseMemory(parser, written);
        EXPECT_NE(texts.str().find("100;101"), std::string::npos);
    }
    // The document has the URI once, and so has the list, however many values are by that algorithm.
    const std::string uri(100000, 'u');
    TypedAttributes many;
    for (int i = 0; i < 100; ++i) {
        const std::string name = "a" + std::to_string(i);
        many.addAttribute("", name, name, AutoPtr<Encoding>(new SmallNumbers("d")));
    }
    again.str("");
    FastInfosetWriter longUri(again, false, DocumentVocabulary::VOC_MAP);
    longUri.setStrict(true);
    longUri.encodingAlgorithms().add(uri, &SmallNumbers::encode, &SmallNumbers::check);
    longUri.startDocument();
    longUri.startElement("", "a", "a", many);
    longUri.endElement();
    longUri.endDocument();
    const std::string document = again.str();
    parser.decodingAlgorithms().add(uri, &SmallNumbers::decode);
    FISDefaultHandler handler;
    parser.setContentHandler(&handler);
    const AllocationCount memory;
    parseMemory(parser, document);
    EXPECT_LT(memory.peak(), 10 * uri.size());
}

} // namespace
} // namespace Tamo::FastInfoset::Test
