#ifndef TAMO_UTF16ENCODING_H
#define TAMO_UTF16ENCODING_H

#include "Tamo/Export.h"
#include "Tamo/TextEncoding.h"

namespace Tamo {

/// UTF-16 in either order of octets, without a byte order mark.
///
/// A surrogate without its partner is an invalid sequence of two octets, a single octet at the end one of
/// one. Never changes, thread-safe.
class TAMO_API UTF16Encoding : public TextEncoding {
public:
    /// The order of the two octets of a code unit.
    enum Order {
        BIG_ENDIAN_ORDER,   ///< most significant octet first
        LITTLE_ENDIAN_ORDER ///< least significant octet first
    };

    /// UTF-16 in the given order.
    explicit UTF16Encoding(Order order = BIG_ENDIAN_ORDER) noexcept
        : _high(order == BIG_ENDIAN_ORDER ? 0 : 1) {}

    const char* canonicalName() const noexcept override;
    int decode(const unsigned char* octets, std::size_t available,
               std::size_t& length) const noexcept override;
    std::size_t encode(int codePoint, unsigned char* octets) const noexcept override;

private:
    int unit(const unsigned char* octets) const noexcept;
    void putUnit(int unit, unsigned char* octets) const noexcept;

    std::size_t _high; // the place of a unit's most significant octet, 0 or 1
};

} // namespace Tamo

#endif
