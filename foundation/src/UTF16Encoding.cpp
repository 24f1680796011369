#include "Tamo/UTF16Encoding.h"

namespace Tamo {

namespace {

bool isHighSurrogate(int unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(int unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

const char* UTF16Encoding::canonicalName() const noexcept {
    return _high == 0 ? "UTF-16BE" : "UTF-16LE";
}

int UTF16Encoding::decode(const unsigned char* octets, std::size_t available,
                          std::size_t& length) const noexcept {
    if (available < 2) {
        length = 1;
        return INVALID;
    }
    length = 2;
    const int first = unit(octets);
    if (isLowSurrogate(first)) {
        return INVALID;
    }
    if (!isHighSurrogate(first)) {
        return first;
    }
    const int second = available >= 4 ? unit(octets + 2) : 0;
    if (!isLowSurrogate(second)) {
        return INVALID;
    }
    length = 4;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

std::size_t UTF16Encoding::encode(int codePoint, unsigned char* octets) const noexcept {
    if (codePoint < 0 || codePoint > 0x10FFFF || isHighSurrogate(codePoint) || isLowSurrogate(codePoint)) {
        return 0;
    }
    if (codePoint < 0x10000) {
        putUnit(codePoint, octets);
        return 2;
    }
    putUnit(0xD800 + ((codePoint - 0x10000) >> 10), octets);
    putUnit(0xDC00 + ((codePoint - 0x10000) & 0x3FF), octets + 2);
    return 4;
}

int UTF16Encoding::unit(const unsigned char* octets) const noexcept {
    return octets[_high] << 8 | octets[1 - _high];
}

void UTF16Encoding::putUnit(int unit, unsigned char* octets) const noexcept {
    octets[_high] = static_cast<unsigned char>(unit >> 8);
    octets[1 - _high] = static_cast<unsigned char>(unit & 0xFF);
}

} // namespace Tamo
