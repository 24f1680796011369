#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/NullRefEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

// Text to octets and back to the same text, through every source; the octets begin at bit position 4.
template<class E>
void expectForm(const std::string& text, const std::string& form, const std::string& calls, int score) {
    SCOPED_TRACE(text);
    EXPECT_EQ(E::check(text), score);
    const AutoPtr<E> pEncoding(new E(text));
    EXPECT_EQ(encoded(*pEncoding), form);
    EXPECT_EQ(typedCalls(*pEncoding), calls);
    withReaders(octets(form), [&](BitStreamReader& reader) {
        reader.skip(4);
        std::string back;
        E::decode(reader, back);
        EXPECT_EQ(back, text);
        EXPECT_FALSE(reader.hasOctet()); // all of the octets, unused bits included, were consumed
    });
    const std::string whole = octets(form);
    BitStreamReader reader(whole.data(), whole.size());
    reader.skip(4);
    const AutoPtr<Encoding> pBack = DecodingAlgorithm().read(static_cast<int>(pEncoding->type()), reader);
    EXPECT_EQ(typedCalls(*pBack), calls);
    EXPECT_EQ(plainCalls(*pBack), "characters:" + text);
}

TEST(Algorithms, OctetAndTextForms) {
    expectForm<ShortEncoding>("-32768 32767", "03 80 00 7F FF", "short:-32768 short:32767", 4);
    expectForm<IntEncoding>("1 -2 300", "08 03 00 00 00 01 FF FF FF FE 00 00 01 2C", "int:1 int:-2 int:300",
                            12);
    expectForm<LongEncoding>("-9223372036854775808", "07 80 00 00 00 00 00 00 00",
                             "long:-9223372036854775808", 8);
    expectForm<FloatEncoding>("1.5", "03 3F C0 00 00", "float:1.5", 4);
    expectForm<DoubleEncoding>("-0", "07 80 00 00 00 00 00 00 00", "double:-0", 8);
    expectForm<DoubleEncoding>("5e-324", "07 00 00 00 00 00 00 00 01", "double:4.94066e-324", 8);
    expectForm<DoubleEncoding>("1e+23", "07 44 B5 2D 02 C7 E1 4A F6", "double:1e+23", 8);
    expectForm<DoubleEncoding>("INF", "07 7F F0 00 00 00 00 00 00", "double:inf", 8);
    expectForm<BoolEncoding>("true", "00 38", "bool:1", 1);
    expectForm<BoolEncoding>("true false true true", "00 0B", "bool:1 bool:0 bool:1 bool:1", 1);
    expectForm<BoolEncoding>("true false true true true", "01 7B 80", "bool:1 bool:0 bool:1 bool:1 bool:1",
                             1);
    expectForm<HexEncoding>("0A1B", "01 0A 1B", "binary:0A 1B", 2);
    expectForm<DWordEncoding>("AQI=", "01 01 02", "binary:01 02", 2);
    expectForm<CDataEncoding>("ab", "01 61 62", "characters:ab", 2);
    expectForm<UUIDEncoding>("6BA7B810-9DAD-11D1-80B4-00C04FD430C8",
                             "08 07 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8",
                             "uuid:6ba7b810-9dad-11d1-80b4-00c04fd430c8", 16);
}

template<class E>
void expectRefused(const std::string& name, const std::string& empty,
                   std::initializer_list<const char*> texts) {
    EXPECT_FAILURE("FISEncodingException: " + empty, (AutoPtr<E>(new E(std::string()))));
    for (const char* const text : texts) {
        EXPECT_FAILURE("FISEncodingException: " + name, (AutoPtr<E>(new E(std::string(text))))) << text;
        EXPECT_LE(E::check(text), 0) << text;
    }
}

TEST(Algorithms, RefusedTexts) {
    expectRefused<ShortEncoding>("Illegal value string for ShortEncoding",
                                 "Illegal (empty) data for ShortEncoding", {"32768", "-32769", "+1", "01"});
    expectRefused<IntEncoding>("Illegal value string for IntEncoding", "Illegal (empty) data for IntEncoding",
                               {"1  2", " 1", "1 ", "-0", "5.0", "2147483648", "abc"});
    expectRefused<LongEncoding>("Illegal value string for LongEncoding",
                                "Illegal (empty) data for LongEncoding", {"9223372036854775808", "0x1"});
    expectRefused<FloatEncoding>("Illegal value string for FloatEncoding",
                                 "Illegal (empty) data for FloatEncoding",
                                 {"0", "-1", "1e-40", "INF", "1.50"});
    expectRefused<DoubleEncoding>("Illegal value string for DoubleEncoding",
                                  "Illegal (empty) data for DoubleEncoding", {"1.0", "inf", "1e400", "1,5"});
    expectRefused<BoolEncoding>("Illegal value string for BoolEncoding",
                                "Illegal (empty) data for BoolEncoding", {"True", "1", "true  false"});
    expectRefused<UUIDEncoding>("Illegal value string for UUIDEncoding",
                                "Illegal (empty) data for UUIDEncoding",
                                {"6ba7b810", "6ba7b810-9dad-11d1-80b4-00c04fd430c8 "});
    expectRefused<HexEncoding>("Invalid hex-encoded data", "Zero-length data for hex encoding",
                               {"0G", "ABC"});
    expectRefused<DWordEncoding>("Invalid base64-encoded data", "Zero-length data for dword encoding",
                                 {"AQI", "A*=="});
    expectRefused<CDataEncoding>("", "Illegal empty string for CDataEncoding", {});
    expectRefused<NullEncoding>("", "Illegal empty string for NullEncoding", {});
}

TEST(Algorithms, ClaimedLengthsReserveNothing) {
    // Four gigabytes of ints over eight octets.
    withReaders(octets("0C FF FF FE F7 00 00 00 01 00 00 00 02"), [](BitStreamReader& reader) {
        std::vector<int> values;
        reader.skip(4);
        EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing octet string",
                       IntEncoding::decode(reader, values));
        EXPECT_EQ(values, (std::vector<int>{1, 2}));
        EXPECT_LT(values.capacity(), 1024u);
    });
}

TEST(Algorithms, LargeArraysAcrossBuffers) {
    std::vector<double> values;
    for (int i = 0; i < 100000; ++i) {
        values.push_back(i / 3.0);
    }
    const AutoPtr<DoubleEncoding> pMerged(new DoubleEncoding(values[0]));
    for (std::size_t i = 1; i < values.size(); ++i) {
        pMerged->merge(*AutoPtr<DoubleEncoding>(new DoubleEncoding(values[i])));
    }
    EXPECT_EQ(encoded(*pMerged), encoded(*AutoPtr<DoubleEncoding>(new DoubleEncoding(values))));
    withReaders(octets(encoded(*pMerged)), [&](BitStreamReader& reader) {
        std::vector<double> back;
        reader.skip(4);
        DoubleEncoding::decode(reader, back);
        EXPECT_EQ(back, values);
    });
}

TEST(Algorithms, MergeAndTables) {
    const AutoPtr<HexEncoding> pHex(new HexEncoding("\x0A", 1));
    EXPECT_FALSE(pHex->merge(*AutoPtr<DWordEncoding>(new DWordEncoding("\x01", 1))));
    EXPECT_FALSE(
        AutoPtr<IntEncoding>(new IntEncoding(1))->merge(*AutoPtr<LongEncoding>(new LongEncoding(1L))));
    const std::string entry("entry");
    const AutoPtr<NullRefEncoding> pRef(new NullRefEncoding(std::string()));
    pRef->reset(entry);
    EXPECT_EQ(typedCalls(*pRef), "characters:entry");
    EXPECT_FAILURE("InvalidAccessException: NullRefEncoding is immutable", pRef->merge(*pHex));

    EncodingAlgorithm writer;
    std::ostringstream stream;
    BitStreamWriter bits(stream, false);
    for (const unsigned int index : {0u, 15u, 32u}) {
        EXPECT_FAILURE("FISException: Invalid encoding defined", writer.encode(index, bits, "x"));
        BitStreamReader reader("", 0);
        EXPECT_FAILURE("FISException: Invalid decoding defined",
                       DecodingAlgorithm().read(static_cast<int>(index), reader));
    }
    EXPECT_EQ(writer.findEncoding(""), 0u);
    EXPECT_EQ(writer.findEncoding("free text!"), 10u);
    EXPECT_EQ(writer.findEncoding("1000 2000"), 3u);
    EXPECT_EQ(writer.findEncoding("true false"), 6u);
    writer.add(&CDataEncoding::encode, [](const std::string&) { return 1; });
    EXPECT_EQ(writer.findEncoding("free text!"), EncodingAlgorithm::USER_DEFINED);
}

} // namespace
} // namespace Tamo::FastInfoset::Test
