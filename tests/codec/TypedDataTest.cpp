// Typed data from an application through the writer and the parser to another application.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/XML/XMLWriter.h"

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
        const std::string written = std::string("^|<a|") + row.written + "|>|$";
        const std::string octets = std::string("00 3C 00 61 ") + row.octets + " FF";
        expectDocuments({{row.written, written.c_str(), octets.c_str()}});
        EXPECT_EQ(plainEventsOf(document(octets)), std::string("^|<a|") + row.plain + "|>|$");
    }
    // Two octet strings in a row are one, as consecutive values of one type are.
    const std::string joined = document([](auto& w) { play("^|=binary 01|=binary 02 03|$", w); });
    EXPECT_EQ(hex(joined), hex(document("00 8C 06 00 01 02 03 F0")));
}

TEST(TypedDataTest, EncodingsFromTheApplication) {
    const auto insert = [](Encoding* pEncoding, Encoding* pSecond = nullptr) {
        return hex(document([&](FastInfosetWriter& writer) {
            writer.startDocument();
            writer.insertEncoding(AutoPtr<Encoding>(pEncoding));
            if (pSecond) {
                writer.insertEncoding(AutoPtr<Encoding>(pSecond));
            }
            writer.endDocument();
        }));
    };
    EXPECT_EQ(insert(new HexEncoding("0A1B")), hex(document("00 8C 01 0A 1B F0")));
    // Text is indexed like text; a CDATA value outside a CDATA section loses its mark.
    EXPECT_EQ(insert(new NullEncoding("x"), new CDataEncoding("x")), hex(document("00 90 78 A0 F0")));
    // An object that takes part in merging belongs to the writer then, but is not copied.
    const AutoPtr<BoolEncoding> pShared(new BoolEncoding(true));
    document([&](FastInfosetWriter& writer) {
        writer.insertEncoding(pShared);
        writer.encodedData(false);
    });
    std::string text = (pShared->createContent(), static_cast<const Encoding&>(*pShared).content());
    EXPECT_EQ(text, "true false");
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
    writer.startDocument();
    writer.startElement("", "a", "");
    writer.insertEncoding(AutoPtr<Encoding>(new SmallNumbers("de")));
    writer.insertEncoding(AutoPtr<Encoding>(new SmallNumbers("c")));
    writer.endElement("", "", "");
    writer.endDocument();
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

} // namespace
} // namespace Tamo::FastInfoset::Test
