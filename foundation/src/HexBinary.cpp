#include "Tamo/HexBinary.h"
#include <array>

namespace Tamo {

namespace {

constexpr unsigned char NO_DIGIT = 0xFF;

// The value of every hexadecimal digit.
constexpr auto DIGIT_VALUES = [] {
    std::array<unsigned char, 256> values{};
    values.fill(NO_DIGIT);
    for (unsigned char i = 0; i < 10; ++i) {
        values[static_cast<std::size_t>('0' + i)] = i;
    }
    for (unsigned char i = 0; i < 6; ++i) {
        values[static_cast<std::size_t>('A' + i)] = values[static_cast<std::size_t>('a' + i)] =
            static_cast<unsigned char>(10 + i);
    }
    return values;
}();

unsigned digitValue(char c) noexcept {
    return DIGIT_VALUES[static_cast<unsigned char>(c)];
}

} // namespace

void HexBinary::encode(std::string_view octets, std::string& text, Digits digits) {
    const char* const letters = digits == Digits::UPPER_CASE ? "0123456789ABCDEF" : "0123456789abcdef";
    const std::size_t before = text.size();
    text.resize(before + 2 * octets.size());
    char* pText = text.data() + before;
    for (const char octet : octets) {
        const unsigned value = static_cast<unsigned char>(octet);
        *pText++ = letters[value >> 4];
        *pText++ = letters[value & 15];
    }
}

bool HexBinary::decode(std::string_view text, std::string& octets) {
    const std::size_t before = octets.size();
    char digit = 0;
    if (text.size() % 2 == 0 && decodePiece(text, octets, digit)) {
        return true;
    }
    octets.resize(before);
    return false;
}

bool HexBinary::decodedSize(std::string_view text, std::size_t& size) noexcept {
    if (text.size() % 2 != 0) {
        return false;
    }
    for (const char c : text) {
        if (digitValue(c) == NO_DIGIT) {
            return false;
        }
    }
    size = text.size() / 2;
    return true;
}

bool HexBinary::decodePiece(std::string_view text, std::string& octets, char& digit) {
    const std::size_t before = octets.size();
    octets.resize(before + text.size() / 2 + 1);
    char* const pBegin = octets.data() + before;
    char* pOctet = pBegin;
    bool valid = true;
    for (std::size_t i = 0; i < text.size();) {
        const char first = digit != 0 ? digit : text[i++];
        const unsigned high = digitValue(first);
        if (i == text.size() && high != NO_DIGIT) {
            digit = first;
            break;
        }
        const unsigned low = i < text.size() ? digitValue(text[i++]) : 0;
        if ((high | low) > 15) {
            valid = false;
            break;
        }
        digit = 0;
        *pOctet++ = static_cast<char>(high << 4 | low);
    }
    octets.resize(before + static_cast<std::size_t>(pOctet - pBegin));
    return valid;
}

} // namespace Tamo
