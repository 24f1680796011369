#include "TestSupport.h"
#include <bitset>

namespace Tamo::FastInfoset::Test {
namespace {

std::string digitsOf(UInt64 value, int width) {
    return std::bitset<64>(value).to_string().substr(64 - static_cast<std::size_t>(width));
}

// Every width at every bit position, both directions, against a string of digits. The neighbours of the bits
// are set and clear, so that a bit too many shows.
template<class T>
void expectWidths() {
    for (const UInt64 value : {0xA5C3F01E87695A3Cu, 0x5A3C0FE17896A5C3u, ~UInt64{0}, UInt64{0}}) {
        for (int width = 1; width <= static_cast<int>(8 * sizeof(T)); ++width) {
            for (std::size_t start = 0; start < 8; ++start) {
                SCOPED_TRACE(testing::Message() << width << " bits at " << start);
                const std::string form =
                    octetsOfBits(std::string("10101010").substr(0, start) + digitsOf(value, width) + "1");
                EXPECT_EQ(written([&](BitStreamWriter& w) {
                              for (std::size_t i = 0; i < start; ++i) {
                                  w.write(i % 2 == 0);
                              }
                              w.write(static_cast<T>(value), width);
                              w.write(true);
                          }),
                          hex(form));
                BitStreamReader reader(form.data(), form.size());
                T read = 0;
                bool last = false;
                reader.skip(static_cast<int>(start));
                EXPECT_TRUE(reader.read(read, width) && reader.read(last) && last);
                EXPECT_EQ(digitsOf(static_cast<UInt64>(read), width), digitsOf(value, width));
            }
        }
    }
}

// A long input whose period does not fit the buffer.
std::string longInput(std::size_t size) {
    std::string octets(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        octets[i] = static_cast<char>(i * 31 + i / 251);
    }
    return octets;
}

TEST(BitStreamTest, EveryWidthAtEveryPosition) {
    expectWidths<unsigned char>();
    expectWidths<unsigned short>();
    expectWidths<short>();
    expectWidths<unsigned int>();
    expectWidths<int>();
    expectWidths<unsigned long>();
    expectWidths<long>();
}

TEST(BitStreamTest, ReadsAcrossOctetsAndBuffers) {
    withReaders(octets("B1 7F 01 02 03 04 05 06 07 08 61"), 0, [](BitStreamReader& reader) {
        unsigned char narrow = 0;
        bool bit = true;
        EXPECT_TRUE(reader.read(narrow, 6) && narrow == 0x2C);
        EXPECT_TRUE(reader.peek(narrow, 3) && narrow == 0x02); // two bits of one octet, one of the next
        EXPECT_EQ(reader.bitPos(), 6);
        reader.skipToByteStart();
        EXPECT_TRUE(reader.read(bit) && !bit);
        reader.skip(7);
        unsigned long wide = 0;
        EXPECT_TRUE(reader.read(wide, 64) && wide == 0x0102030405060708u);
        std::string text("old");
        EXPECT_TRUE(reader.read(text, 0) && text.empty());
        EXPECT_TRUE(reader.read(text, 1) && text == "a"); // exactly to the end
        EXPECT_FALSE(reader.hasOctet());
        EXPECT_FAILURE(OCTETS_END, reader.read(text, 1));
    });
    withReaders(octets("F6 16 16 2F"), 4, [](BitStreamReader& reader) {
        std::string text;
        EXPECT_TRUE(reader.read(text, 3));
        EXPECT_EQ(text, "aab");
    });
    std::istringstream stream(longInput(1030));
    BitStreamReader reader(stream);
    bool bit = false;
    reader.read(bit);
    reader.skip(1023 * 8 + 2);
    EXPECT_EQ(reader.cachedBits(), 5);
    reader.skip(5);
    EXPECT_EQ(reader.cachedBits(), 6 * 8) << "a skip of all the bits refills";
}

TEST(BitStreamTest, RefillsKeepThePartialOctet) {
    for (const std::size_t size : {1023u, 1024u, 1025u, 3000u}) {
        const std::string input = longInput(size);
        for (const int width : {5, 13, 31, 64}) {
            DribblingStream stream(input);
            BitStreamReader piecewise(stream);
            BitStreamReader whole(input.data(), input.size());
            const auto step = static_cast<UInt64>(width);
            for (UInt64 done = 0; done + step <= size * 8; done += step) {
                unsigned long value = 0;
                unsigned long expected = 0;
                ASSERT_TRUE(piecewise.read(value, width) && whole.read(expected, width));
                ASSERT_EQ(value, expected) << size << " octets, bit " << done;
                ASSERT_EQ(piecewise.position(), done + step);
            }
        }
    }
    std::istringstream stream(std::string(1025, '\xFF'));
    BitStreamReader reader(stream);
    std::string dropped;
    unsigned char value = 0;
    reader.read(dropped, 1024);
    reader.read(value, 5);
    EXPECT_TRUE(reader.read(value, 8));
    EXPECT_EQ(value, 0xE0) << "bits behind the end are zero although the buffer held others there";
}

TEST(BitStreamTest, TheEndOfEachSource) {
    unsigned char value = 0xFF;
    std::istringstream empty;
    BitStreamReader fromEmpty(empty);
    EXPECT_FALSE(fromEmpty.read(value, 8));
    EXPECT_TRUE(fromEmpty.eof());
    BitStreamReader fromMemory("\xFF", 1);
    fromMemory.skip(5);
    EXPECT_FAILURE(MEMORY_END, fromMemory.read(value, 8));
    EXPECT_FAILURE(OCTETS_END, fromMemory.skip(4));
    EXPECT_FAILURE("AssertionViolationException: checkInputParams(Utility::SIZEOFCHARINBIT, numBits)",
                   fromMemory.peek(value, 9));
    const char* const failure = "IOException: error reading stream while parsing Fast Infoset document";
    for (const std::size_t failAfter : {0u, 1024u}) {
        for (const bool bitwise : {true, false}) {
            DribblingStream stream(longInput(2000), failAfter);
            BitStreamReader reader(stream);
            std::string octets;
            bool bit = false;
            reader.read(octets, failAfter);
            EXPECT_FAILURE(failure, bitwise ? reader.read(bit) : reader.read(octets, 1));
        }
    }
}

TEST(BitStreamTest, WritesOctetsAndFills) {
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(7u, 3), w.complete(true); }), "FF");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.writeBits(3, true), w.complete(), w.complete(); }), "E0");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(true), w.write(std::string("AB")); }), "A0 A1 00");
    EXPECT_EQ(written([](BitStreamWriter& w) { w.write(nullptr, 3), w.write(""), w.write(std::string()); }),
              "");
    EXPECT_FAILURE("AssertionViolationException: checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits)",
                   written([](BitStreamWriter& w) { w.write(2u, 0); }));
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
