#ifndef TAMO_XML_CHARACTERS_H
#define TAMO_XML_CHARACTERS_H

#include "Tamo/Export.h"
#include <array>
#include <cstddef>
#include <cstdint>
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

    static std::uint8_t classOf(char c) noexcept { return CLASSES[static_cast<unsigned char>(c)]; }
    static bool isOtherNCName(std::string_view name) noexcept;
};

} // namespace Tamo::XML

#endif
