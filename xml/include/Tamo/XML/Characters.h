#ifndef TAMO_XML_CHARACTERS_H
#define TAMO_XML_CHARACTERS_H

#include "Tamo/Export.h"
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Tamo::XML {

/// What XML 1.0 allows in text and in names, and what UTF-8 is. Stateless; thread-safe; all text is UTF-8.
class TAMO_API Characters {
public:
    /// What is found where all is well.
    static constexpr std::size_t NONE = std::string_view::npos;

    /// The length in octets of the well-formed UTF-8 sequence at p, 1 to 4, or 0; gives the character. There
    /// is at least one octet before pEnd.
    static std::size_t decode(const char* p, const char* pEnd, char32_t& character) noexcept;

    /// Whether XML has the character (Char).
    static bool isCharacter(char32_t c) noexcept {
        return c >= 0x20 ? c < 0xD800 || (c > 0xDFFF && c < 0xFFFE) || (c > 0xFFFF && c <= 0x10FFFF)
                         : c == '\t' || c == '\n' || c == '\r';
    }

    /// Whether all octets are ASCII; no call, for texts that are short as a rule.
    static bool isASCII(std::string_view text) noexcept { return !hasAny(text, beyondASCII); }

    /// Whether all octets are ASCII and none is a control character; the same.
    static bool isPlain(std::string_view text) noexcept { return !hasAny(text, special); }

    /// The first octet of text that is not part of well-formed UTF-8, or NONE.
    static std::size_t findIllFormed(std::string_view text) noexcept;

    /// The first octet of text that is not part of a character that XML has, or NONE.
    static std::size_t findIllegal(std::string_view text) noexcept;

    /// Whether name is a name without colon (NCName).
    static bool isNCName(std::string_view name) noexcept {
        const char* p = name.data();
        const char* const pEnd = p + name.size();
        if (p == pEnd || !(classOf(*p) & NAME_START)) {
            return p != pEnd && isOtherNCName(name);
        }
        do {
            ++p;
        } while (p != pEnd && (classOf(*p) & NAME));
        return p == pEnd || isOtherNCName(name);
    }

private:
    enum Class : std::uint8_t { NAME_START = 1, NAME = 2 }; // of ASCII

    static constexpr std::array<std::uint8_t, 256> CLASSES = [] {
        std::array<std::uint8_t, 256> classes{};
        for (std::size_t c = 0; c < 128; ++c) {
            const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
            const bool isOther = (c >= '0' && c <= '9') || c == '-' || c == '.';
            classes[c] = static_cast<std::uint8_t>(isLetter ? NAME_START | NAME : isOther ? NAME : 0);
        }
        return classes;
    }();

    static constexpr std::size_t WORD = sizeof(std::uint64_t);
    static constexpr std::uint64_t ONES = 0x0101010101010101;
    static constexpr std::uint64_t HIGH_BITS = 0x8080808080808080;

    template<class Word = std::uint64_t>
    static std::uint64_t wordAt(const char* p) noexcept {
        Word word = 0;
        std::memcpy(&word, p, sizeof(word));
        return word;
    }

    // Not 0 where one of eight octets is beyond ASCII.
    static std::uint64_t beyondASCII(std::uint64_t word) noexcept { return word & HIGH_BITS; }

    // Not 0 where one of eight octets is beyond ASCII or a control character, and sometimes else.
    static std::uint64_t special(std::uint64_t word) noexcept {
        return (word | (word - 0x20 * ONES)) & HIGH_BITS;
    }

    // Whether find() finds some octet, eight at a time; the last ones may be looked at twice.
    template<class Find>
    static TAMO_ALWAYS_INLINE bool hasAny(std::string_view text, const Find& find) noexcept {
        const char* const p = text.data();
        const std::size_t size = text.size();
        if (size > 2 * WORD) {
            std::size_t i = 0;
            for (; i + 4 * WORD < size; i += 4 * WORD) {
                if ((find(wordAt(p + i)) | find(wordAt(p + i + WORD)) | find(wordAt(p + i + 2 * WORD)) |
                     find(wordAt(p + i + 3 * WORD))) != 0) {
                    return true;
                }
            }
            for (; i + 2 * WORD < size; i += WORD) {
                if (find(wordAt(p + i)) != 0) {
                    return true;
                }
            }
            return (find(wordAt(p + size - 2 * WORD)) | find(wordAt(p + size - WORD))) != 0;
        }
        if (size >= WORD) {
            return (find(wordAt(p)) | find(wordAt(p + size - WORD))) != 0;
        }
        if (size >= WORD / 2) {
            return find(wordAt<std::uint32_t>(p) | wordAt<std::uint32_t>(p + size - WORD / 2) << 32) != 0;
        }
        std::uint64_t word = 0x20 * ONES;
        for (std::size_t i = 0; i < size; ++i) {
            word = word << 8 | static_cast<unsigned char>(p[i]);
        }
        return find(word) != 0;
    }

    static std::uint8_t classOf(char c) noexcept { return CLASSES[static_cast<unsigned char>(c)]; }
    static bool isWellFormed(std::string_view text) noexcept;
    template<class IsAllowed>
    static std::size_t find(std::string_view text, const IsAllowed& isAllowed) noexcept;
    static bool isOtherNCName(std::string_view name) noexcept;
};

} // namespace Tamo::XML

#endif
