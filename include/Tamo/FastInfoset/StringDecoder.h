#ifndef TAMO_FASTINFOSET_STRINGDECODER_H
#define TAMO_FASTINFOSET_STRINGDECODER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include <string>

namespace Tamo::FastInfoset {

class Encoding;

/// Turns the forms of an encoded character string (ITU-T X.891, 7.17) into UTF-8 text. Stateless; all
/// operations are static.
class TAMO_API StringDecoder {
public:
    /// Replaces text by size octets of UTF-8, which are taken as they are.
    static void decodeUTF8(const char* pOctets, std::size_t size, std::string& text);

    /// UTF-16, big-endian, to UTF-8, replacing text; an invalid sequence becomes "?".
    static void decodeUTF16(const std::string& octets, std::string& text);

    /// The codes of a restricted alphabet to UTF-8, replacing text; decoding ends at the end-of-string code
    /// or when fewer bits than a code needs are left. A reserved (empty) alphabet throws
    /// FISEncodingException.
    static void decodeAlphabet(const std::string& octets, const RestrictedAlphabet& alphabet,
                               std::string& text);

    /// The text form of a typed value: its content, built now, or the hexadecimal or base64 form of its
    /// octets.
    static std::string textOf(Encoding& encoding);
};

} // namespace Tamo::FastInfoset

#endif
