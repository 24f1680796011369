#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "TestSupport.h"
#include <bit>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::size_t allocations = 0;
std::size_t largestAllocation = 0;

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    largestAllocation = std::max(largestAllocation, size);
    if (void* const p = std::malloc(size)) {
        return p;
    }
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace Tamo::FastInfoset::Test {
namespace {

template<class E, class T>
std::string formOf(const std::vector<T>& values) {
    return octets(encoded(*AutoPtr<E>(new E(values))));
}

template<class E, class T>
std::string textOf(T value) {
    const std::string form = formOf<E>(std::vector<T>{value});
    BitStreamReader reader(form.data(), form.size());
    std::string text;
    reader.skip(4);
    E::decode(reader, text);
    return text;
}

// An array that ends anywhere, and one that claims four gigabytes.
template<class E, class T>
void expectTruncationReported() {
    const char* const failure = "FISParseException: Unexpected end of stream while parsing octet string";
    const std::string form = formOf<E>(std::vector<T>(300));
    for (std::size_t size = 6; size < form.size(); size += 41) {
        withReaders(form.substr(0, size), [&](BitStreamReader& reader) {
            reader.skip(4);
            EXPECT_FAILURE(failure, E::decode(reader)) << size;
        });
    }
    withReaders(octets("0C FF FF FE F7 00 00 00 00 00 00 00 00 00"), [&](BitStreamReader& reader) {
        reader.skip(4);
        largestAllocation = 0;
        EXPECT_FAILURE(failure, E::decode(reader));
        EXPECT_LT(largestAllocation, 8192u) << "nothing is allocated on the length's word";
    });
}

} // namespace

TEST(NumericEncoding, HardDoubles) {
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        const char* text;
    } rows[] = {{-0.0, "-0"},
                {0.1 + 0.2, "0.30000000000000004"},
                {9007199254740991.0, "9007199254740991"},
                {9007199254740992.0, "9007199254740992"},
                {9007199254740994.0, "9007199254740994"},
                {1e22, "1e+22"},
                {1e23, "1e+23"},
                {5e-324, "5e-324"},
                {2.225073858507201e-308, "2.225073858507201e-308"},
                {2.2250738585072014e-308, "2.2250738585072014e-308"},
                {-1.7976931348623157e308, "-1.7976931348623157e+308"},
                {INFINITE, "INF"},
                {-INFINITE, "-INF"},
                {std::numeric_limits<double>::quiet_NaN(), "NaN"}};
    for (const auto& row : rows) {
        EXPECT_EQ(textOf<DoubleEncoding>(row.value), row.text);
        std::vector<double> back;
        DoubleEncoding::parse(row.text, back);
        ASSERT_EQ(back.size(), 1u) << row.text;
        EXPECT_EQ(std::bit_cast<UInt64>(back[0]), std::bit_cast<UInt64>(row.value)) << row.text;
    }
    for (const char* const text : {"1e23", "9007199254740993", "inf", "-NaN", ".5", "1e-400", " ", "0x1p3"}) {
        EXPECT_EQ(DoubleEncoding::check(text), 0) << text;
    }
    // A float is spelt as the double that it is; as text only the positive normal ones are taken back.
    const struct {
        float value;
        const char* text;
        int score;
    } floats[] = {{0.1f, "0.10000000149011612", 4},
                  {std::numeric_limits<float>::min(), "1.1754943508222875e-38", 4},
                  {std::numeric_limits<float>::max(), "3.4028234663852886e+38", 4},
                  {std::numeric_limits<float>::denorm_min(), "1.401298464324817e-45", 0},
                  {-1.0f, "-1", 0}};
    for (const auto& row : floats) {
        EXPECT_EQ(textOf<FloatEncoding>(row.value), row.text);
        EXPECT_EQ(FloatEncoding::check(row.text), row.score) << row.text;
    }
}

TEST(NumericEncoding, WrongSizes) {
    const struct {
        const char* form;
        Encoding::DecodeMethod decode;
        const char* what;
    } rows[] = {{"02 00 00 00", &ShortEncoding::decode, "Tamo::Int16"},
                {"05 00 00 00 00 00 00", &IntEncoding::decode, "Tamo::Int32"},
                {"08 03 00 00 00 00 00 00 00 00 00 00 00 00", &LongEncoding::decode, "Tamo::Int64"},
                {"04 00 00 00 00 00", &FloatEncoding::decode, "float"},
                {"06 00 00 00 00 00 00 00", &DoubleEncoding::decode, "double"},
                {"08 0B 00", &UUIDEncoding::decode, "Tamo::UUID"},
                {"00 50", &BoolEncoding::decode, "bool"},     // 5 unused bits of 4
                {"01 D0 00", &BoolEncoding::decode, "bool"}}; // 13 of 12
    for (const auto& row : rows) {
        withReaders(octets(row.form), [&](BitStreamReader& reader) {
            reader.skip(4);
            EXPECT_FAILURE(std::string("FISEncodingException: Illegal size entry for ") + row.what + " value",
                           row.decode(reader));
        });
    }
}

TEST(NumericEncoding, Truncation) {
    expectTruncationReported<ShortEncoding, Int16>();
    expectTruncationReported<IntEncoding, Int32>();
    expectTruncationReported<LongEncoding, Int64>();
    expectTruncationReported<FloatEncoding, float>();
    expectTruncationReported<DoubleEncoding, double>();
    expectTruncationReported<BoolEncoding, bool>();
    expectTruncationReported<UUIDEncoding, UUID>();
}

TEST(NumericEncoding, BooleansEndOnAnOctet) {
    std::vector<bool> values;
    for (std::size_t size = 1; size < 40000; size += size < 70 ? 1 : 2111) {
        values.resize(size, size % 3 == 0);
        withReaders(formOf<BoolEncoding>(values) + "Z", [&](BitStreamReader& reader) {
            std::vector<bool> back;
            char next = 0;
            reader.skip(4);
            BoolEncoding::decode(reader, back);
            EXPECT_TRUE(back == values) << size;
            EXPECT_TRUE(reader.read(next, 8) && next == 'Z') << size;
        });
    }
    withReaders(octets("01 CF FF"), [](BitStreamReader& reader) {
        std::vector<bool> none;
        reader.skip(4);
        BoolEncoding::decode(reader, none); // all 12 bits are unused
        EXPECT_TRUE(none.empty() && !reader.hasOctet());
    });
}

TEST(NumericEncoding, AMillionValues) {
    std::vector<Int64> values(1000000);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<Int64>(i * 0x9E3779B97F4A7C15u);
    }
    const std::string form = formOf<LongEncoding>(values);
    std::istringstream stream(form);
    BitStreamReader streamed(stream);
    BitStreamReader block(form.data(), form.size());
    BitStreamReader single(form.data(), form.size());
    unsigned char dropped = 0;
    streamed.read(dropped, 4);
    block.skip(4);
    single.skip(40);
    std::vector<Int64> fromStream;
    std::vector<Int64> fromBlock;
    LongEncoding::decode(streamed, fromStream);
    allocations = 0;
    LongEncoding::decode(block, fromBlock);
    EXPECT_LT(allocations, 5u) << "a block that is there is copied once";
    EXPECT_TRUE(fromStream == values && fromBlock == values);
    for (const Int64 value : values) {
        long read = 0;
        ASSERT_TRUE(single.read(read, 64) && read == value);
    }
    const AutoPtr<LongEncoding> pSum(new LongEncoding(values[0]));
    const AutoPtr<LongEncoding> pOne(new LongEncoding(values[1]));
    allocations = 0;
    for (int i = 0; i < 100000; ++i) {
        pSum->merge(*pOne);
    }
    EXPECT_LT(allocations, 40u) << "merging is amortised";
}

} // namespace Tamo::FastInfoset::Test
