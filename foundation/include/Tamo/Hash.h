#ifndef TAMO_HASH_H
#define TAMO_HASH_H

/// @file
/// Hash of strings, for hash tables in memory.
///
/// Pure functions, thread-safe, nothing is thrown. Equal strings have equal hashes in one run of a program;
/// the values may differ between machines and releases and must not be stored. The hash is not keyed: a table
/// that takes strings from an untrusted source must bound its probes by other means.

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Tamo {

/// The hash of a string of any octets; all 32 bits are well spread.
inline UInt32 hash(std::string_view text) noexcept {
    constexpr std::uint64_t K1 = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t K2 = 0xD6E8FEB86659FD93U;
    const char* p = text.data();
    std::size_t left = text.size();
    std::uint64_t h = left * K1;
    const auto mix = [&h](std::uint64_t word) { h = std::rotl(h ^ (word * K1), 29) * K2; };
    const auto read = [](const char* at, auto word) -> std::uint64_t {
        std::memcpy(&word, at, sizeof(word));
        return word;
    };
    if (left >= 8) {
        for (; left > 8; left -= 8, p += 8) {
            mix(read(p, std::uint64_t{}));
        }
        // The last word may overlap the one before it: no loop over single octets.
        mix(read(p + left - 8, std::uint64_t{}));
    } else if (left >= 4) {
        mix(read(p, std::uint32_t{}) | read(p + left - 4, std::uint32_t{}) << 32);
    } else if (left > 0) {
        mix(read(p, std::uint8_t{}) | read(p + left / 2, std::uint8_t{}) << 8 |
            read(p + left - 1, std::uint8_t{}) << 16);
    }
    h = (h ^ h >> 32) * K1;
    return static_cast<UInt32>(h >> 32 ^ h);
}

/// Whether two texts of one size of up to 16 octets are equal, without a call.
TAMO_ALWAYS_INLINE bool equalShortText(const char* a, const char* b, std::size_t size) noexcept {
    const auto differ = [&](std::size_t at, auto word) {
        auto other = word;
        std::memcpy(&word, a + at, sizeof(word));
        std::memcpy(&other, b + at, sizeof(other));
        return word ^ other;
    };
    // Blocks that overlap, without a loop.
    if (size >= 8) {
        return (differ(0, std::uint64_t{}) | differ(size - 8, std::uint64_t{})) == 0;
    }
    if (size >= 4) {
        return (differ(0, std::uint32_t{}) | differ(size - 4, std::uint32_t{})) == 0;
    }
    return size == 0 || (a[0] == b[0] && a[size / 2] == b[size / 2] && a[size - 1] == b[size - 1]);
}

/// Copies a text of up to 16 octets, and touches nothing behind its copy, without a call. The two must not
/// overlap.
TAMO_ALWAYS_INLINE void copyShortText(char* to, const char* from, std::size_t size) noexcept {
    // Blocks that overlap, without a loop.
    if (size >= 8) {
        std::uint64_t words[2];
        std::memcpy(words, from, 8);
        std::memcpy(words + 1, from + size - 8, 8);
        std::memcpy(to, words, 8);
        std::memcpy(to + size - 8, words + 1, 8);
    } else if (size >= 4) {
        std::uint32_t words[2];
        std::memcpy(words, from, 4);
        std::memcpy(words + 1, from + size - 4, 4);
        std::memcpy(to, words, 4);
        std::memcpy(to + size - 4, words + 1, 4);
    } else if (size > 0) {
        const char octets[] = {from[0], from[size / 2], from[size - 1]};
        to[0] = octets[0];
        to[size / 2] = octets[1];
        to[size - 1] = octets[2];
    }
}

/// Whether two strings are equal: without a call of memcmp for short ones, which most keys of hash tables
/// are.
inline bool equalText(std::string_view a, std::string_view b) noexcept {
    const std::size_t size = a.size();
    if (size != b.size()) {
        return false;
    }
    const auto differ = [&](std::size_t at) {
        std::uint64_t word;
        std::uint64_t other;
        std::memcpy(&word, a.data() + at, sizeof(word));
        std::memcpy(&other, b.data() + at, sizeof(other));
        return word ^ other;
    };
    const auto equalAt = [&](std::size_t first, std::size_t second) {
        return (differ(first) | differ(first + 8) | differ(second) | differ(second + 8)) == 0;
    };
    if (size > 64) {
        return std::memcmp(a.data(), b.data(), size) == 0;
    }
    if (size > 32) {
        return equalAt(0, 16) && equalAt(size - 32, size - 16);
    }
    if (size > 16) {
        return equalAt(0, size - 16);
    }
    return equalShortText(a.data(), b.data(), size);
}

/// The hash of a string.
inline UInt32 hash(const std::string& text) noexcept {
    return hash(std::string_view(text));
}

/// The hash of a string that ends at its first null character.
inline UInt32 hash(const char* text) noexcept {
    return hash(std::string_view(text));
}

/// The place of a value in a hash table; to be specialised for types that have no `hash` function.
/// Stateless, thread-safe.
template<class T>
struct TAMO_API HashFunction {
    /// The hash of value, reduced to the range from 0 to maxValue - 1; maxValue is at least 1.
    UInt32 operator()(const T& value, UInt32 maxValue) const { return hash(value) % maxValue; }
};

} // namespace Tamo

#endif
