#include "walk/AlphabetCodes.h"
#include "Tamo/UTF8Encoding.h"
#include <bit>

namespace finf {

using Tamo::UInt64;
using Tamo::FastInfoset::RestrictedAlphabet;

unsigned int AlphabetCodes::width(const RestrictedAlphabet& alphabet) {
    return static_cast<unsigned int>(std::bit_width(alphabet.size()));
}

void AlphabetCodes::decode(std::string_view octets, const RestrictedAlphabet& alphabet, std::string& text) {
    constexpr Tamo::UInt32 REPLACEMENT = 0xFFFD;
    const unsigned int codeBits = width(alphabet);
    const Tamo::UTF8Encoding utf8;
    text.clear();
    UInt64 bits = 0;
    unsigned int ready = 0; // bits that no code has taken yet
    UInt64 left = 8 * UInt64{octets.size()};
    for (const char octet : octets) {
        bits = bits << 8 | static_cast<unsigned char>(octet);
        for (ready += 8; ready >= codeBits; ready -= codeBits, left -= codeBits) {
            const UInt64 code = bits >> (ready - codeBits) & ((UInt64{1} << codeBits) - 1);
            if (isFilling(code, codeBits, left)) {
                return;
            }
            const Tamo::UInt32 character =
                code < alphabet.size() ? alphabet.indexToChar(static_cast<int>(code)) : REPLACEMENT;
            unsigned char sequence[8];
            const std::size_t length = utf8.encode(static_cast<int>(character), sequence);
            text.append(reinterpret_cast<const char*>(sequence), length);
        }
    }
}

} // namespace finf
