#ifndef TAMO_TEXTCONVERTER_H
#define TAMO_TEXTCONVERTER_H

#include "Tamo/Export.h"
#include "Tamo/TextEncoding.h"
#include <string>
#include <string_view>

namespace Tamo {

/// Converts text from one encoding to another.
///
/// The encodings must outlive the converter. A converter keeps no state between calls and serves any number
/// of threads.
class TAMO_API TextConverter {
public:
    /// A converter that replaces what it cannot convert by the code point defaultChar.
    TextConverter(const TextEncoding& in, const TextEncoding& out, int defaultChar = '?') noexcept
        : _in(in), _out(out), _defaultChar(defaultChar) {}

    /// Appends source to dest in the other encoding. Each invalid sequence, and each character that the other
    /// encoding does not have, becomes one defaultChar; returns their number.
    int convert(std::string_view source, std::string& dest) const;

private:
    const TextEncoding& _in;
    const TextEncoding& _out;
    int _defaultChar;
};

} // namespace Tamo

#endif
