#include "Tamo/UUID.h"
#include "Tamo/Exception.h"
#include "Tamo/HexBinary.h"
#include <algorithm>
#include <cstddef>

namespace Tamo {

namespace {

constexpr std::size_t TEXT_LENGTH = 36;

// Where the hyphens stand in the text.
constexpr std::array<std::size_t, 4> HYPHENS{8, 13, 18, 23};

int digitValue(char c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

UUID::UUID(const std::string& text) {
    if (!tryParse(text)) {
        throw SyntaxException("Not a UUID", "\"" + text + "\"");
    }
}

UUID UUID::fromOctets(const unsigned char* octets) noexcept {
    UUID result;
    std::copy_n(octets, result._octets.size(), result._octets.begin());
    return result;
}

bool UUID::tryParse(std::string_view text) noexcept {
    if (text.size() != TEXT_LENGTH) {
        return false;
    }
    Octets octets;
    std::size_t position = 0;
    for (unsigned char& octet : octets) {
        if (std::find(HYPHENS.begin(), HYPHENS.end(), position) != HYPHENS.end() && text[position++] != '-') {
            return false;
        }
        const int high = digitValue(text[position++]);
        const int low = digitValue(text[position++]);
        if (high < 0 || low < 0) {
            return false;
        }
        octet = static_cast<unsigned char>(high << 4 | low);
    }
    _octets = octets;
    return true;
}

std::string UUID::toString() const {
    std::string text;
    text.reserve(TEXT_LENGTH);
    HexBinary::encode(std::string_view(reinterpret_cast<const char*>(_octets.data()), _octets.size()), text,
                      HexBinary::Digits::LOWER_CASE);
    for (const std::size_t position : HYPHENS) {
        text.insert(position, 1, '-');
    }
    return text;
}

} // namespace Tamo
