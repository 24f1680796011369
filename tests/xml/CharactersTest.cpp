// UTF-8, which text is checked for many octets at a time, against the decoder of one character.
#include "Tamo/XML/Characters.h"
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace Tamo::XML::Test {
namespace {

// Character by character.
std::size_t findOneByOne(const std::string& text, bool (*isAllowed)(char32_t)) {
    const char* const pEnd = text.data() + text.size();
    for (const char* p = text.data(); p != pEnd;) {
        char32_t c = 0;
        const std::size_t length = Characters::decode(p, pEnd, c);
        if (length == 0 || !isAllowed(c)) {
            return static_cast<std::size_t>(p - text.data());
        }
        p += length;
    }
    return Characters::NONE;
}

void expectFound(const std::string& text) {
    ASSERT_EQ(Characters::findIllFormed(text), findOneByOne(text, [](char32_t) { return true; }))
        << testing::PrintToString(text);
    ASSERT_EQ(Characters::findIllegal(text), findOneByOne(text, Characters::isCharacter))
        << testing::PrintToString(text);
}

TEST(CharactersTest, SequencesOfTwoOctetsAndTheirBounds) {
    const std::string edges = "\x01\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (unsigned int lead = 0; lead < 256; ++lead) {
        for (const char second : edges) {
            for (const char third : edges) {
                const std::string text{static_cast<char>(lead), second, third};
                expectFound(text);
                expectFound(text + "\x80");
                expectFound(text + "\xBF" + "A");
            }
        }
    }
}

TEST(CharactersTest, RandomText) {
    std::mt19937 random(4711);
    const std::string pieces[] = {
        "a", "abcdefgh", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBE", "\t"};
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        while (random() % 24 != 0) {
            text += pieces[random() % std::size(pieces)];
        }
        expectFound(text);
        if (!text.empty()) {
            text[random() % text.size()] = static_cast<char>(random());
            expectFound(text);
        }
    }
}

// Whether all octets are of a kind is found in words, some of which overlap.
TEST(CharactersTest, OneOctetOfAnotherKind) {
    for (std::size_t size = 0; size <= 70; ++size) {
        for (const char fill : {' ', 'a', '\x7F'}) {
            std::string text(size, fill);
            ASSERT_TRUE(Characters::isASCII(text) && Characters::isPlain(text)) << size;
            for (std::size_t at = 0; at < size; ++at) {
                for (const char c : {'\0', '\x1F', '\x80', '\xFF'}) {
                    text[at] = c;
                    ASSERT_FALSE(Characters::isPlain(text)) << size << ' ' << at;
                    ASSERT_EQ(Characters::isASCII(text), c == '\0' || c == '\x1F') << size << ' ' << at;
                }
                text[at] = fill;
            }
        }
    }
}

} // namespace
} // namespace Tamo::XML::Test
