#include "LegacyEncoding.h"
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace Tamo::XML {

namespace {

/// Encoding names of XML 1.0 (EncName): nothing that iconv could take for an option or a file.
bool isEncodingName(const char* name) {
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (!isLetter(*name)) {
        return false;
    }
    for (; *name; ++name) {
        if (!isLetter(*name) && !(*name >= '0' && *name <= '9') && !std::strchr("._-", *name)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::unique_ptr<LegacyEncoding> LegacyEncoding::create(const char* name) {
    if (!isEncodingName(name)) {
        return nullptr;
    }
    const iconv_t converter = iconv_open("UTF-32LE", name);
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return nullptr;
    }
    std::unique_ptr<LegacyEncoding> pEncoding(new LegacyEncoding(converter));
    if (!pEncoding->fillMap()) {
        return nullptr;
    }
    return pEncoding;
}

int LegacyEncoding::convert(const char* sequence) const {
    const int length = _map[static_cast<unsigned char>(*sequence)];
    const int character = length < INVALID ? convert(sequence, static_cast<std::size_t>(-length)) : INVALID;
    return character < 0 ? INVALID : character;
}

bool LegacyEncoding::fillMap() {
    for (unsigned int octet = 0; octet < 256; ++octet) {
        const char c = static_cast<char>(octet);
        int character = convert(&c, 1);
        if (character == INCOMPLETE) {
            if (octet < 0x80) {
                return false; // shifts or wide units: no extension of ASCII
            }
            character = sequenceLength(static_cast<unsigned char>(octet));
        }
        _map[octet] = character;
    }
    return true;
}

int LegacyEncoding::convert(const char* sequence, std::size_t length) const {
    iconv(_converter, nullptr, nullptr, nullptr, nullptr);
    char* pIn = const_cast<char*>(sequence); // POSIX declares the input without const and does not change it
    unsigned char out[16];
    char* pOut = reinterpret_cast<char*>(out);
    std::size_t unused = sizeof out;
    if (iconv(_converter, &pIn, &length, &pOut, &unused) == static_cast<std::size_t>(-1)) {
        return errno == EINVAL ? INCOMPLETE : INVALID;
    }
    // Some converters hold a character back because a combining one could follow.
    iconv(_converter, nullptr, nullptr, &pOut, &unused);
    if (sizeof out - unused != 4) {
        return INVALID;
    }
    const std::uint32_t character = out[0] | static_cast<std::uint32_t>(out[1]) << 8 |
                                    static_cast<std::uint32_t>(out[2]) << 16 |
                                    static_cast<std::uint32_t>(out[3]) << 24;
    return character <= 0x10FFFF ? static_cast<int>(character) : INVALID;
}

int LegacyEncoding::sequenceLength(unsigned char lead) const {
    char sequence[4] = {static_cast<char>(lead)};
    for (std::size_t length = 2; length <= sizeof sequence; ++length) {
        int longer = -1;
        for (int octet = 0x21; octet < 0x100; ++octet) {
            sequence[length - 1] = static_cast<char>(octet);
            const int character = convert(sequence, length);
            if (character >= 0) {
                return -static_cast<int>(length);
            }
            if (character == INCOMPLETE && longer < 0) {
                longer = octet;
            }
        }
        if (longer < 0) {
            break;
        }
        sequence[length - 1] = static_cast<char>(longer);
    }
    return INVALID;
}

} // namespace Tamo::XML
