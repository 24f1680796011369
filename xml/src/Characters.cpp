#include "Tamo/XML/Characters.h"
#include "Tamo/Export.h"

namespace Tamo::XML {

namespace {

/// NameStartChar of XML 1.0 (fifth edition) beyond ASCII.
bool isNameStart(char32_t c) noexcept {
    return (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) || (c >= 0x370 && c <= 0x1FFF && c != 0x37E) ||
           c == 0x200C || c == 0x200D || (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
           (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) || (c >= 0xFDF0 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0xEFFFF);
}

/// NameChar of XML 1.0 (fifth edition) beyond ASCII.
bool isNameCharacter(char32_t c) noexcept {
    return isNameStart(c) || c == 0xB7 || (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
}

} // namespace

std::size_t Characters::decode(const char* p, const char* pEnd, char32_t& character) noexcept {
    const auto octet = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(p[i])); };
    const auto left = static_cast<std::size_t>(pEnd - p);
    const char32_t lead = octet(0);
    if (lead < 0x80) {
        character = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0 && left >= 2 && (octet(1) & 0xC0) == 0x80) {
        character = (lead & 0x1F) << 6 | (octet(1) & 0x3F);
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0 && left >= 3 && (octet(1) & 0xC0) == 0x80 && (octet(2) & 0xC0) == 0x80) {
        character = (lead & 0x0F) << 12 | (octet(1) & 0x3F) << 6 | (octet(2) & 0x3F);
        return character >= 0x800 && (character < 0xD800 || character > 0xDFFF) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead < 0xF5 && left >= 4 && (octet(1) & 0xC0) == 0x80 && (octet(2) & 0xC0) == 0x80 &&
        (octet(3) & 0xC0) == 0x80) {
        character =
            (lead & 0x07) << 18 | (octet(1) & 0x3F) << 12 | (octet(2) & 0x3F) << 6 | (octet(3) & 0x3F);
        return character >= 0x10000 && character <= 0x10FFFF ? 4 : 0;
    }
    return 0;
}

// The first octet that is not part of a character that is allowed. Eight octets at a time are passed over
// while mayStop() holds for none of them.
template<class MayStop, class IsAllowed>
std::size_t Characters::find(std::string_view text, const MayStop& mayStop,
                                    const IsAllowed& isAllowed) noexcept {
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    while (p != pEnd) {
        if (static_cast<std::size_t>(pEnd - p) >= WORD && !mayStop(wordAt(p))) {
            p += WORD;
            continue;
        }
        // A word's worth by itself, so that text with such characters is not looked at twice as a rule.
        const char* const pNext = static_cast<std::size_t>(pEnd - p) >= WORD ? p + WORD : pEnd;
        do {
            char32_t c = 0;
            const std::size_t length = decode(p, pEnd, c);
            if (length == 0 || !isAllowed(c)) {
                return static_cast<std::size_t>(p - text.data());
            }
            p += length;
        } while (p < pNext);
    }
    return NONE;
}

std::size_t Characters::findIllFormed(std::string_view text) noexcept {
    return find(text, isBeyondASCII, [](char32_t) { return true; });
}

std::size_t Characters::findIllegal(std::string_view text) noexcept {
    return find(text, mayBeSpecial, isCharacter);
}

bool Characters::isOtherNCName(std::string_view name) noexcept {
    const char* const pEnd = name.data() + name.size();
    for (const char* p = name.data(); p != pEnd;) {
        char32_t c = 0;
        const std::size_t length = decode(p, pEnd, c);
        const bool isFirst = p == name.data();
        if (length == 0 || (length == 1 && !(classOf(*p) & (isFirst ? NAME_START : NAME))) ||
            (length > 1 && !(isFirst ? isNameStart(c) : isNameCharacter(c)))) {
            return false;
        }
        p += length;
    }
    return true;
}

} // namespace Tamo::XML
