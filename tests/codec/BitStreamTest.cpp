#include "TestSupport.h"

namespace Tamo::FastInfoset::Test {
namespace {

TEST(BitStreamReader, CrossesOctetsAndBuffers) {
    withReaders(octets("B1 7F 01 02 03 04 05 06 07 08"), [](BitStreamReader& reader) {
        unsigned char narrow = 0;
        EXPECT_TRUE(reader.read(narrow, 6));
        EXPECT_EQ(narrow, 0x2C);
        EXPECT_TRUE(reader.peek(narrow, 3)); // two bits of one octet, one of the next
        EXPECT_EQ(narrow, 0x02);
        EXPECT_EQ(reader.bitPos(), 6);
        reader.skipToByteStart();
        bool bit = true;
        EXPECT_TRUE(reader.read(bit));
        EXPECT_FALSE(bit);
        reader.skip(7);
        EXPECT_EQ(reader.bitPos(), 0);
        unsigned long wide = 0;
        EXPECT_TRUE(reader.read(wide, 64));
        EXPECT_EQ(wide, 0x0102030405060708u);
        EXPECT_FALSE(reader.hasOctet());
    });
}

TEST(BitStreamReader, OctetStringsEndWithTheInput) {
    withReaders("abcdef", [](BitStreamReader& reader) {
        std::string text("old");
        EXPECT_TRUE(reader.read(text, 0));
        EXPECT_EQ(text, "");
        EXPECT_TRUE(reader.read(text, 6)); // exactly at the end
        EXPECT_EQ(text, "abcdef");
        EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing octet string",
                       reader.read(text, 1));
    });
    withReaders("abcdef", [](BitStreamReader& reader) {
        std::string text; // a claim of four gigabytes reserves nothing
        EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing octet string",
                       reader.read(text, 0xFFFFFFFFu));
        EXPECT_LT(text.capacity(), 4096u);
    });
}

TEST(BitStreamReader, TheEndOfEachSource) {
    unsigned char value = 0xFF;
    std::istringstream stream("\xFF");
    BitStreamReader fromStream(stream);
    fromStream.skip(5);
    EXPECT_TRUE(fromStream.read(value, 8)); // bits were kept: zeros follow
    EXPECT_EQ(value, 0xE0);
    std::istringstream empty;
    BitStreamReader fromEmpty(empty);
    EXPECT_FALSE(fromEmpty.read(value, 8));
    EXPECT_TRUE(fromEmpty.eof());
    BitStreamReader fromMemory("\xFF", 1);
    fromMemory.skip(5);
    EXPECT_FAILURE("AssertionViolationException: _pStream", fromMemory.read(value, 8));
    EXPECT_FAILURE("FISParseException: Unexpected end of stream while parsing octet string",
                   fromMemory.skip(4));
    EXPECT_FAILURE("AssertionViolationException: checkInputParams(Utility::SIZEOFCHARINBIT, numBits)",
                   fromMemory.peek(value, 9));
    std::istringstream bad;
    bad.setstate(std::ios_base::badbit);
    BitStreamReader fromBad(bad);
    EXPECT_FAILURE("IOException: error reading stream while parsing Fast Infoset document",
                   fromBad.read(value, 1));
}

TEST(BitStreamWriter, PacksMostSignificantBitFirst) {
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(5u, 3), w.write(1u, 5); }), "A1");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(0x1234u, 16); }), "12 34");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(true), w.write(0x1234u, 16); }), "89 1A 00");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(7u, 3), w.complete(true); }), "FF");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.writeBits(3, true), w.complete(), w.complete(); }), "E0");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(true), w.write(std::string("AB")); }), "A0 A1 00");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(true), w.write(-2L, 64); }),
              "FF FF FF FF FF FF FF FF 00");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(nullptr, 3), w.write(""), w.write(std::string()); }),
              "");
    EXPECT_FAILURE("AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)",
                   written([](BitStreamWriter& w) { w.write(2u, 0); }));
}

TEST(BitStreamWriter, ReportsTheStreamAndDestroysQuietly) {
    BoundedStream full(1);
    BitStreamWriter writer(full, false);
    writer.write(0xABu, 8);
    EXPECT_EQ(full.octets(), "\xAB"); // a complete octet is in the stream at once
    EXPECT_EQ(full.flushes(), 0);
    EXPECT_FAILURE("IOException: error while writing Fast Infoset document to stream", writer.write(1u, 8));
    EXPECT_FAILURE("IOException: error while writing Fast Infoset document to stream", writer.complete());
}

} // namespace
} // namespace Tamo::FastInfoset::Test
