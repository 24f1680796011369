#include "Octets.h"
#include "Tamo/HexBinary.h"
#include <algorithm>
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

std::string hex(std::string_view octets) {
    std::string result;
    for (const char octet : octets) {
        result += result.empty() ? "" : " ";
        HexBinary::encode(std::string_view(&octet, 1), result);
    }
    return result;
}

} // namespace Tamo::FastInfoset::Test
