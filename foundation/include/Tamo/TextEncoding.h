#ifndef TAMO_TEXTENCODING_H
#define TAMO_TEXTENCODING_H

#include "Tamo/Export.h"
#include <cstddef>

namespace Tamo {

/// A character encoding: octets to Unicode code points and back.
///
/// Encodings have no state: one object serves any number of threads. Nothing is thrown.
class TAMO_API TextEncoding {
public:
    /// No encoding makes more octets than this of one code point.
    static constexpr std::size_t MAX_SEQUENCE_LENGTH = 4;

    /// What decode returns for an invalid sequence.
    static constexpr int INVALID = -1;

    virtual ~TextEncoding() = default;

    /// The registered name of the encoding, such as "UTF-8".
    virtual const char* canonicalName() const noexcept = 0;

    /// Decodes the sequence that starts at octets, of which available (at least 1) may be read. Returns its
    /// code point, or INVALID for an invalid or incomplete sequence. In both cases length becomes the number
    /// of octets to advance, from 1 to available.
    virtual int decode(const unsigned char* octets, std::size_t available,
                       std::size_t& length) const noexcept = 0;

    /// Encodes a code point to at most MAX_SEQUENCE_LENGTH octets and returns their number, 0 when the code
    /// point cannot be encoded.
    virtual std::size_t encode(int codePoint, unsigned char* octets) const noexcept = 0;

    /// The number of octets of the sequence that starts at octets, by the rules of decode.
    std::size_t sequenceLength(const unsigned char* octets, std::size_t available) const noexcept {
        std::size_t length = 0;
        decode(octets, available, length);
        return length;
    }

protected:
    TextEncoding() = default;
    TextEncoding(const TextEncoding&) = default;
    TextEncoding& operator=(const TextEncoding&) = default;
};

} // namespace Tamo

#endif
