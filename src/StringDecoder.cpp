#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/TextConverter.h"
#include "Tamo/UTF16Encoding.h"
#include "Tamo/UTF8Encoding.h"

namespace Tamo::FastInfoset {

// In a source of its own: where a compiler knows that strings are short it copies them with an instruction
// that is slower than a call of memcpy.
void StringDecoder::decodeUTF8(const char* pOctets, std::size_t size, std::string& text) {
    text.assign(pOctets, size);
}

void StringDecoder::decodeUTF16(const std::string& octets, std::string& text) {
    const UTF16Encoding utf16(UTF16Encoding::BIG_ENDIAN_ORDER);
    const UTF8Encoding utf8;
    text.clear();
    TextConverter(utf16, utf8, '?').convert(octets, text);
}

void StringDecoder::decodeAlphabet(const std::string& octets, const RestrictedAlphabet& alphabet,
                                   std::string& text) {
    const unsigned int codeBits = alphabet.bitSize();
    if (codeBits == 0) {
        throw FISEncodingException("Illegal restricted alphabet: the index is reserved");
    }
    text.clear();
    text.reserve((8 * octets.size() + 8) / codeBits);
    const UTF8Encoding utf8;
    UInt64 bits = 0;
    unsigned int count = 0;
    for (const char octet : octets) {
        bits = (bits << 8) | static_cast<unsigned char>(octet);
        count += 8;
        while (count >= codeBits) {
            count -= codeBits;
            const auto code = static_cast<int>((bits >> count) & ((UInt64{1} << codeBits) - 1));
            if (alphabet.isEndOfString(code)) {
                return;
            }
            unsigned char sequence[8];
            const std::size_t length = utf8.encode(static_cast<int>(alphabet.indexToChar(code)), sequence);
            text.append(reinterpret_cast<const char*>(sequence), length);
        }
    }
}

std::string StringDecoder::textOf(Encoding& encoding) {
    std::string text;
    const Encoding& value = encoding;
    switch (value.type()) {
    case HexEncoding::TYPE:
        HexEncoding::decode(value.content(), text);
        return text;
    case DWordEncoding::TYPE:
        DWordEncoding::decode(value.content(), text);
        return text;
    default:
        encoding.createContent();
        return value.content();
    }
}

} // namespace Tamo::FastInfoset
