#ifndef TAMO_XML_LEGACYENCODING_H
#define TAMO_XML_LEGACYENCODING_H

#include <array>
#include <cstddef>
#include <iconv.h>
#include <memory>

namespace Tamo::XML {

/// A character encoding that extends ASCII by single octets or by sequences of up to four octets, as iconv
/// knows it.
///
/// Owned by one parse; not thread-safe.
class LegacyEncoding {
public:
    /// The value of `map` for an octet that begins no character; -n stands for the first of n octets.
    static constexpr int INVALID = -1;

    /// The encoding of this name, or null when iconv does not know it or it does not extend ASCII.
    static std::unique_ptr<LegacyEncoding> create(const char* name);

    LegacyEncoding(const LegacyEncoding&) = delete;
    LegacyEncoding& operator=(const LegacyEncoding&) = delete;
    ~LegacyEncoding() { iconv_close(_converter); }

    /// For each octet, the character that it stands for, or -n, or INVALID.
    const std::array<int, 256>& map() const { return _map; }

    /// The character that a sequence of octets stands for, as long as map says for its first octet; or
    /// INVALID.
    int convert(const char* sequence) const;

private:
    /// What iconv says that is no character.
    static constexpr int INCOMPLETE = -2;

    explicit LegacyEncoding(iconv_t converter) : _converter(converter) {}

    bool fillMap();
    int convert(const char* sequence, std::size_t length) const;
    int sequenceLength(unsigned char lead) const;

    iconv_t _converter;
    std::array<int, 256> _map{};
};

} // namespace Tamo::XML

#endif
