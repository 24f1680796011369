#ifndef TAMO_NUMBERPARSER_H
#define TAMO_NUMBERPARSER_H

/// @file
/// Numbers from text.
///
/// The whole text must be the number: no white space, no leading '+', no digit grouping. Nothing depends on
/// the locale. The `tryParse` forms return false and leave the value alone when the text is no number or the
/// number is out of range; the other forms throw SyntaxException that names the text. All operations are
/// thread-safe.

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <string_view>

namespace Tamo {

/// Conversion of decimal text to integers and floating-point numbers. Thread-safe.
class TAMO_API NumberParser {
public:
    /// A signed number of 32 bits.
    static bool tryParse(std::string_view text, int& value) noexcept;

    /// An unsigned number of 32 bits; no sign is accepted.
    static bool tryParseUnsigned(std::string_view text, unsigned& value) noexcept;

    /// A signed number of 64 bits.
    static bool tryParse64(std::string_view text, Int64& value) noexcept;

    /// An unsigned number of 64 bits; no sign is accepted.
    static bool tryParseUnsigned64(std::string_view text, UInt64& value) noexcept;

    /// A decimal number with optional fraction and exponent, rounded to the nearest double; or exactly "INF",
    /// "-INF" or "NaN". A number that overflows, or is not zero but rounds to zero, is out of range.
    static bool tryParseFloat(std::string_view text, double& value) noexcept;

    /// As tryParse, but throws SyntaxException.
    static int parse(std::string_view text);

    /// As tryParseUnsigned, but throws SyntaxException.
    static unsigned parseUnsigned(std::string_view text);

    /// As tryParse64, but throws SyntaxException.
    static Int64 parse64(std::string_view text);

    /// As tryParseUnsigned64, but throws SyntaxException.
    static UInt64 parseUnsigned64(std::string_view text);

    /// As tryParseFloat, but throws SyntaxException.
    static double parseFloat(std::string_view text);
};

} // namespace Tamo

#endif
