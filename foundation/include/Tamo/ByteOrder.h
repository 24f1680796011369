#ifndef TAMO_BYTEORDER_H
#define TAMO_BYTEORDER_H

/// @file
/// Conversion between the machine's order of octets and a fixed one.
///
/// Pure functions, no state, nothing is thrown. The bulk operations accept any alignment on the octet side,
/// so that they can work inside a document's buffer.

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace Tamo {

/// Swapping of octets in integers and in arrays of numbers. Pure functions, thread-safe.
class TAMO_API ByteOrder {
public:
    /// The value with its octets in reverse order; for integers of 16, 32 and 64 bits.
    template<std::integral T>
    static constexpr T flipBytes(T value) noexcept {
        static_assert(sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8, "16, 32 or 64 bits");
        if constexpr (sizeof(T) == 2) {
            const UInt32 bits = static_cast<UInt16>(value);
            return static_cast<T>(static_cast<UInt16>(bits >> 8 | bits << 8));
        } else if constexpr (sizeof(T) == 4) {
            UInt32 bits = static_cast<UInt32>(value);
            bits = (bits & 0x00FF00FFU) << 8 | (bits >> 8 & 0x00FF00FFU);
            return static_cast<T>(bits << 16 | bits >> 16);
        } else {
            std::uint64_t bits = static_cast<std::uint64_t>(value);
            bits = (bits & 0x00FF00FF00FF00FFU) << 8 | (bits >> 8 & 0x00FF00FF00FF00FFU);
            bits = (bits & 0x0000FFFF0000FFFFU) << 16 | (bits >> 16 & 0x0000FFFF0000FFFFU);
            return static_cast<T>(bits << 32 | bits >> 32);
        }
    }

    /// The value whose octets in memory are those of value in big-endian order.
    template<std::integral T>
    static constexpr T toBigEndian(T value) noexcept {
        return std::endian::native == std::endian::big ? value : flipBytes(value);
    }

    /// The value whose octets in memory are in big-endian order in value.
    template<std::integral T>
    static constexpr T fromBigEndian(T value) noexcept {
        return toBigEndian(value);
    }

    /// The value whose octets in memory are those of value in little-endian order.
    template<std::integral T>
    static constexpr T toLittleEndian(T value) noexcept {
        return std::endian::native == std::endian::little ? value : flipBytes(value);
    }

    /// The value whose octets in memory are in little-endian order in value.
    template<std::integral T>
    static constexpr T fromLittleEndian(T value) noexcept {
        return toLittleEndian(value);
    }

    /// Stores count integers or floating-point numbers of 16, 32 or 64 bits at octets, each most significant
    /// octet first. The octets may stand at any address and must not overlap the values.
    template<class T>
    static void toBigEndianOctets(const T* values, std::size_t count, void* octets) noexcept {
        static_assert(std::is_arithmetic_v<T>);
        using Bits = BitsOf<sizeof(T)>;
        unsigned char* const pOctets = static_cast<unsigned char*>(octets);
        for (std::size_t i = 0; i < count; ++i) {
            Bits bits;
            std::memcpy(&bits, values + i, sizeof(T));
            bits = toBigEndian(bits);
            std::memcpy(pOctets + i * sizeof(T), &bits, sizeof(T));
        }
    }

    /// The inverse of toBigEndianOctets: reads count numbers that stand at octets, at any address.
    template<class T>
    static void fromBigEndianOctets(const void* octets, std::size_t count, T* values) noexcept {
        static_assert(std::is_arithmetic_v<T>);
        using Bits = BitsOf<sizeof(T)>;
        const unsigned char* const pOctets = static_cast<const unsigned char*>(octets);
        for (std::size_t i = 0; i < count; ++i) {
            Bits bits;
            std::memcpy(&bits, pOctets + i * sizeof(T), sizeof(T));
            bits = fromBigEndian(bits);
            std::memcpy(values + i, &bits, sizeof(T));
        }
    }

private:
    template<std::size_t SIZE>
    using BitsOf = std::conditional_t<SIZE == 2, UInt16, std::conditional_t<SIZE == 4, UInt32, UInt64>>;
};

} // namespace Tamo

#endif
