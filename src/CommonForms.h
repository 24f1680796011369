#ifndef TAMO_FASTINFOSET_COMMONFORMS_H
#define TAMO_FASTINFOSET_COMMONFORMS_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// The common forms of integers and lengths (ITU-T X.891, C.22 to C.27), read from the octets that a
/// BitStreamReader surely has.
///
/// A place in those octets: it goes forward by accept(), and the reader is told by leave(). While there are
/// not areEnough() none of the other operations may be used. A form that is not common makes an operation
/// return false (null); nothing is consumed then, and what has been yielded is meaningless. Every operation
/// reads within the octet that first() yields, whose higher bits its user has taken, and the octets behind
/// it. A local variable whose address goes nowhere stays in registers: so all is inline, and what is not
/// common is read from the reader between leave() and enter().
class CommonForms {
public:
    TAMO_ALWAYS_INLINE explicit CommonForms(const BitStreamReader& reader) noexcept { enter(reader); }

    CommonForms(const CommonForms&) = delete;
    CommonForms& operator=(const CommonForms&) = delete;

    /// Begins where the reader stands; there are no octets when that is within one.
    TAMO_ALWAYS_INLINE void enter(const BitStreamReader& reader) noexcept {
        const std::size_t left = reader.cachedOctets(_p);
        if (left == 0 || reader.bitPos() != 0) [[unlikely]] {
            _p = nullptr;
        }
        _pEnd = _p ? _p + left : nullptr;
    }

    /// Puts the reader behind what has been accepted.
    TAMO_ALWAYS_INLINE void leave(BitStreamReader& reader) const noexcept {
        if (_p) [[likely]] {
            reader.advanceTo(_p);
        }
    }

    /// Whether there are as many octets as the integers and the length of one construct can take.
    TAMO_ALWAYS_INLINE bool areEnough() const noexcept { return _pEnd - _p >= ENOUGH; }

    /// The octet that the next form begins in.
    TAMO_ALWAYS_INLINE unsigned int first() const noexcept { return *_p; }

    /// Whether the octet that a list ends in is done with it: it ends something else too, or a child follows.
    /// Four other bits and an end behind them are no document.
    TAMO_ALWAYS_INLINE bool isEndWhole() const noexcept { return (*_p & 0x0F) == 0x0F || _p[1] < 0xF0; }

    /// Consumes the form that has been read last.
    TAMO_ALWAYS_INLINE void accept() noexcept { _p += _size; }

    /// Consumes the first octet.
    TAMO_ALWAYS_INLINE void acceptOctet() noexcept { ++_p; }

    /// An integer at bit position 1 (X.891, C.25).
    TAMO_ALWAYS_INLINE bool integerAtPosition1(unsigned int& val) noexcept {
        const unsigned int x = *_p & 0x7Fu;
        if (x < 64) {
            val = x + 1;
            _size = 1;
            return true;
        }
        if (x < 96) {
            val = ((x & 0x1Fu) << 8 | _p[1]) + 65;
            _size = 2;
            return true;
        }
        // The longest form, short of the values that may lie beyond 2^20 and of the four bits 1111.
        val = ((x & 0x0Fu) << 16 | static_cast<unsigned int>(_p[1]) << 8 | _p[2]) + 8257;
        _size = 3;
        return x < 111;
    }

    /// An integer at bit position 2 (X.891, C.27).
    TAMO_ALWAYS_INLINE bool integerAtPosition2(unsigned int& val) noexcept {
        const unsigned int x = *_p & 0x3Fu;
        if (x < 32) {
            val = x + 1;
            _size = 1;
            return true;
        }
        val = ((x & 7u) << 8 | _p[1]) + 33;
        _size = 2;
        return x < 40;
    }

    /// An integer at bit position 3 (X.891, C.28).
    TAMO_ALWAYS_INLINE bool integerAtPosition3(unsigned int& val) noexcept {
        const unsigned int x = *_p & 0x1Fu;
        if (x < 16) {
            val = x + 1;
            _size = 1;
            return true;
        }
        if (x < 20) {
            val = ((x & 3u) << 8 | _p[1]) + 17;
            _size = 2;
            return true;
        }
        val = ((x & 3u) << 16 | static_cast<unsigned int>(_p[1]) << 8 | _p[2]) + 1041;
        _size = 3;
        return x < 24;
    }

    /// A length at bit position 1 (X.891, C.22), up to 320.
    TAMO_ALWAYS_INLINE bool lengthAtPosition1(std::size_t& length) noexcept {
        const unsigned int x = *_p & 0x7Fu;
        if (x < 64) {
            length = x + 1;
            _size = 1;
            return true;
        }
        length = static_cast<std::size_t>(_p[1]) + 65;
        _size = 2;
        return x == 64;
    }

    /// A length at bit position 4 (X.891, C.23), up to 264.
    TAMO_ALWAYS_INLINE bool lengthAtPosition4(std::size_t& length) noexcept {
        const unsigned int x = *_p & 0x0Fu;
        if (x < 8) {
            length = x + 1;
            _size = 1;
            return true;
        }
        length = static_cast<std::size_t>(_p[1]) + 9;
        _size = 2;
        return x == 8;
    }

    /// A length at bit position 6 (X.891, C.24).
    TAMO_ALWAYS_INLINE bool lengthAtPosition6(std::size_t& length) noexcept {
        const unsigned int x = *_p & 0x03u;
        if (x < 2) {
            length = x + 1;
            _size = 1;
        } else if (x == 2) {
            length = static_cast<std::size_t>(_p[1]) + 3;
            _size = 2;
        } else {
            length = (static_cast<std::size_t>(_p[1]) << 24 | static_cast<std::size_t>(_p[2]) << 16 |
                      static_cast<std::size_t>(_p[3]) << 8 | _p[4]) +
                     259;
            _size = 5;
        }
        return true;
    }

    /// Consumes a length that has just been read and the string behind it; null when that is not there whole.
    TAMO_ALWAYS_INLINE const char* string(std::size_t length) noexcept {
        const unsigned char* const pString = _p + _size;
        // An octet more than the string is wanted, so that the end of the source is met elsewhere.
        if (static_cast<std::size_t>(_pEnd - pString) <= length) {
            return nullptr;
        }
        _p = pString + length;
        return reinterpret_cast<const char*>(pString);
    }

private:
    static constexpr std::ptrdiff_t ENOUGH = 6; // an index or a length in the longest form, twice

    const unsigned char* _p = nullptr;
    const unsigned char* _pEnd = nullptr;
    std::size_t _size = 0; // of the form read last
};

} // namespace Tamo::FastInfoset

#endif
