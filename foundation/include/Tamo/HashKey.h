#ifndef TAMO_HASHKEY_H
#define TAMO_HASHKEY_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Tamo {

/// Sixteen octets that stand for a text where texts are searched.
///
/// Of a short text (isExact()) they are the text itself and zeros behind it: with its size they tell it from
/// every other. Of a longer one they are a digest: different keys mean different texts, equal keys that the
/// texts have to be compared. A value that fits two registers, made by pure
/// functions that are thread-safe; nothing is thrown; the hash is not keyed (see
/// Hash.h).
class TAMO_API HashKey {
public:
    /// The longest text, in octets, that a key holds whole.
    static constexpr std::size_t MOST_EXACT = 16;

    /// Whether texts of this size, in octets, are held whole.
    static constexpr bool isExact(std::size_t size) noexcept { return size <= MOST_EXACT; }

    /// The key of a text of any octets.
    static TAMO_ALWAYS_INLINE HashKey of(std::string_view text) noexcept {
        return isExact(text.size()) ? whole(text) : digest(text);
    }

    /// The key of a value that two numbers make up.
    constexpr HashKey(UInt64 first, UInt64 last) noexcept : _first(first), _last(last) {}

    constexpr bool operator==(const HashKey& other) const noexcept {
        return ((_first ^ other._first) | (_last ^ other._last)) == 0;
    }

    /// Some order of keys.
    constexpr bool operator<(const HashKey& other) const noexcept {
        return _first != other._first ? _first < other._first : _last < other._last;
    }

    /// The hash of the value; the upper bits are the best.
    constexpr UInt64 hash() const noexcept {
        const UInt64 h = (_first * K1) ^ std::rotl(_last * K2, 32);
        return (h ^ h >> 29) * K1;
    }

    /// The key of a text that it holds whole (isExact()); hasNul becomes whether the text has a NUL octet.
    static TAMO_ALWAYS_INLINE HashKey ofWhole(std::string_view text, bool& hasNul) noexcept {
        const char* const p = text.data();
        const std::size_t size = text.size();
        if (size >= 8) {
            hasNul = (nuls(word<UInt64>(p)) | nuls(word<UInt64>(p + size - 8))) != 0;
        } else if (size >= 4) {
            hasNul = nuls(word<UInt32>(p) | word<UInt32>(p + size - 4) << 32) != 0;
        } else {
            hasNul = size > 0 && (p[0] == '\0' || p[size / 2] == '\0' || p[size - 1] == '\0');
        }
        return whole(text);
    }

private:
    static constexpr UInt64 K1 = 0x9E3779B97F4A7C15;
    static constexpr UInt64 K2 = 0xD6E8FEB86659FD93;

    static constexpr UInt64 ONES = 0x0101010101010101;
    static constexpr UInt64 HIGHS = 0x8080808080808080;

    // Not zero when one of the octets is.
    static UInt64 nuls(UInt64 octets) noexcept { return (octets - ONES) & ~octets & HIGHS; }

    template<class T>
    static UInt64 word(const char* p, T value = 0) noexcept {
        std::memcpy(&value, p, sizeof(value));
        return value;
    }

    static TAMO_ALWAYS_INLINE HashKey whole(std::string_view text) noexcept {
        const char* const p = text.data();
        const std::size_t size = text.size();
        if constexpr (std::endian::native != std::endian::little) {
            char octets[MOST_EXACT] = {};
            std::copy(text.begin(), text.end(), octets);
            return {word<UInt64>(octets), word<UInt64>(octets + 8)};
        } else if (size >= 8) {
            // Of the last eight octets those that are not among the first; none when there are no more.
            const std::size_t half = 4 * (MOST_EXACT - size);
            return {word<UInt64>(p), word<UInt64>(p + size - 8) >> half >> half};
        } else if (size >= 4) {
            return {word<UInt32>(p) | word<UInt32>(p + size - 4) << 8 * (size - 4), 0};
        } else if (size > 0) {
            return {word<UInt8>(p) | word<UInt8>(p + size / 2) << 8 * (size / 2) |
                        word<UInt8>(p + size - 1) << 8 * (size - 1),
                    0};
        }
        return {0, 0};
    }

    static HashKey digest(std::string_view text) noexcept {
        HashKey key(text.size(), 0);
        const char* p = text.data();
        for (std::size_t left = text.size(); left > MOST_EXACT; left -= MOST_EXACT, p += MOST_EXACT) {
            key.mix(p);
        }
        key.mix(text.data() + text.size() - MOST_EXACT); // some of it perhaps again
        return key;
    }

    void mix(const char* p) noexcept {
        _first = std::rotl(_first ^ (word<UInt64>(p) * K1), 29) * K2;
        _last = std::rotl(_last ^ (word<UInt64>(p + 8) * K2), 31) * K1;
    }

    UInt64 _first;
    UInt64 _last;
};

} // namespace Tamo

#endif
