#ifndef TAMO_HEXBINARY_H
#define TAMO_HEXBINARY_H

#include "Tamo/Export.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace Tamo {

/// Octets as pairs of hexadecimal digits, in whole blocks; HexBinaryEncoder and HexBinaryDecoder are the
/// streams.
///
/// Pure functions, thread-safe; they throw nothing but std::bad_alloc.
class TAMO_API HexBinary {
public:
    /// The case of the digits that are letters.
    enum class Digits { UPPER_CASE, LOWER_CASE };

    /// Appends two digits for each octet to text.
    static void encode(std::string_view octets, std::string& text, Digits digits = Digits::UPPER_CASE);

    /// Appends the octets that text stands for. Digits of either case are accepted and nothing else, white
    /// space included. Returns false, and leaves octets as they were, when text is invalid or its length is
    /// odd.
    static bool decode(std::string_view text, std::string& octets);

    /// Checks text like decode and gives the number of its octets, without decoding it.
    static bool decodedSize(std::string_view text, std::size_t& size) noexcept;

    /// Decodes a further piece of a text. digit holds the first digit of an octet whose second one has not
    /// come yet, and is 0 at the beginning and at a valid end. Returns false when a character is invalid; the
    /// octets before it have been appended.
    static bool decodePiece(std::string_view text, std::string& octets, char& digit);
};

} // namespace Tamo

#endif
