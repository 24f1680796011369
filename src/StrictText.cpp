#include "StrictText.h"
#include "Forms.h"
#include "Tamo/UTF8Encoding.h"
#include <bit>
#include <set>

namespace Tamo::FastInfoset {

namespace {

using XML::Characters;

void append(std::string& text, char32_t character) {
    unsigned char sequence[8];
    const std::size_t length = UTF8Encoding().encode(static_cast<int>(character), sequence);
    text.append(reinterpret_cast<const char*>(sequence), length);
}

// Refuses at one of the octets that were read last.
[[noreturn]] void refuseAt(const BitStreamReader& reader, std::size_t size, std::size_t i,
                           const std::string& what, const char* clause) {
    Refusal::atOctet(reader.position() / 8 - size + i, what, clause);
}

} // namespace

void StrictText::requireWellFormed(const BitStreamReader& reader, std::string_view text) {
    const std::size_t i = Characters::findIllFormed(text);
    if (i != Characters::NONE) {
        refuseAt(reader, text.size(), i, "text that is not well-formed UTF-8", "7.17.3");
    }
}

void StrictText::decodeUTF16(const BitStreamReader& reader, std::string_view octets, std::string& text) {
    text.clear();
    const auto unitAt = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(octets[i]) << 8 |
                                     static_cast<unsigned char>(octets[i + 1]));
    };
    constexpr const char* WHAT = "text that is not well-formed UTF-16";
    for (std::size_t i = 0; i < octets.size();) {
        if (octets.size() - i < 2) {
            refuseAt(reader, octets.size(), i, WHAT, "7.17.4");
        }
        char32_t c = unitAt(i);
        std::size_t length = 2;
        if (c >= 0xD800 && c <= 0xDFFF) {
            const char32_t low = c < 0xDC00 && octets.size() - i >= 4 ? unitAt(i + 2) : 0;
            if (low < 0xDC00 || low > 0xDFFF) {
                refuseAt(reader, octets.size(), i, WHAT, "7.17.4");
            }
            c = 0x10000 + ((c - 0xD800) << 10 | (low - 0xDC00));
            length = 4;
        }
        append(text, c);
        i += length;
    }
}

void StrictText::decodeAlphabet(const BitStreamReader& reader, std::string_view octets,
                                const RestrictedAlphabet& alphabet, std::string& text) {
    const std::size_t characters = alphabet.size();
    if (characters == 0) {
        refuseAt(reader, octets.size(), 0, "a string in a reserved restricted alphabet", "8.2");
    }
    const auto codeBits = static_cast<unsigned int>(std::bit_width(characters));
    const UInt64 filling = (UInt64{1} << codeBits) - 1;
    text.clear();
    UInt64 bits = 0;
    unsigned int count = 0;
    std::size_t i = 0;
    for (; i < octets.size(); ++i) {
        bits = bits << 8 | static_cast<unsigned char>(octets[i]);
        count += 8;
        while (count >= codeBits) {
            const UInt64 code = bits >> (count - codeBits) & filling;
            if (code == filling && i + 1 == octets.size() && count < 8) {
                break;
            }
            if (code >= characters) {
                refuseAt(reader, octets.size(), i, "a code that the restricted alphabet does not have",
                         "7.17.6");
            }
            append(text, alphabet.indexToChar(static_cast<int>(code)));
            count -= codeBits;
        }
    }
    const UInt64 rest = (UInt64{1} << count) - 1;
    if ((bits & rest) != rest) {
        refuseAt(reader, octets.size(), octets.size() - 1,
                 "the end of a string in a restricted alphabet that is not filled with ones", "7.17.6");
    }
}

void StrictText::requireAlphabet(const BitStreamReader& reader, std::string_view characters) {
    requireUTF8(reader, characters);
    std::set<char32_t> seen;
    const char* const pEnd = characters.data() + characters.size();
    for (const char* p = characters.data(); p != pEnd;) {
        char32_t c = 0;
        const std::size_t i = static_cast<std::size_t>(p - characters.data());
        p += Characters::decode(p, pEnd, c);
        if (!seen.insert(c).second) {
            refuseAt(reader, characters.size(), i, "a restricted alphabet that has a character twice", "8.2");
        }
    }
    Refusal::unless(seen.size() >= 2 && seen.size() <= Forms::MOST_INTEGER, reader,
                    "a restricted alphabet of " + std::to_string(seen.size()) + " characters", "8.2");
}

} // namespace Tamo::FastInfoset
