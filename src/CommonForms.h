#ifndef TAMO_FASTINFOSET_COMMONFORMS_H
#define TAMO_FASTINFOSET_COMMONFORMS_H

#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// The common forms of integers and lengths (ITU-T X.891, C.22 to C.27), read from the octets that a
/// BitStreamReader on an octet boundary surely has.
///
/// A look ahead: the reader itself is advanced by its user, by consumedBits(). A form that is not common, or
/// that may reach past the cached octets, makes an operation return false (null); what has been consumed is
/// meaningless then. Every operation reads within the octet that first() yields, whose higher bits its user
/// has taken, and the octets behind it.
class CommonForms {
public:
    explicit CommonForms(const BitStreamReader& reader) noexcept {
        _left = reader.cachedOctets(_p);
        if (_left < ENOUGH || reader.bitPos() != 0) [[unlikely]] {
            _p = NOTHING;
            _left = 0;
        }
    }

    /// The octet that the next form begins in.
    unsigned char first() const noexcept { return *_p; }

    /// What has been read, up to the end of the last form.
    UInt64 consumedBits() const noexcept { return static_cast<UInt64>(_size) * 8; }

    /// An integer at bit position 1 (X.891, C.25).
    bool integerAtPosition1(unsigned int& val) noexcept {
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
    bool integerAtPosition2(unsigned int& val) noexcept {
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
    bool integerAtPosition3(unsigned int& val) noexcept {
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
    bool lengthAtPosition1(std::size_t& length) noexcept {
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
    bool lengthAtPosition4(std::size_t& length) noexcept {
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
    bool lengthAtPosition6(std::size_t& length) noexcept {
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

    /// The string of a length that was just read, or null when it is not there whole.
    const char* string(std::size_t length) noexcept {
        // An octet more than the string is wanted, so that the end of the source is met elsewhere.
        if (_left <= _size || _left - _size <= length) {
            return nullptr;
        }
        const char* const pString = reinterpret_cast<const char*>(_p) + _size;
        _size += length;
        return pString;
    }

private:
    // More than the integers and the length of one construct take.
    static constexpr std::size_t ENOUGH = 16;

    // Terminators, with which no form begins.
    static constexpr unsigned char NOTHING[ENOUGH] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                                      0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

    const unsigned char* _p = nullptr;
    std::size_t _left = 0;
    std::size_t _size = 0; // of the form read last
};

} // namespace Tamo::FastInfoset

#endif
