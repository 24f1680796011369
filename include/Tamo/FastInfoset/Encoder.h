#ifndef TAMO_FASTINFOSET_ENCODER_H
#define TAMO_FASTINFOSET_ENCODER_H

#include "Tamo/Export.h"
#include <cstddef>
#include <string>

namespace Tamo::FastInfoset {

class BitStreamWriter;

/// The primitive encodings of ITU-T X.891 Annex C, writing side.
///
/// Every form depends on the bit position at which it starts (BitStreamWriter::bitPos). Stateless; all
/// operations are static. A wrong position or value throws FISEncodingException.
class TAMO_API Encoder {
public:
    /// The largest integer that can be encoded: 2^20.
    static constexpr unsigned int MAXINT20 = 1048576;
    /// The octets "<?" that open an XML declaration, as a 16-bit number.
    static constexpr unsigned short XMLDECLARATION = 0x3C3F;
    /// The identification of a Fast Infoset document (X.891, 12.6).
    static constexpr unsigned short DOCUMENTSTART = 0xE000;
    /// The version of a Fast Infoset document (X.891, 12.7).
    static constexpr unsigned short DOCUMENTVERSION = 0x0001;

    /// Writes the optional XML declaration, the identification, the version and the padding bit (X.891, 12).
    static void documentPreHeader(BitStreamWriter& aWriter, bool writeXMLDecl);

    /// Writes an integer (0 to 2^20, 0 at bit position 1 only) at bit position 1, 2, 3, 4 or 6 (X.891, C.25
    /// to C.29); at 4 and 6 only up to 256.
    static void integer(BitStreamWriter& aWriter, unsigned int val);

    /// Writes a '0' bit and then the integer.
    static void pad0ThenInteger(BitStreamWriter& aWriter, unsigned int val);

    /// Writes the length (in octets, at least 1) of an octet string at bit position 1, 4 or 6 (X.891, C.22 to
    /// C.24).
    static void nonEmptyStringLength(BitStreamWriter& aWriter, std::size_t strLen);

    /// Writes the length and the octets; an empty string is refused.
    static void nonEmptyOctetString(BitStreamWriter& aWriter, const std::string& octets);

    /// Writes a count of items (1 to 2^20) on an octet boundary (X.891, C.21). Deliberate: counts above 128
    /// are written in a long form whose first bit is 0; documents rely on counts of at most 128 only.
    static void lengthOfSequence(BitStreamWriter& aWriter, unsigned int len);

    /// Writes a count of items (1 to 2^20) on an octet boundary as X.891, C.21 has it: above 128 behind 1000
    /// in 20 bits. For the strict mode.
    static void countOfItems(BitStreamWriter& aWriter, std::size_t count);
};

} // namespace Tamo::FastInfoset

#endif
