#ifndef TAMO_FASTINFOSET_PRIMITIVEDECODER_H
#define TAMO_FASTINFOSET_PRIMITIVEDECODER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <string>

namespace Tamo::FastInfoset {

/// Integers, lengths and octet strings (ITU-T X.891, annex C), reading side; the part of Decoder that knows
/// no tables.
///
/// Every form depends on the bit position at which it starts (BitStreamReader::bitPos). Stateless; all
/// operations are static. A form that is not valid throws FISEncodingException, input that ends too early
/// FISParseException; what is allocated never exceeds what the input really holds.
class TAMO_API PrimitiveDecoder {
public:
    /// Reads an integer at bit position 1, 2, 3, 4 or 6 (X.891, C.25 to C.29).
    static void integer(BitStreamReader& aReader, unsigned int& val) {
        // The one-octet forms at positions 1 to 3: a 0 bit and the value less one in the rest of the octet.
        const int octet = aReader.currentOctet();
        const int position = aReader.bitPos();
        const int prefix = 0x80 >> position;
        if (octet >= 0 && position >= 1 && position <= 3 && (octet & prefix) == 0) [[likely]] {
            val = static_cast<unsigned int>(octet & (prefix - 1)) + 1;
            aReader.advance(static_cast<UInt64>(8 - position));
            return;
        }
        integerSlow(aReader, val);
    }

    /// Reads the length (in octets, at least 1) of an octet string at bit position 1, 4 or 6 (X.891, C.22 to
    /// C.24).
    static void nonEmptyStringLength(BitStreamReader& aReader, std::size_t& strLen);

    /// Reads a length and that many octets, replacing octets.
    static void nonEmptyOctetString(BitStreamReader& aReader, std::string& octets);

    /// Reads a count of items on an octet boundary (X.891, C.21).
    static void lengthOfSequence(BitStreamReader& aReader, unsigned int& len);

private:
    static void integerSlow(BitStreamReader& aReader, unsigned int& val);
};

} // namespace Tamo::FastInfoset

#endif
