#include "Tamo/UTF8Encoding.h"
#include "Tamo/Types.h"
#include <cstring>

namespace Tamo {

namespace {

int decodeSequence(const unsigned char* octets, std::size_t available, std::size_t& length) noexcept {
    const unsigned first = octets[0];
    length = 1;
    if (first < 0x80) {
        return static_cast<int>(first);
    }
    // The range of the second octet excludes overlong forms, surrogates and what is above U+10FFFF.
    std::size_t expected = 2;
    unsigned low = 0x80;
    unsigned high = 0xBF;
    unsigned bits = first & 0x1F;
    if (first < 0xC2 || first > 0xF4) {
        return TextEncoding::INVALID;
    }
    if (first >= 0xF0) {
        expected = 4;
        bits = first & 0x07;
        low = first == 0xF0 ? 0x90 : 0x80;
        high = first == 0xF4 ? 0x8F : 0xBF;
    } else if (first >= 0xE0) {
        expected = 3;
        bits = first & 0x0F;
        low = first == 0xE0 ? 0xA0 : 0x80;
        high = first == 0xED ? 0x9F : 0xBF;
    }
    for (; length < expected; ++length) {
        if (length == available || octets[length] < low || octets[length] > high) {
            return TextEncoding::INVALID;
        }
        bits = bits << 6 | (octets[length] & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    return static_cast<int>(bits);
}

} // namespace

const char* UTF8Encoding::canonicalName() const noexcept {
    return "UTF-8";
}

int UTF8Encoding::decode(const unsigned char* octets, std::size_t available,
                         std::size_t& length) const noexcept {
    return decodeSequence(octets, available, length);
}

std::size_t UTF8Encoding::encode(int codePoint, unsigned char* octets) const noexcept {
    const auto bits = static_cast<unsigned>(codePoint);
    const auto trail = [bits](int shift) {
        return static_cast<unsigned char>(0x80 | (bits >> shift & 0x3F));
    };
    if (bits < 0x80) {
        octets[0] = static_cast<unsigned char>(bits);
        return 1;
    }
    if (bits < 0x800) {
        octets[0] = static_cast<unsigned char>(0xC0 | bits >> 6);
        octets[1] = trail(0);
        return 2;
    }
    if (bits < 0x10000) {
        if (bits >= 0xD800 && bits <= 0xDFFF) {
            return 0;
        }
        octets[0] = static_cast<unsigned char>(0xE0 | bits >> 12);
        octets[1] = trail(6);
        octets[2] = trail(0);
        return 3;
    }
    if (bits > 0x10FFFF) {
        return 0;
    }
    octets[0] = static_cast<unsigned char>(0xF0 | bits >> 18);
    octets[1] = trail(12);
    octets[2] = trail(6);
    octets[3] = trail(0);
    return 4;
}

std::size_t UTF8Encoding::validLength(std::string_view text) noexcept {
    const auto* const pBegin = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const pEnd = pBegin + text.size();
    const unsigned char* p = pBegin;
    while (p != pEnd) {
        // Text is mostly ASCII: eight octets at a time.
        UInt64 word = 0;
        while (pEnd - p >= 8) {
            std::memcpy(&word, p, sizeof(word));
            if (word & 0x8080808080808080U) {
                break;
            }
            p += 8;
        }
        if (p == pEnd) {
            break;
        }
        std::size_t length = 0;
        if (decodeSequence(p, static_cast<std::size_t>(pEnd - p), length) == INVALID) {
            break;
        }
        p += length;
    }
    return static_cast<std::size_t>(p - pBegin);
}

} // namespace Tamo
