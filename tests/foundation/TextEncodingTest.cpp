#include "Tamo/TextConverter.h"
#include "Tamo/TextIterator.h"
#include "Tamo/UTF16Encoding.h"
#include "Tamo/UTF8Encoding.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

using namespace Tamo;

namespace {

const UTF8Encoding UTF8;
const UTF16Encoding UTF16BE;
const UTF16Encoding UTF16LE(UTF16Encoding::LITTLE_ENDIAN_ORDER);

// Octets that stand for code points, -1 for every invalid sequence: by iterator, converter and, for UTF-8,
// validation.
void check(const TextEncoding& encoding, const std::string& octets, const std::vector<int>& codePoints) {
    SCOPED_TRACE(testing::PrintToString(octets));
    std::vector<int> walked;
    std::string expected;
    const TextIterator end(octets);
    for (TextIterator it(octets, encoding); it != end && walked.size() <= octets.size(); ++it) {
        unsigned char sequence[TextEncoding::MAX_SEQUENCE_LENGTH];
        const std::size_t size = UTF8.encode(*it < 0 ? '?' : *it, sequence);
        expected.append(reinterpret_cast<const char*>(sequence), size);
        walked.push_back(*it);
    }
    EXPECT_EQ(walked, codePoints);
    std::string converted("<");
    const std::string longer = octets + "\x80\x80\x80"; // what follows the text must not be looked at
    EXPECT_EQ(
        TextConverter(encoding, UTF8).convert(std::string_view(longer).substr(0, octets.size()), converted),
        std::count(codePoints.begin(), codePoints.end(), -1));
    EXPECT_EQ(converted, "<" + expected);
    if (&encoding == &UTF8) {
        std::size_t valid = 0;
        for (; valid < octets.size() && octets[valid] == expected[valid]; ++valid) {
        }
        const std::size_t behind = valid == octets.size() ? 8 : 0;
        EXPECT_EQ(UTF8Encoding::validLength("16 octets before" + octets + "8 behind"), 16 + valid + behind);
    }
}

} // namespace

TEST(TextEncoding, UTF8TakesExactlyTheWellFormedSequences) {
    check(UTF8, "", {});
    check(UTF8, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF", {0x7F, 0x80, 0x7FF, 0x800, 0xD7FF});
    check(UTF8, "\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0xE000, 0x10000, 0x10FFFF});
    // Every octet of these is an invalid sequence: lone, overlong, surrogate, above U+10FFFF, unused.
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF",
                             "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\xFE\xFF"}) {
        check(UTF8, text, std::vector<int>(std::string(text).size(), -1));
    }
    // Cut off, alone and before a neighbour that must survive.
    for (const std::string text : {"\xC3", "\xE2\x82", "\xF0\x9F\x98"}) {
        check(UTF8, text, {-1});
        check(UTF8, "a" + text + "(" + text + "\xE2\x82\xAC", {'a', -1, '(', -1, 0x20AC});
    }
}

TEST(TextEncoding, UTF16TakesExactlyTheWellFormedSequencesInBothOrders) {
    const std::pair<std::string, std::vector<int>> rows[] = {
        {std::string("\xD8\0\xDC\0\xDB\xFF\xDF\xFF", 8), {0x10000, 0x10FFFF}},
        {std::string("\xDC\0\0a", 4), {-1, 'a'}},              // low surrogate alone
        {std::string("\xD8\0\0a", 4), {-1, 'a'}},              // high surrogate alone
        {std::string("\xD8\0\xD8\0\xDC\0", 6), {-1, 0x10000}}, // two high ones
        {std::string("\xD8\0", 2), {-1}},                      // cut off
        {std::string("\xD8\0\xDC", 3), {-1, -1}},              // cut off in the second unit
        {std::string("\0a\0", 3), {'a', -1}}};                 // odd octet
    for (auto [octets, codePoints] : rows) {
        check(UTF16BE, octets, codePoints);
        for (std::size_t i = 0; i + 1 < octets.size(); i += 2) {
            std::swap(octets[i], octets[i + 1]);
        }
        check(UTF16LE, octets, codePoints);
    }
}

TEST(TextEncoding, EveryCodePointSurvivesAndNoOtherIsEncoded) {
    const TextEncoding* const encodings[] = {&UTF8, &UTF16BE, &UTF16LE};
    for (const TextEncoding* pEncoding : encodings) {
        int wrong = 0;
        for (int c = -2; c <= 0x110001; ++c) {
            unsigned char octets[TextEncoding::MAX_SEQUENCE_LENGTH];
            const bool valid = c >= 0 && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
            const std::size_t size = pEncoding->encode(c, octets);
            std::size_t length = 0;
            wrong += (size > 0) != valid ||
                     (valid && (pEncoding->decode(octets, size, length) != c || length != size));
        }
        EXPECT_EQ(wrong, 0) << pEncoding->canonicalName();
    }
}
