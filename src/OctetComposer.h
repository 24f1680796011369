#ifndef TAMO_FASTINFOSET_OCTETCOMPOSER_H
#define TAMO_FASTINFOSET_OCTETCOMPOSER_H

#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Encoder.h"
#include <cstddef>
#include <cstring>

namespace Tamo::FastInfoset {

/// Composes the integers and strings of one construct (ITU-T X.891, C.22 to C.28) as whole octets and hands
/// them to a BitStreamWriter, which must be on an octet boundary, together.
///
/// The octets are those that Encoder writes bit by bit. The argument high holds the bits of the first octet
/// that stand before the integer or length. What has been composed when an exception passes is still written.
class OctetComposer {
public:
    explicit OctetComposer(BitStreamWriter& writer) noexcept : _writer(writer) {}

    OctetComposer(const OctetComposer&) = delete;
    OctetComposer& operator=(const OctetComposer&) = delete;

    ~OctetComposer() {
        try {
            flush();
        } catch (...) { // NOLINT(bugprone-empty-catch): another exception passes already
        }
    }

    /// Hands over what has been composed; to be called at the end.
    void flush() {
        const std::size_t size = _size;
        _size = 0;
        if (size != 0) {
            _writer.write(_octets, size);
        }
    }

    /// Whether a value can be written as an integer at a bit position by the operations below. Encoder writes
    /// the others, or throws.
    static bool fitsPosition1(unsigned int val) noexcept { return val <= Encoder::MAXINT20; }
    static bool fitsPosition2(unsigned int val) noexcept { return val - 1 < 526368; }
    static bool fitsPosition3(unsigned int val) noexcept { return val - 1 < 263184; }

    /// An octet as it is.
    void octet(unsigned int value) {
        makeRoom();
        put(value);
    }

    /// An integer, 0 to 2^20, at bit position 1 (X.891, C.25).
    void integerAtPosition1(unsigned int high, unsigned int val) {
        makeRoom();
        if (val - 1 < 64) {
            put(high | (val - 1));
        } else if (val == 0) {
            put(high | 0x7F);
        } else if (val <= 8256) {
            put(high | 0x40 | (val - 65) >> 8);
            put(val - 65);
        } else {
            put(high | 0x60 | (val - 8257) >> 16);
            put((val - 8257) >> 8);
            put(val - 8257);
        }
    }

    /// An integer, 1 to 526368, at bit position 2 (X.891, C.27).
    void integerAtPosition2(unsigned int high, unsigned int val) {
        makeRoom();
        if (val <= 32) {
            put(high | (val - 1));
        } else if (val <= 2080) {
            put(high | 0x20 | (val - 33) >> 8);
            put(val - 33);
        } else {
            put(high | 0x28 | (val - 2081) >> 16);
            put((val - 2081) >> 8);
            put(val - 2081);
        }
    }

    /// An integer, 1 to 263184, at bit position 3 (X.891, C.28).
    void integerAtPosition3(unsigned int high, unsigned int val) {
        makeRoom();
        if (val <= 16) {
            put(high | (val - 1));
        } else if (val <= 1040) {
            put(high | 0x10 | (val - 17) >> 8);
            put(val - 17);
        } else {
            put(high | 0x14 | (val - 1041) >> 16);
            put((val - 1041) >> 8);
            put(val - 1041);
        }
    }

    /// A string, not empty, whose length stands at bit position 1 (X.891, C.22).
    void stringAtPosition1(unsigned int high, const char* pOctets, std::size_t size) {
        makeRoom();
        if (size <= 64) {
            put(high | static_cast<unsigned int>(size - 1));
        } else if (size <= 320) {
            put(high | 0x40);
            put(static_cast<unsigned int>(size - 65));
        } else {
            put(high | 0x60);
            putLong(size - 321);
        }
        append(pOctets, size);
    }

    /// A string, not empty, whose length stands at bit position 4 (X.891, C.23).
    void stringAtPosition4(unsigned int high, const char* pOctets, std::size_t size) {
        makeRoom();
        if (size <= 8) {
            put(high | static_cast<unsigned int>(size - 1));
        } else if (size <= 264) {
            put(high | 0x08);
            put(static_cast<unsigned int>(size - 9));
        } else {
            put(high | 0x0C);
            putLong(size - 265);
        }
        append(pOctets, size);
    }

    /// A string, not empty, whose length stands at bit position 6 (X.891, C.24).
    void stringAtPosition6(unsigned int high, const char* pOctets, std::size_t size) {
        makeRoom();
        if (size <= 2) {
            put(high | static_cast<unsigned int>(size - 1));
        } else if (size <= 258) {
            put(high | 0x02);
            put(static_cast<unsigned int>(size - 3));
        } else {
            put(high | 0x03);
            putLong(size - 259);
        }
        append(pOctets, size);
    }

private:
    static constexpr std::size_t ROOM = 512;
    static constexpr std::size_t LONGEST_FORM = 8;

    void makeRoom() {
        if (_size > ROOM - LONGEST_FORM) [[unlikely]] {
            flush();
        }
    }

    void put(unsigned int octet) noexcept { _octets[_size++] = static_cast<char>(octet); }

    void putLong(std::size_t value) noexcept {
        put(static_cast<unsigned int>(value >> 24));
        put(static_cast<unsigned int>(value >> 16));
        put(static_cast<unsigned int>(value >> 8));
        put(static_cast<unsigned int>(value));
    }

    void append(const char* pOctets, std::size_t size) {
        if (size <= 16 && _size + 16 <= ROOM) {
            // Two moves of a fixed size each: shorter strings are most of all strings.
            appendShort(pOctets, size);
        } else if (size <= ROOM - _size) {
            std::memcpy(_octets + _size, pOctets, size);
            _size += size;
        } else {
            flush();
            _writer.write(pOctets, size);
        }
    }

    void appendShort(const char* pOctets, std::size_t size) noexcept {
        char* const p = _octets + _size;
        _size += size;
        if (size >= 8) {
            std::memcpy(p, pOctets, 8);
            std::memcpy(p + size - 8, pOctets + size - 8, 8);
        } else if (size >= 4) {
            std::memcpy(p, pOctets, 4);
            std::memcpy(p + size - 4, pOctets + size - 4, 4);
        } else {
            p[0] = pOctets[0];
            p[size / 2] = pOctets[size / 2];
            p[size - 1] = pOctets[size - 1];
        }
    }

    BitStreamWriter& _writer;
    std::size_t _size = 0;
    char _octets[ROOM];
};

} // namespace Tamo::FastInfoset

#endif
