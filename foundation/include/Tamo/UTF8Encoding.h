#ifndef TAMO_UTF8ENCODING_H
#define TAMO_UTF8ENCODING_H

#include "Tamo/Export.h"
#include "Tamo/TextEncoding.h"
#include <string_view>

namespace Tamo {

/// UTF-8, strictly: no overlong forms, no surrogates, nothing above U+10FFFF.
///
/// An invalid sequence ends before the first octet that cannot continue it (the "maximal subpart" of the
/// Unicode Standard), so that a damaged character never takes a sound neighbour with it. Stateless
/// and thread-safe.
class TAMO_API UTF8Encoding : public TextEncoding {
public:
    const char* canonicalName() const noexcept override;
    int decode(const unsigned char* octets, std::size_t available,
               std::size_t& length) const noexcept override;
    std::size_t encode(int codePoint, unsigned char* octets) const noexcept override;

    /// The length of the longest valid beginning of text: its size when all of it is valid UTF-8.
    static std::size_t validLength(std::string_view text) noexcept;

    /// True when text is valid UTF-8.
    static bool isValid(std::string_view text) noexcept { return validLength(text) == text.size(); }
};

} // namespace Tamo

#endif
