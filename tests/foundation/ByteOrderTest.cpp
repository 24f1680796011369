#include "Tamo/ByteOrder.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

using namespace Tamo;

namespace {

// The big-endian octets of a value, by arithmetic that does not depend on the machine.
template<class T>
void bigEndian(T value, unsigned char* octets) {
    UInt64 bits = 0;
    if constexpr (sizeof(T) == 2) {
        bits = std::bit_cast<UInt16>(value);
    } else if constexpr (sizeof(T) == 4) {
        bits = std::bit_cast<UInt32>(value);
    } else {
        bits = std::bit_cast<UInt64>(value);
    }
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        octets[i] = static_cast<unsigned char>(bits >> 8 * (sizeof(T) - 1 - i));
    }
}

template<class T>
void checkBulk() {
    constexpr std::size_t MAX_COUNT = 67; // longer than any vector and its remainder
    std::vector<T> values(MAX_COUNT);
    for (std::size_t i = 0; i < MAX_COUNT; ++i) {
        values[i] = static_cast<T>(i % 2 == 0 ? std::numeric_limits<T>::lowest() + static_cast<T>(i * 77)
                                              : std::numeric_limits<T>::max() - static_cast<T>(i * 99));
    }
    std::vector<unsigned char> expected(MAX_COUNT * sizeof(T));
    for (std::size_t i = 0; i < MAX_COUNT; ++i) {
        bigEndian(values[i], expected.data() + i * sizeof(T));
    }
    for (std::size_t alignment = 0; alignment < 8; ++alignment) {
        for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(15), MAX_COUNT}) {
            const std::size_t size = count * sizeof(T);
            std::vector<unsigned char> octets(alignment + size + 1, 0xEE);
            ByteOrder::toBigEndianOctets(values.data(), count, octets.data() + alignment);
            EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(size),
                                   octets.begin() + static_cast<std::ptrdiff_t>(alignment)));
            EXPECT_EQ(octets.back(), 0xEE);
            std::vector<T> back(count);
            ByteOrder::fromBigEndianOctets(octets.data() + alignment, count, back.data());
            EXPECT_TRUE(std::equal(back.begin(), back.end(), values.begin()));
        }
    }
}

} // namespace

TEST(ByteOrder, FlipsEveryWidthAndSign) {
    static_assert(ByteOrder::flipBytes(Int16(0x0180)) == Int16(-0x7FFF));
    static_assert(ByteOrder::flipBytes(UInt16(0x12FF)) == 0xFF12);
    static_assert(ByteOrder::flipBytes(Int32(0x010203FE)) == Int32(0xFE030201));
    static_assert(ByteOrder::flipBytes(UInt32(0x80000001)) == 0x01000080U);
    static_assert(ByteOrder::flipBytes(Int64(0x0102030405060780)) == Int64(0x8007060504030201));
    static_assert(ByteOrder::flipBytes(UInt64(0xFEDCBA9876543210)) == 0x1032547698BADCFEU);
    unsigned char octets[4];
    const UInt32 big = ByteOrder::toBigEndian(UInt32(0x01020304));
    std::memcpy(octets, &big, 4);
    EXPECT_EQ(octets[0], 1);
    const UInt32 little = ByteOrder::toLittleEndian(UInt32(0x01020304));
    std::memcpy(octets, &little, 4);
    EXPECT_EQ(octets[0], 4);
    EXPECT_EQ(ByteOrder::fromLittleEndian(little), ByteOrder::fromBigEndian(big));
}

TEST(ByteOrder, BulkConversionWorksAtEveryAlignmentAndCount) {
    checkBulk<Int16>();
    checkBulk<UInt16>();
    checkBulk<Int32>();
    checkBulk<UInt32>();
    checkBulk<Int64>();
    checkBulk<UInt64>();
    checkBulk<float>();
    checkBulk<double>();
}
