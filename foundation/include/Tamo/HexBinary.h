#ifndef TAMO_HEXBINARY_H
#define TAMO_HEXBINARY_H

#include <cstddef>
#include <string>
#include <string_view>

namespace Tamo {

/// Octets as pairs of hexadecimal digits, in whole blocks; HexBinaryEncoder and HexBinaryDecoder are the
/// streams.
///
/// Pure functions, thread-safe; they throw nothing but std::bad_alloc.
class HexBinary {
public:
    /// Appends two digits for each octet to text.
    static void encode(std::string_view octets, std::string& text, bool uppercase = true);

    /// Appends the octets that text stands for. Digits of either case are accepted and nothing else, white
    /// space included. Returns false, and leaves octets as they were, when text is invalid or its length is
    /// odd.
    static bool decode(std::string_view text, std::string& octets);

    /// Checks text like decode and gives the number of its octets, without decoding it.
    static bool decodedSize(std::string_view text, std::size_t& size) noexcept;
};

} // namespace Tamo

#endif
