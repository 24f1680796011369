#include "Octets.h"
#include "Tamo/HexBinary.h"
#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

std::string octets(std::string_view hex) {
    std::string digits(hex);
    std::erase(digits, ' ');
    std::string result;
    if (!HexBinary::decode(digits, result)) {
        throw std::invalid_argument("not hexadecimal: " + digits);
    }
    return result;
}

std::string octetsOfBits(std::string digits) {
    digits.resize((digits.size() + 7) / 8 * 8, '0');
    std::string octets;
    for (std::size_t i = 0; i < digits.size(); i += 8) {
        octets.push_back(static_cast<char>(std::stoi(digits.substr(i, 8), nullptr, 2)));
    }
    return octets;
}

std::string literal(std::string_view text) {
    std::string result;
    if (text.size() <= 64) {
        result = static_cast<char>(text.size() - 1);
    } else if (text.size() <= 320) {
        result = {'\x40', static_cast<char>(text.size() - 65)};
    } else {
        const auto rest = static_cast<std::uint32_t>(text.size() - 321);
        result = '\x60';
        for (const int shift : {24, 16, 8, 0}) {
            result += static_cast<char>(rest >> shift);
        }
    }
    return result.append(text);
}

std::string hex(std::string_view octets) {
    std::string result;
    for (const char octet : octets) {
        result += result.empty() ? "" : " ";
        HexBinary::encode(std::string_view(&octet, 1), result);
    }
    return result;
}

} // namespace Tamo::FastInfoset::Test
