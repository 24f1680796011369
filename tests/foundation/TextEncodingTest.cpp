#include "Tamo/TextConverter.h"
#include "Tamo/TextIterator.h"
#include "Tamo/UTF16Encoding.h"
#include "Tamo/UTF8Encoding.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

using namespace Tamo;

namespace {

using CodePoints = std::vector<int>;

struct Row {
    std::string octets;
    CodePoints codePoints; // -1 for every invalid sequence
};

// One row through iterator, converter (to the encoding itself and to the other) and, for UTF-8, validation.
void check(const TextEncoding& encoding, const Row& row) {
    SCOPED_TRACE(testing::PrintToString(row.octets));
    CodePoints walked;
    TextIterator it(row.octets, encoding);
    const TextIterator end(row.octets);
    EXPECT_TRUE(it.end() == end);
    while (it != end && walked.size() <= row.octets.size()) {
        walked.push_back(*it++);
    }
    EXPECT_EQ(walked, row.codePoints);

    const auto invalid = std::count(row.codePoints.begin(), row.codePoints.end(), -1);
    const UTF8Encoding utf8;
    const UTF16Encoding utf16;
    std::string same("<");
    std::string wide;
    std::string narrow;
    EXPECT_EQ(TextConverter(encoding, encoding).convert(row.octets, same), invalid);
    EXPECT_EQ(TextConverter(encoding, utf16, 0x1F600).convert(row.octets, wide), invalid);
    EXPECT_EQ(TextConverter(utf16, utf8).convert(wide, narrow), 0);
    if (invalid == 0) {
        EXPECT_EQ(same, "<" + row.octets);
    }
    EXPECT_TRUE(UTF8Encoding::isValid(narrow));
    EXPECT_EQ(
        std::count(narrow.begin(), narrow.end(), '\xF0') -
            std::count_if(walked.begin(), walked.end(), [](int c) { return c >= 0x10000 && c < 0x40000; }),
        invalid)
        << "one replacement for each invalid sequence";
    if (dynamic_cast<const UTF8Encoding*>(&encoding)) {
        EXPECT_EQ(UTF8Encoding::isValid(row.octets), invalid == 0);
        const std::string padded = "sixteen octets! " + row.octets;
        std::size_t valid = 16;
        for (TextIterator good(row.octets, encoding); good != end && *good >= 0; ++good) {
            unsigned char sequence[TextEncoding::MAX_SEQUENCE_LENGTH];
            valid += encoding.encode(*good, sequence);
        }
        EXPECT_EQ(UTF8Encoding::validLength(padded), valid);
    }
}

} // namespace

TEST(UTF8Encoding, TakesExactlyTheWellFormedSequences) {
    const Row rows[] = {
        {"", {}},
        {std::string("\0\x7F", 2), {0, 0x7F}},
        {"\xC2\x80\xDF\xBF", {0x80, 0x7FF}},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", {0x800, 0xD7FF, 0xE000, 0xFFFF}},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0x10000, 0x10FFFF}},
        {"\x80", {-1}},
        {"a\xBF"
         "b",
         {'a', -1, 'b'}},
        {"\xC0\x80", {-1, -1}},                                       // overlong
        {"\xC1\xBF", {-1, -1}},                                       // overlong
        {"\xE0\x9F\xBF", {-1, -1, -1}},                               // overlong
        {"\xF0\x8F\xBF\xBF", {-1, -1, -1, -1}},                       // overlong
        {"\xED\xA0\x80", {-1, -1, -1}},                               // surrogate
        {"\xED\xBF\xBF", {-1, -1, -1}},                               // surrogate
        {"\xF4\x90\x80\x80", {-1, -1, -1, -1}},                       // above U+10FFFF
        {"\xF5\xFE\xFF", {-1, -1, -1}},                               // never occur
        {"\xC3", {-1}},                                               // cut off
        {"\xE2\x82", {-1}},                                           // cut off
        {"\xF0\x9F\x98", {-1}},                                       // cut off
        {"\xC3(\xE2\x82(\xF0\x9F\x98(", {-1, '(', -1, '(', -1, '('}}, // the neighbour survives
        {"\xE2\x82\xE2\x82\xAC", {-1, 0x20AC}},
    };
    for (const Row& row : rows) {
        check(UTF8Encoding(), row);
    }
}

TEST(UTF16Encoding, TakesExactlyTheWellFormedSequencesInBothOrders) {
    const Row rows[] = {
        {std::string("\0a\x20\xAC", 4), {'a', 0x20AC}},
        {std::string("\xD7\xFF\xE0\0\xFF\xFF", 6), {0xD7FF, 0xE000, 0xFFFF}},
        {std::string("\xD8\0\xDC\0\xDB\xFF\xDF\xFF", 8), {0x10000, 0x10FFFF}},
        {std::string("\xDC\0\0a", 4), {-1, 'a'}},              // low surrogate alone
        {std::string("\xD8\0\0a", 4), {-1, 'a'}},              // high surrogate alone
        {std::string("\xD8\0\xD8\0\xDC\0", 6), {-1, 0x10000}}, // two high ones
        {std::string("\xD8\0", 2), {-1}},                      // cut off
        {std::string("\xD8\0\xDC", 3), {-1, -1}},              // cut off in the second unit
        {std::string("\0a\0", 3), {'a', -1}},                  // odd octet
    };
    for (Row row : rows) {
        check(UTF16Encoding(), row);
        for (std::size_t i = 0; i + 1 < row.octets.size(); i += 2) {
            std::swap(row.octets[i], row.octets[i + 1]);
        }
        check(UTF16Encoding(UTF16Encoding::LITTLE_ENDIAN_ORDER), row);
    }
}

TEST(TextEncoding, EveryCodePointSurvivesAndNoOtherIsEncoded) {
    const UTF8Encoding utf8;
    const UTF16Encoding big;
    const UTF16Encoding little(UTF16Encoding::LITTLE_ENDIAN_ORDER);
    EXPECT_STREQ(utf8.canonicalName(), "UTF-8");
    EXPECT_STREQ(big.canonicalName(), "UTF-16BE");
    EXPECT_STREQ(little.canonicalName(), "UTF-16LE");
    for (const TextEncoding* pEncoding :
         {static_cast<const TextEncoding*>(&utf8), static_cast<const TextEncoding*>(&big),
          static_cast<const TextEncoding*>(&little)}) {
        int wrong = 0;
        for (int codePoint = -2; codePoint <= 0x110001; ++codePoint) {
            unsigned char octets[TextEncoding::MAX_SEQUENCE_LENGTH];
            const bool valid =
                codePoint >= 0 && codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
            const std::size_t size = pEncoding->encode(codePoint, octets);
            std::size_t length = 0;
            if ((size > 0) != valid ||
                (valid && (pEncoding->decode(octets, size, length) != codePoint || length != size))) {
                ++wrong;
            }
        }
        EXPECT_EQ(wrong, 0) << pEncoding->canonicalName();
    }
}
