#include "Tamo/ByteOrder.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Tamo;

namespace {

template<class T>
void checkBulk() {
    // Longer than any vector and its remainder; no octet equals its neighbours.
    std::string octets(67 * sizeof(T), '\0');
    std::generate(octets.begin(), octets.end(), [i = 1]() mutable { return static_cast<char>(i += 37); });
    std::string expected(octets);
    for (std::size_t i = 0; std::endian::native == std::endian::little && i < 67; ++i) {
        std::reverse(&expected[i * sizeof(T)], &expected[i * sizeof(T)] + sizeof(T));
    }
    for (const std::size_t count : {0U, 1U, 15U, 67U}) {
        std::vector<T> values(count + 1);
        std::memcpy(values.data(), octets.data(), count * sizeof(T));
        for (std::size_t alignment = 0; alignment < 8; ++alignment) {
            std::string written(alignment + count * sizeof(T) + 1, '#');
            ByteOrder::toBigEndianOctets(values.data(), count, written.data() + alignment);
            EXPECT_EQ(written.substr(alignment), expected.substr(0, count * sizeof(T)) + "#");
            std::vector<T> back(count + 1);
            ByteOrder::fromBigEndianOctets(written.data() + alignment, count, back.data());
            EXPECT_EQ(std::memcmp(back.data(), values.data(), back.size() * sizeof(T)), 0);
        }
    }
}

} // namespace

TEST(ByteOrder, FlipsEveryWidthAndSign) {
    EXPECT_EQ(ByteOrder::flipBytes(Int16(0x0180)), Int16(-0x7FFF));
    EXPECT_EQ(ByteOrder::flipBytes(UInt16(0x12FF)), 0xFF12);
    EXPECT_EQ(ByteOrder::flipBytes(Int32(0x010203FE)), Int32(0xFE030201));
    EXPECT_EQ(ByteOrder::flipBytes(UInt32(0x80000001)), 0x01000080U);
    EXPECT_EQ(ByteOrder::flipBytes(Int64(0x0102030405060780)), Int64(0x8007060504030201));
    EXPECT_EQ(ByteOrder::flipBytes(UInt64(0xFEDCBA9876543210)), 0x1032547698BADCFEU);
    const UInt32 pair[] = {ByteOrder::toBigEndian(0x01020304U), ByteOrder::toLittleEndian(0x01020304U)};
    EXPECT_EQ(std::memcmp(pair, "\1\2\3\4\4\3\2\1", 8), 0);
    EXPECT_EQ(ByteOrder::fromLittleEndian(pair[1]), ByteOrder::fromBigEndian(pair[0]));
}

TEST(ByteOrder, BulkConversionWorksAtEveryAlignmentAndCount) {
    checkBulk<Int16>();
    checkBulk<UInt32>();
    checkBulk<Int64>();
    checkBulk<float>();
    checkBulk<double>();
}
