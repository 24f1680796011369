#include "LegalStrings.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

using XML::Characters;

void LegalStrings::requireOtherText(const char* what, std::string_view text) {
    const std::size_t place = Characters::findIllegal(text);
    if (place != Characters::NONE) [[unlikely]] {
        refuseText(what, text, place);
    }
}

void LegalStrings::requireSomeText(const char* what, std::string_view text) {
    if (text.empty()) {
        throw FISEncodingException(std::string("Cannot write ") + what + ": it is empty");
    }
    requireText(what, text);
}

void LegalStrings::refuseText(const char* what, std::string_view text, std::size_t place) {
    char32_t character = 0;
    const bool isWellFormed =
        Characters::decode(text.data() + place, text.data() + text.size(), character) != 0;
    throw FISEncodingException(std::string("Cannot write ") + what + ": " +
                               (isWellFormed ? "no character of XML" : "ill-formed UTF-8") + " at octet " +
                               std::to_string(place) + ", " + shown(text.substr(place)));
}

void LegalStrings::refuseSize(const char* what, std::size_t size) {
    throw FISEncodingException(std::string("Cannot write ") + what + ": it has " + std::to_string(size) +
                               " octets, and " + std::to_string(Forms::LengthAt6::MOST) +
                               " are the most that all lengths can tell (X.891, C.22 to C.24)");
}

void LegalStrings::refuseName(const char* what, std::string_view name) {
    throw FISEncodingException(std::string("Cannot write ") + what + ": " + shown(name) +
                               " is no name without colon (NCName)");
}

std::string LegalStrings::shown(std::string_view text) {
    constexpr std::size_t MOST = 40;
    constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string result = "\"";
    for (const char c : text.substr(0, MOST)) {
        const auto octet = static_cast<unsigned char>(c);
        if (octet >= 0x20 && octet < 0x7F) {
            result += c;
        } else {
            result += {'\\', 'x', DIGITS[octet >> 4], DIGITS[octet & 0x0F]};
        }
    }
    return result += text.size() > MOST ? "...\"" : "\"";
}

} // namespace Tamo::FastInfoset
