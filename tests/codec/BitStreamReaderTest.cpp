#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "TestSupport.h"
#include <bitset>

namespace Tamo::FastInfoset::Test {
namespace {

std::string digitsOf(UInt64 value, int width) {
    return std::bitset<64>(value).to_string().substr(64 - static_cast<std::size_t>(width));
}

// The octets that binary digits stand for, the last one completed with zeros.
std::string octetsOf(std::string digits) {
    digits.resize((digits.size() + 7) / 8 * 8, '0');
    std::string octets;
    for (std::size_t i = 0; i < digits.size(); i += 8) {
        octets.push_back(static_cast<char>(std::stoi(digits.substr(i, 8), nullptr, 2)));
    }
    return octets;
}

// Every width at every bit position, both directions, against a string of digits. The neighbours of the bits
// are set and clear, so that a bit too many shows.
template<class T>
void expectWidths(int widest) {
    for (const UInt64 value : {0xA5C3F01E87695A3Cu, 0x5A3C0FE17896A5C3u, ~UInt64{0}, UInt64{0}}) {
        for (int width = 1; width <= widest; ++width) {
            for (std::size_t start = 0; start < 8; ++start) {
                SCOPED_TRACE(testing::Message() << width << " bits at " << start);
                const std::string form =
                    octetsOf(std::string("10101010").substr(0, start) + digitsOf(value, width) + "1");
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

} // namespace

TEST(BitStreams, EveryWidthAtEveryPosition) {
    expectWidths<unsigned char>(8);
    expectWidths<unsigned short>(16);
    expectWidths<short>(16);
    expectWidths<unsigned int>(32);
    expectWidths<int>(32);
    expectWidths<unsigned long>(64);
    expectWidths<long>(64);
}

TEST(BitStreams, RefillsKeepThePartialOctet) {
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

TEST(BitStreams, SkipsPassTheBuffer) {
    std::istringstream stream(longInput(1030));
    BitStreamReader reader(stream);
    bool bit = false;
    reader.read(bit);
    reader.skip(1023 * 8 + 2);
    EXPECT_EQ(reader.cachedBits(), 5);
    reader.skip(5);
    EXPECT_EQ(reader.cachedBits(), 6 * 8) << "a skip of all the bits refills";
    EXPECT_EQ(reader.bitPos(), 0);
}

TEST(BitStreams, AStreamThatFails) {
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

TEST(BitStreams, WhatTheReaderTolerates) {
    const struct {
        int position;
        const char* hex;
        unsigned int value;
    } rows[] = {{1, "70 00 00", 8257},       // the third prefix bit
                {3, "1F F0 00 00", 263185},  // padding
                {2, "30 F0 00 00", 526369}}; // padding behind the first group
    for (const auto& row : rows) {
        withReaders(octets(row.hex), [&](BitStreamReader& reader) {
            unsigned int value = 0;
            reader.skip(row.position);
            Decoder::integer(reader, value);
            EXPECT_EQ(value, row.value);
        });
    }
    // The index of an alphabet or algorithm is read twice, the second one counts.
    DocumentVocabulary vocabulary(DocumentVocabulary::VOC_VECTOR);
    for (const auto& [form, text] :
         {std::pair("2F F0 01 12 3F", "123"), {"3F F0 33 00 00 00 05", "5"}, {"3F F0 01 0A 1B", "0A1B"}}) {
        withReaders(octets(form), [&, expected = text](BitStreamReader& reader) {
            std::string value = "old";
            reader.skip(2);
            Decoder::encodedCharacterString(reader, value, vocabulary);
            EXPECT_EQ(value, expected);
        });
    }
}

} // namespace Tamo::FastInfoset::Test
