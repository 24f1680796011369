#ifndef TAMO_NUMBERFORMATTER_H
#define TAMO_NUMBERFORMATTER_H

/// @file
/// Numbers to text.
///
/// Integers are written in decimal without padding. Floating-point numbers are written in the shortest
/// spelling that reads back as the same number of their type ("0", "-0", "0.1", "1e+23"), and as "INF",
/// "-INF" and "NaN" when they are not finite; NumberParser reads all of them back. Nothing depends on the
/// locale. All operations are thread-safe and throw nothing but std::bad_alloc.

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <string>

namespace Tamo {

/// Conversion of numbers to text; each form as a new string (`format`) or at the end of one (`append`).
/// Thread-safe.
class TAMO_API NumberFormatter {
public:
    /// The value in decimal.
    static std::string format(int value);
    static std::string format(unsigned value);
    static std::string format(long value);
    static std::string format(unsigned long value);
    static std::string format(long long value);
    static std::string format(unsigned long long value);

    /// The shortest spelling that reads back as the same float.
    static std::string format(float value);

    /// The shortest spelling that reads back as the same double.
    static std::string format(double value);

    /// The value in upper-case hexadecimal digits, with leading zeros up to width digits; a value that needs
    /// more digits is written in full.
    static std::string formatHex(UInt64 value, int width);

    /// Appends what format gives, without a temporary string.
    static void append(std::string& text, int value);
    static void append(std::string& text, unsigned value);
    static void append(std::string& text, long value);
    static void append(std::string& text, unsigned long value);
    static void append(std::string& text, long long value);
    static void append(std::string& text, unsigned long long value);
    static void append(std::string& text, float value);
    static void append(std::string& text, double value);

    /// Appends the canonical form of XML Schema of the shortest spelling: "1.5E0", "1.0E20", "INF".
    static void appendCanonical(std::string& text, float value);
    static void appendCanonical(std::string& text, double value);

    /// Appends what formatHex gives.
    static void appendHex(std::string& text, UInt64 value, int width);
};

} // namespace Tamo

#endif
