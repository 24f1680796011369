#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

std::string integerAt(int position, unsigned int value) {
    return written([=](BitStreamWriter& w) { Encoder::integer(w, value); }, position);
}

void expectInteger(int position, const char* hex, unsigned int value) {
    withReaders(octets(hex), position, [=](BitStreamReader& reader) {
        unsigned int read = 0;
        Decoder::integer(reader, read);
        EXPECT_EQ(read, value);
    });
}

TEST(PrimitivesTest, IntegersAtEachPosition) {
    const struct {
        int position;
        unsigned int value;
        const char* hex;
    } rows[] = {{1, 0, "7F"},
                {1, 1, "00"},
                {1, 64, "3F"},
                {1, 65, "40 00"},
                {1, 8256, "5F FF"},
                {1, 8257, "60 00 00"},
                {1, 1048576, "6F DF BF"},
                {2, 1, "00"},
                {2, 32, "1F"},
                {2, 33, "20 00"},
                {2, 2080, "27 FF"},
                {2, 2081, "28 00 00"},
                {2, 526368, "2F FF FF"},
                {2, 526369, "30 00 00 00"},
                {2, 1048576, "30 07 F7 DF"},
                {3, 1, "00"},
                {3, 16, "0F"},
                {3, 17, "10 00"},
                {3, 1040, "13 FF"},
                {3, 1041, "14 00 00"},
                {3, 263184, "17 FF FF"},
                {3, 263185, "18 00 00 00"},
                {4, 1, "00 00"},
                {4, 256, "0F F0"},
                {6, 256, "03 FC"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " at " << row.position);
        EXPECT_EQ(integerAt(row.position, row.value), row.hex);
        expectInteger(row.position, row.hex, row.value);
    }
    // The third prefix bit, and padding of two forms, are not looked at.
    expectInteger(1, "70 00 00", 8257);
    expectInteger(3, "1F F0 00 00", 263185);
    expectInteger(2, "30 F0 00 00", 526369);
    for (const int position : {1, 2, 3}) {
        for (unsigned int edge = 2; edge <= Encoder::MAXINT20; edge *= 2) {
            for (const unsigned int value : {edge - 1, edge, std::min(edge + 1, Encoder::MAXINT20)}) {
                const std::string form = octets(integerAt(position, value));
                BitStreamReader reader(form.data(), form.size());
                unsigned int result = 0;
                reader.skip(position);
                Decoder::integer(reader, result);
                EXPECT_EQ(result, value) << "at " << position;
                EXPECT_EQ(reader.cachedBits(), 0);
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
    const struct {
        int position;
        std::size_t length;
        const char* hex;
    } rows[] = {{1, 1, "00"},
                {1, 64, "3F"},
                {1, 65, "40 00"},
                {1, 320, "40 FF"},
                {1, 321, "60 00 00 00 00"},
                {1, 4294967616, "60 FF FF FF FF"},
                {4, 8, "07"},
                {4, 9, "08 00"},
                {4, 264, "08 FF"},
                {4, 265, "0C 00 00 00 00"},
                {6, 2, "01"},
                {6, 3, "02 00"},
                {6, 258, "02 FF"},
                {6, 259, "03 00 00 00 00"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.length << " at " << row.position);
        EXPECT_EQ(
            written([&](BitStreamWriter& w) { Encoder::nonEmptyStringLength(w, row.length); }, row.position),
            row.hex);
        withReaders(octets(row.hex), row.position, [&](BitStreamReader& reader) {
            std::size_t length = 0;
            Decoder::nonEmptyStringLength(reader, length);
            EXPECT_EQ(length, row.length);
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

TEST(PrimitivesTest, NameSurrogatesMarkAbsentParts) {
    withReaders(octets("03 04 05 06 00 07"), 6, [](BitStreamReader& reader) {
        EXPECT_TRUE(Decoder::nameSurrogate(reader) == QualifiedNameEntry(5, 6, 7));
        reader.skip(6);
        EXPECT_TRUE(Decoder::nameSurrogate(reader) ==
                    QualifiedNameEntry(QualifiedNameEntry::ABSENT, QualifiedNameEntry::ABSENT, 8));
    });
}

// The index of an alphabet or algorithm is read twice in a table, the second one counts.
TEST(PrimitivesTest, EncodedStringsOfTables) {
    DocumentVocabulary vocabulary(DocumentVocabulary::VOC_VECTOR);
    for (const auto& [form, text] :
         {std::pair("2F F0 01 12 3F", "123"), {"3F F0 33 00 00 00 05", "5"}, {"3F F0 01 0A 1B", "0A1B"}}) {
        withReaders(octets(form), 2, [&, expected = text](BitStreamReader& reader) {
            std::string value = "old";
            Decoder::encodedCharacterString(reader, value, vocabulary);
            EXPECT_EQ(value, expected);
        });
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
