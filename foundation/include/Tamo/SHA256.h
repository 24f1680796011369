#ifndef TAMO_SHA256_H
#define TAMO_SHA256_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace Tamo {

/// The Secure Hash Algorithm SHA-256 (FIPS 180-4): tells contents apart that were not made to be confused,
/// and those that were. Used by one thread at a time.
class TAMO_API SHA256 {
public:
    /// A digest, 32 octets.
    using Digest = std::array<UInt8, 32>;

    /// Appends octets to what is hashed.
    void add(std::span<const std::byte> octets);
    void add(std::string_view octets) { add(std::as_bytes(std::span(octets.data(), octets.size()))); }

    /// The digest of all that has been appended; nothing can be appended behind that.
    Digest finish();

private:
    static constexpr std::size_t BLOCK = 64; // octets

    void hashBlock(const UInt8* pBlock) noexcept;

    std::array<UInt32, 8> _state{0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                 0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<UInt8, BLOCK> _block{}; // its first _size % BLOCK octets wait
    UInt64 _size = 0;                  // in octets
};

} // namespace Tamo

#endif
