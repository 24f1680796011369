// The encoding algorithms: text to octets and back, values, arrays that are wrong or cut off.
#include "AllocationCount.h"
#include "EventRecorder.h"
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
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/NullRefEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

enum Type { HEX = 1, DWORD, SHORT, INT, LONG, BOOL, FLOAT, DOUBLE, UUIDS, CDATA };

// By the algorithm's index: the operation that decodes to text, and the events of a value.
const struct {
    void (*decode)(BitStreamReader&, std::string&);
    const char* name;
    const char* event;
} ALGORITHMS[] = {{&NullEncoding::decode, "null", "'"},
                  {&HexEncoding::decode, "hex", "=binary "},
                  {&Base64Encoding::decode, "dword", "="},
                  {&ShortEncoding::decode, "Tamo::Int16", "=short "},
                  {&IntEncoding::decode, "Tamo::Int32", "=int "},
                  {&LongEncoding::decode, "Tamo::Int64", "=long "},
                  {&BoolEncoding::decode, "bool", "=bool "},
                  {&FloatEncoding::decode, "float", "=float "},
                  {&DoubleEncoding::decode, "double", "=double "},
                  {&UUIDEncoding::decode, "Tamo::UUID", "=uuid "},
                  {&CDataEncoding::decode, "CDATA", "'"}};

std::string typedEvents(const Encoding& encoding) {
    TypedEventRecorder recorder;
    encoding.handle(&recorder);
    encoding.handle(static_cast<FISContentHandler*>(nullptr));
    return recorder.events();
}

std::string plainEvents(Encoding& encoding) {
    EventRecorder recorder;
    encoding.createContent();
    encoding.handle(static_cast<XML::ContentHandler*>(&recorder));
    encoding.handle(static_cast<XML::ContentHandler*>(nullptr));
    return recorder.events();
}

std::string formOf(const Encoding& encoding) {
    return written([&](BitStreamWriter& writer) { encoding.write(writer); }, 4);
}

template<class E, class T>
std::string formOf(const std::vector<T>& values) {
    return octets(formOf(*AutoPtr<E>(new E(values))));
}

// The value's event; between the values of an array the same with a separator.
std::string eventsOf(const char* event, const std::string& text) {
    std::string events = event;
    for (const char c : text) {
        events += c == ' ' ? "|" + std::string(event) : std::string(1, c);
    }
    return events;
}

TEST(EncodingTest, OctetsAndTextAndValues) {
    const struct {
        Type type;
        const char* octets; ///< the length begins at the fifth bit
        const char* text;
        int score;
        const char* events = nullptr; ///< for a typed handler; null: the values as in the text
    } rows[] = {{HEX, "01 0A 1B", "0A1B", 2, "=binary 0A 1B"},
                {DWORD, "01 01 02", "AQI=", 2, "=binary 01 02"},
                {SHORT, "03 80 00 7F FF", "-32768 32767", 4},
                {INT, "08 03 00 00 00 01 FF FF FF FE 00 00 01 2C", "1 -2 300", 12},
                {LONG, "07 80 00 00 00 00 00 00 00", "-9223372036854775808", 8},
                {BOOL, "00 38", "true", 1},
                {BOOL, "00 0B", "true false true true", 1},
                {BOOL, "01 7B 80", "true false true true true", 1},
                {FLOAT, "03 3F C0 00 00", "1.5", 4},
                {FLOAT, "03 3D CC CC CD", "0.10000000149011612", 4, "=float 0.1"},
                {FLOAT, "03 00 80 00 00", "1.1754943508222875e-38", 4, "=float 1.1754944e-38"},
                {FLOAT, "03 7F 7F FF FF", "3.4028234663852886e+38", 4, "=float 3.4028235e+38"},
                {DOUBLE, "07 80 00 00 00 00 00 00 00", "-0", 8},
                {DOUBLE, "07 3F D3 33 33 33 33 33 34", "0.30000000000000004", 8},
                {DOUBLE, "07 43 3F FF FF FF FF FF FF", "9007199254740991", 8},
                {DOUBLE, "07 43 40 00 00 00 00 00 01", "9007199254740994", 8},
                {DOUBLE, "07 44 80 F0 CF 06 4D D5 92", "1e+22", 8},
                {DOUBLE, "07 44 B5 2D 02 C7 E1 4A F6", "1e+23", 8},
                {DOUBLE, "07 00 00 00 00 00 00 00 01", "5e-324", 8},
                {DOUBLE, "07 00 0F FF FF FF FF FF FF", "2.225073858507201e-308", 8},
                {DOUBLE, "07 00 10 00 00 00 00 00 00", "2.2250738585072014e-308", 8},
                {DOUBLE, "07 FF EF FF FF FF FF FF FF", "-1.7976931348623157e+308", 8},
                {DOUBLE, "08 07 7F F0 00 00 00 00 00 00 FF F0 00 00 00 00 00 00", "INF -INF", 16},
                {DOUBLE, "07 7F F8 00 00 00 00 00 00", "NaN", 8},
                {UUIDS, "08 07 6B A7 B8 10 9D AD 11 D1 80 B4 00 C0 4F D4 30 C8",
                 "6BA7B810-9DAD-11D1-80B4-00C04FD430C8", 16, "=uuid 6ba7b810-9dad-11d1-80b4-00c04fd430c8"},
                {CDATA, "01 61 62", "ab", 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const std::string text = row.text;
        const std::string events = row.events ? row.events : eventsOf(ALGORITHMS[row.type].event, text);
        withReaders(octets(row.octets), 4, [&](BitStreamReader& reader) {
            const AutoPtr<Encoding> pValue = DecodingAlgorithm().read(row.type, reader);
            EXPECT_FALSE(reader.hasOctet()); // the unused bits were consumed too
            EXPECT_EQ(pValue->type(), static_cast<unsigned int>(row.type));
            EXPECT_EQ(typedEvents(*pValue), events);
            EXPECT_EQ(plainEvents(*pValue), "'" + text);
            EXPECT_EQ(formOf(*pValue), row.octets);
            EXPECT_EQ(written([&](auto& w) { pValue->encodeMethod()(w, text); }, 4), row.octets);
            EXPECT_EQ(pValue->checkMethod()(text), row.score);
        });
        withReaders(octets(row.octets), 4, [&](BitStreamReader& reader) {
            std::string back = "old";
            ALGORITHMS[row.type].decode(reader, back);
            EXPECT_EQ(back, text);
        });
    }
    // As text only positive normal floats are taken back.
    for (const auto& [form, text] :
         {std::pair("03 00 00 00 01", "1.401298464324817e-45"), {"03 BF 80 00 00", "-1"}}) {
        withReaders(octets(form), 4, [expected = text](BitStreamReader& reader) {
            std::string back;
            FloatEncoding::decode(reader, back);
            EXPECT_EQ(back, expected);
            EXPECT_EQ(FloatEncoding::check(back), 0);
        });
    }
}

template<class E>
void expectRefused(const std::string& failure, const std::string& empty,
                   std::initializer_list<const char*> texts) {
    EXPECT_FAILURE("FISEncodingException: " + empty, (AutoPtr<E>(new E(std::string()))));
    for (const char* const text : texts) {
        EXPECT_FAILURE("FISEncodingException: " + failure, (AutoPtr<E>(new E(std::string(text))))) << text;
        EXPECT_LE(E::check(text), 0) << text;
    }
}

template<class E>
void expectValuesRefused(const std::string& name, std::initializer_list<const char*> texts) {
    expectRefused<E>("Illegal value string for " + name, "Illegal (empty) data for " + name, texts);
}

TEST(EncodingTest, RefusedTexts) {
    expectValuesRefused<ShortEncoding>("ShortEncoding", {"32768", "-32769", "+1", "01"});
    expectValuesRefused<IntEncoding>("IntEncoding",
                                     {"1  2", " 1", "1 ", "-0", "5.0", "2147483648", "-2147483649", "abc"});
    expectValuesRefused<LongEncoding>("LongEncoding", {"9223372036854775808", "0x1"});
    expectValuesRefused<FloatEncoding>("FloatEncoding", {"0", "-1", "1e-40", "INF", "1.50"});
    expectValuesRefused<DoubleEncoding>(
        "DoubleEncoding",
        {"1.0", "inf", "1e400", "1,5", "1e23", "9007199254740993", "-NaN", ".5", "1e-400", " ", "0x1p3"});
    expectValuesRefused<BoolEncoding>("BoolEncoding", {"True", "1", "true  false"});
    expectValuesRefused<UUIDEncoding>("UUIDEncoding", {"6ba7b810", "6ba7b810-9dad-11d1-80b4-00c04fd430c8 "});
    expectRefused<HexEncoding>("Invalid hex-encoded data", "Zero-length data for hex encoding",
                               {"0G", "ABC"});
    expectRefused<DWordEncoding>("Invalid base64-encoded data", "Zero-length data for dword encoding",
                                 {"AQI", "A*=="});
    expectRefused<CDataEncoding>("", "Illegal empty string for CDataEncoding", {});
    expectRefused<NullEncoding>("", "Illegal empty string for NullEncoding", {});
}

TEST(EncodingTest, WrongSizes) {
    const struct {
        Type type;
        const char* octets;
    } rows[] = {{SHORT, "02 00 00 00"},
                {INT, "05 00 00 00 00 00 00"},
                {LONG, "08 03 00 00 00 00 00 00 00 00 00 00 00 00"},
                {FLOAT, "04 00 00 00 00 00"},
                {DOUBLE, "06 00 00 00 00 00 00 00"},
                {UUIDS, "08 0B 00"},
                {BOOL, "00 50"},     // 5 unused bits of 4
                {BOOL, "01 D0 00"}}; // 13 of 12
    for (const auto& row : rows) {
        const std::string name = ALGORITHMS[row.type].name;
        withReaders(octets(row.octets), 4, [&](BitStreamReader& reader) {
            EXPECT_FAILURE("FISEncodingException: Illegal size entry for " + name + " value",
                           DecodingAlgorithm().read(row.type, reader));
        });
    }
}

TEST(EncodingTest, Truncation) {
    const std::string array = octets("08 F7") + std::string(256, '\0');
    for (int type = HEX; type <= CDATA; ++type) {
        SCOPED_TRACE(ALGORITHMS[type].name);
        for (std::size_t size = 2; size < array.size(); size += 41) {
            withReaders(array.substr(0, size), 4, [&](BitStreamReader& reader) {
                EXPECT_FAILURE(OCTETS_END, DecodingAlgorithm().read(type, reader)) << size;
            });
        }
    }
}

TEST(EncodingTest, BooleansEndOnAnOctet) {
    std::vector<bool> values;
    for (std::size_t size = 1; size < 40000; size += size < 70 ? 1 : 2111) {
        values.resize(size, size % 3 == 0);
        withReaders(formOf<BoolEncoding>(values) + "Z", 4, [&](BitStreamReader& reader) {
            std::vector<bool> back;
            char next = 0;
            BoolEncoding::decode(reader, back);
            EXPECT_TRUE(back == values) << size;
            EXPECT_TRUE(reader.read(next, 8) && next == 'Z') << size;
        });
    }
    withReaders(octets("01 CF FF"), 4, [](BitStreamReader& reader) {
        std::vector<bool> none;
        BoolEncoding::decode(reader, none); // all 12 bits are unused
        EXPECT_TRUE(none.empty() && !reader.hasOctet());
    });
}

TEST(EncodingTest, ManyValues) {
    std::vector<Int64> values(100000);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<Int64>(i * 0x9E3779B97F4A7C15u);
    }
    const std::string form = formOf<LongEncoding>(values);
    withReaders(form, 4, [&](BitStreamReader& reader) {
        std::vector<Int64> back;
        LongEncoding::decode(reader, back);
        EXPECT_TRUE(back == values);
    });
    BitStreamReader block(form.data(), form.size());
    block.skip(4);
    std::vector<Int64> back;
    {
        const AllocationCount allocations;
        LongEncoding::decode(block, back);
        EXPECT_LT(allocations.number(), 5u) << "a block that is there is copied once";
    }
    const AutoPtr<LongEncoding> pSum(new LongEncoding(values[0]));
    const AutoPtr<LongEncoding> pOne(new LongEncoding(values[1]));
    const AllocationCount allocations;
    for (int i = 0; i < 100000; ++i) {
        pSum->merge(*pOne);
    }
    EXPECT_LT(allocations.number(), 40u) << "merging is amortised";
}

TEST(EncodingTest, MergeAndTables) {
    // Only values of one type merge.
    for (int type = HEX; type <= CDATA; ++type) {
        const std::string form = octets(type == UUIDS ? "08 07" : "07") + std::string(16, '\0');
        const auto read = [&](int index) {
            BitStreamReader reader(form.data(), form.size());
            reader.skip(4);
            return DecodingAlgorithm().read(index, reader);
        };
        const AutoPtr<Encoding> pValue = read(type);
        EXPECT_FALSE(pValue->merge(*AutoPtr<Encoding>(new NullEncoding("x")))) << type;
        EXPECT_TRUE(pValue->merge(*read(type))) << type;
    }
    const UUID uuid("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    EXPECT_EQ(typedEvents(*AutoPtr<Encoding>(new UUIDEncoding(std::vector<UUID>(2, uuid)))),
              "=uuid " + uuid.toString() + "|=uuid " + uuid.toString());
    EXPECT_EQ(typedEvents(*AutoPtr<Encoding>(new HexEncoding("\0\x0A", 2))), "=binary 00 0A");
    const std::string text = octets("03") + "text";
    BitStreamReader textReader(text.data(), text.size());
    textReader.skip(4);
    const AutoPtr<Encoding> pText = NullEncoding::decode(textReader);
    EXPECT_EQ(typedEvents(*pText) + formOf(*pText), "'text03 74 65 78 74");
    EXPECT_EQ(written([&](auto& w) { pText->encodeMethod()(w, "text"); }, 4), formOf(*pText));
    EXPECT_EQ(pText->checkMethod()("text"), 4);
    const std::string entry("entry");
    const AutoPtr<NullRefEncoding> pRef(new NullRefEncoding(std::string()));
    pRef->reset(entry);
    EXPECT_EQ(typedEvents(*pRef) + plainEvents(*pRef), "'entry'entry");
    EXPECT_EQ(formOf(*pRef), "04 65 6E 74 72 79");
    EXPECT_FAILURE("InvalidAccessException: NullRefEncoding is immutable", pRef->merge(*pRef));
    EXPECT_FAILURE("InvalidAccessException: NullRefEncoding is immutable", pRef->content());

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
