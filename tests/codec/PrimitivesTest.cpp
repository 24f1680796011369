#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

std::string integerAt(int position, unsigned int value) {
    return written([=](BitStreamWriter& w) { Encoder::integer(w, value); }, position);
}

void expectInteger(int position, const std::string& form, unsigned int value) {
    withReaders(form, position, [=](BitStreamReader& reader) {
        unsigned int read = 0;
        Decoder::integer(reader, read);
        EXPECT_EQ(read, value);
    });
}

// Forms at a bit position: "value=octets value=octets".
struct Forms {
    int position;
    const char* list;

    void forEach(const std::function<void(std::size_t value, const std::string& octets)>& use) const {
        std::istringstream stream(list);
        std::string digits;
        for (std::size_t value = 0; stream >> value && stream.ignore() && stream >> digits;) {
            SCOPED_TRACE(testing::Message() << value << " at " << position);
            use(value, octets(digits));
        }
    }
};

TEST(PrimitivesTest, IntegersAtEachPosition) {
    const Forms rows[] = {
        {1, "0=7F 1=00 64=3F 65=4000 8256=5FFF 8257=600000 1048576=6FDFBF"},
        {2, "1=00 32=1F 33=2000 2080=27FF 2081=280000 526368=2FFFFF 526369=30000000 1048576=3007F7DF"},
        {3, "1=00 16=0F 17=1000 1040=13FF 1041=140000 263184=17FFFF 263185=18000000"},
        {4, "1=0000 256=0FF0"},
        {6, "256=03FC"}};
    for (const Forms& row : rows) {
        row.forEach([&](std::size_t value, const std::string& form) {
            EXPECT_EQ(integerAt(row.position, static_cast<unsigned int>(value)), hex(form));
            expectInteger(row.position, form, static_cast<unsigned int>(value));
        });
    }
    // The third prefix bit, and padding of two forms, are not looked at.
    expectInteger(1, octets("70 00 00"), 8257);
    expectInteger(3, octets("1F F0 00 00"), 263185);
    expectInteger(2, octets("30 F0 00 00"), 526369);
    for (const int position : {1, 2, 3}) {
        for (unsigned int edge = 2; edge <= Encoder::MAXINT20; edge *= 2) {
            for (const unsigned int value : {edge - 1, edge, std::min(edge + 1, Encoder::MAXINT20)}) {
                expectInteger(position, octets(integerAt(position, value)), value);
            }
        }
    }
}

TEST(PrimitivesTest, RefusedIntegers) {
    const struct {
        int position;
        unsigned int value;
        const char* failure;
    } rows[] = {{0, 1, "Illegal bit position 0: Integers can never start there"},
                {0, 0, "Value zero must start on the second bit of a byte"},
                {2, 0, "Value zero must start on the second bit of a byte"},
                {0, 1048577, "Cannot encode integer value: too large, must be smaller than 2^20"},
                {4, 257, "Illegal bit position: Only Integers <= 256 can start at pos 4 or 6."},
                {7, 1, "Illegal bit position: No Integers are allowed to be written to pos 5 or 7."}};
    for (const auto& row : rows) {
        EXPECT_FAILURE(std::string("FISEncodingException: ") + row.failure,
                       integerAt(row.position, row.value));
    }
    const struct {
        int position;
        const char* hex;
        const char* failure;
    } readRows[] = {
        {0, "00", "FISEncodingException: Illegal bit position 0: Integers can never start there"},
        {5, "00 00",
         "FISEncodingException: Illegal bit position: No Integers are allowed to be read from pos 5 or 7."},
        {2, "34 00 00 00", "AssertionViolationException: val == 48"},
        {1, "6F FF FF", "AssertionViolationException: val <= Encoder::MAXINT20"},
        {1, "40", "FISParseException: Unexpected end of stream while reading integer"},
        {1, "60 00", "FISParseException: Unexpected end of stream while reading integer"}};
    for (const auto& row : readRows) {
        std::istringstream stream(octets(row.hex));
        BitStreamReader reader(stream);
        unsigned int value = 0;
        reader.refillBufferIfLessThan(1);
        reader.advance(static_cast<UInt64>(row.position));
        EXPECT_FAILURE(row.failure, Decoder::integer(reader, value)) << row.hex;
    }
}

TEST(PrimitivesTest, LengthsOfStrings) {
    const Forms rows[] = {{1, "1=00 64=3F 65=4000 320=40FF 321=6000000000 4294967616=60FFFFFFFF"},
                          {4, "8=07 9=0800 264=08FF 265=0C00000000"},
                          {6, "2=01 3=0200 258=02FF 259=0300000000"}};
    for (const Forms& row : rows) {
        row.forEach([&](std::size_t length, const std::string& form) {
            const auto write = [&](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, length); };
            EXPECT_EQ(written(write, row.position), hex(form));
            withReaders(form, row.position, [&](BitStreamReader& reader) {
                std::size_t read = 0;
                Decoder::nonEmptyStringLength(reader, read);
                EXPECT_EQ(read, length);
            });
        });
    }
    EXPECT_FAILURE("FISEncodingException: illegal position for nonEmptyOctetString encoding",
                   written([](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, 1); }));
    EXPECT_FAILURE("FISEncodingException: Encoder::nonEmptyOctetString cannot encode empty strings",
                   written([](BitStreamWriter& w) { Encoder::nonEmptyOctetString(w, ""); }));
    std::istringstream stream(octets("40"));
    BitStreamReader reader(stream);
    std::size_t length = 0;
    reader.refillBufferIfLessThan(1);
    reader.advance(1);
    EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing string length",
                   Decoder::nonEmptyStringLength(reader, length));
}

// The long form that is written is not the standard's, which is read.
TEST(PrimitivesTest, LengthsOfSequences) {
    const auto form = [](unsigned int count) {
        return written([=](BitStreamWriter& w) { Encoder::lengthOfSequence(w, count); });
    };
    EXPECT_EQ(form(1), "00");
    EXPECT_EQ(form(128), "7F");
    EXPECT_EQ(form(129), "08 00 00");
    EXPECT_FAILURE("FISEncodingException: Illegal value zero for lengthOfSequence", form(0));
    EXPECT_FAILURE("FISEncodingException: Illegal value for lengthOfSequence: larger than 2^20",
                   form(1048577));
    withReaders(octets("7F 80 00 00 8F FF 7F"), 0, [](BitStreamReader& reader) {
        unsigned int count = 0;
        for (const unsigned int expected : {128u, 129u, 1048576u}) {
            Decoder::lengthOfSequence(reader, count);
            EXPECT_EQ(count, expected);
        }
    });
}

} // namespace
} // namespace Tamo::FastInfoset::Test
