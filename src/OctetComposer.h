#ifndef TAMO_FASTINFOSET_OCTETCOMPOSER_H
#define TAMO_FASTINFOSET_OCTETCOMPOSER_H

#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/HashKey.h"
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Tamo::FastInfoset {

/// Composes the integers and strings of one construct (ITU-T X.891, C.22 to C.28) as whole octets and hands
/// them to a BitStreamWriter, which must be on an octet boundary, together.
///
/// The octets are those that Encoder writes bit by bit. The argument high holds the bits of the first octet
/// that stand before the integer or length. What has been composed when an exception passes is still written.
/// A local variable whose address goes nowhere stays in registers: so all is inline, and what is rare goes
/// through apart().
class OctetComposer {
public:
    TAMO_ALWAYS_INLINE explicit OctetComposer(BitStreamWriter& writer) noexcept
        : OctetComposer(writer, writer.placeOfRoom()) {}

    /// Composes in the place that the writer has just told.
    TAMO_ALWAYS_INLINE OctetComposer(BitStreamWriter& writer, std::streambuf* pBuf) noexcept
        : _writer(writer) {
        begin(pBuf);
    }

    OctetComposer(const OctetComposer&) = delete;
    OctetComposer& operator=(const OctetComposer&) = delete;

    TAMO_ALWAYS_INLINE ~OctetComposer() {
        if (_pNext) [[unlikely]] {
            rescue(_writer, _pBuf, _pNext);
        }
    }

    /// Hands over what has been composed; to be called at the end, and before the writer is used directly.
    TAMO_ALWAYS_INLINE void flush() {
        if (const char* const pEnd = _pNext) {
            _pNext = nullptr;
            _pEnd = nullptr; // so that next() asks for another room
            _writer.take(_pBuf, pEnd);
        }
    }

    /// Hands over what has been composed, lets write(composer) write what follows, and goes on behind that.
    /// What write has captured by reference has to be in memory for that.
    template<class Write>
    TAMO_ALWAYS_INLINE void apart(const Write& write) {
        const char* const pEnd = _pNext;
        _pNext = nullptr;
        begin(writeApart(_writer, _pBuf, pEnd, write));
    }

    /// Whether a value can be written as an integer at a bit position by the operations below. Encoder writes
    /// the others, or throws.
    static bool fitsPosition1(std::size_t val) noexcept { return val <= Encoder::MAXINT20; }
    static bool fitsPosition2(std::size_t val) noexcept { return val - 1 < 526368; }
    static bool fitsPosition3(std::size_t val) noexcept { return val - 1 < 263184; }

    /// An octet as it is.
    TAMO_ALWAYS_INLINE void octet(unsigned int value) { _pNext = put(next(), value); }

    /// An integer, 0 to 2^20, at bit position 1 (X.891, C.25).
    TAMO_ALWAYS_INLINE void integerAtPosition1(unsigned int high, std::size_t val) {
        if (val == 0) [[unlikely]] {
            octet(high | 0x7F);
        } else {
            integer<64, 0x40, 8256, 0x60>(high, val);
        }
    }

    /// An integer, 1 to 526368, at bit position 2 (X.891, C.27).
    TAMO_ALWAYS_INLINE void integerAtPosition2(unsigned int high, std::size_t val) {
        integer<32, 0x20, 2080, 0x28>(high, val);
    }

    /// An integer, 1 to 263184, at bit position 3 (X.891, C.28).
    TAMO_ALWAYS_INLINE void integerAtPosition3(unsigned int high, std::size_t val) {
        integer<16, 0x10, 1040, 0x14>(high, val);
    }

    /// The same for an integer that stands alone at p, where there is room for it; returns what is behind it.
    static TAMO_ALWAYS_INLINE char* integerAtPosition2(char* p, unsigned int high, std::size_t val) noexcept {
        return putInteger<32, 0x20, 2080, 0x28>(p, high, val);
    }
    static TAMO_ALWAYS_INLINE char* integerAtPosition3(char* p, unsigned int high, std::size_t val) noexcept {
        return putInteger<16, 0x10, 1040, 0x14>(p, high, val);
    }

    /// A string, not empty, whose length stands at bit position 1 (X.891, C.22).
    TAMO_ALWAYS_INLINE void stringAtPosition1(unsigned int high, std::string_view text) {
        char* p = next();
        const std::size_t size = text.size();
        if (size <= 64) {
            p = put(p, high | static_cast<unsigned int>(size - 1));
        } else if (size <= 320) {
            p = put(p, high | 0x40);
            p = put(p, static_cast<unsigned int>(size - 65));
        } else {
            p = put(p, high | 0x60);
            p = putLong(p, size - 321);
        }
        append(p, text);
    }

    /// A string, not empty, whose length stands at bit position 4 (X.891, C.23).
    TAMO_ALWAYS_INLINE void stringAtPosition4(unsigned int high, std::string_view text) {
        append(lengthAtPosition4(next(), high, text.size()), text);
    }

    /// A string, not empty, whose length stands at bit position 6 (X.891, C.24).
    TAMO_ALWAYS_INLINE void stringAtPosition6(unsigned int high, std::string_view text) {
        append(lengthAtPosition6(next(), high, text.size()), text);
    }

    /// The same for a string of this size that its key holds whole.
    TAMO_ALWAYS_INLINE void stringAtPosition4(unsigned int high, HashKey key, std::size_t size) {
        append(lengthAtPosition4(next(), high, size), key, size);
    }
    TAMO_ALWAYS_INLINE void stringAtPosition6(unsigned int high, HashKey key, std::size_t size) {
        append(lengthAtPosition6(next(), high, size), key, size);
    }

private:
    static constexpr std::size_t LONGEST_FORM = 8 + HashKey::MOST_EXACT;

    template<class Write>
    static TAMO_COLD std::streambuf* writeApart(BitStreamWriter& writer, std::streambuf* pBuf,
                                                const char* pEnd, const Write& write) {
        writer.take(pBuf, pEnd);
        OctetComposer composer(writer);
        write(composer);
        composer.flush();
        return writer.placeOfRoom();
    }

    // Another exception passes already.
    static void rescue(BitStreamWriter& writer, std::streambuf* pBuf, const char* pEnd) noexcept {
        try {
            writer.take(pBuf, pEnd);
        } catch (...) { // NOLINT(bugprone-empty-catch)
        }
    }

    TAMO_ALWAYS_INLINE void begin(std::streambuf* pBuf) noexcept {
        const BitStreamWriter::Room room = _writer.room(pBuf);
        _pBuf = pBuf;
        _pNext = room.pBegin;
        _pEnd = room.pEnd;
    }

    template<unsigned int MOST_IN_ONE, unsigned int TWO, unsigned int MOST_IN_TWO, unsigned int THREE>
    TAMO_ALWAYS_INLINE void integer(unsigned int high, std::size_t val) {
        _pNext = putInteger<MOST_IN_ONE, TWO, MOST_IN_TWO, THREE>(next(), high, val);
    }

    // An integer from 1 on in one octet, or with a mark in two or three.
    template<unsigned int MOST_IN_ONE, unsigned int TWO, unsigned int MOST_IN_TWO, unsigned int THREE>
    static TAMO_ALWAYS_INLINE char* putInteger(char* p, unsigned int high, std::size_t value) noexcept {
        auto val = static_cast<unsigned int>(value);
        if (val <= MOST_IN_ONE) {
            p = put(p, high | (val - 1));
        } else if (val <= MOST_IN_TWO) {
            val -= MOST_IN_ONE + 1;
            p = put(p, high | TWO | val >> 8);
            p = put(p, val);
        } else {
            val -= MOST_IN_TWO + 1;
            p = put(p, high | THREE | val >> 16);
            p = put(p, val >> 8);
            p = put(p, val);
        }
        return p;
    }

    // Where the longest form of what is no text has room.
    TAMO_ALWAYS_INLINE char* next() {
        if (_pEnd - _pNext < static_cast<std::ptrdiff_t>(LONGEST_FORM)) [[unlikely]] {
            flush();
            begin(_writer.placeOfRoom());
        }
        return _pNext;
    }

    static TAMO_ALWAYS_INLINE char* put(char* p, unsigned int octet) noexcept {
        *p = static_cast<char>(octet);
        return p + 1;
    }

    static char* putLong(char* p, std::size_t value) noexcept {
        p = put(p, static_cast<unsigned int>(value >> 24));
        p = put(p, static_cast<unsigned int>(value >> 16));
        p = put(p, static_cast<unsigned int>(value >> 8));
        return put(p, static_cast<unsigned int>(value));
    }

    static TAMO_ALWAYS_INLINE char* lengthAtPosition4(char* p, unsigned int high, std::size_t size) noexcept {
        if (size <= 8) {
            return put(p, high | static_cast<unsigned int>(size - 1));
        }
        if (size <= 264) {
            p = put(p, high | 0x08);
            return put(p, static_cast<unsigned int>(size - 9));
        }
        return putLong(put(p, high | 0x0C), size - 265);
    }

    static TAMO_ALWAYS_INLINE char* lengthAtPosition6(char* p, unsigned int high, std::size_t size) noexcept {
        if (size <= 2) {
            return put(p, high | static_cast<unsigned int>(size - 1));
        }
        if (size <= 258) {
            p = put(p, high | 0x02);
            return put(p, static_cast<unsigned int>(size - 3));
        }
        return putLong(put(p, high | 0x03), size - 259);
    }

    // There is room for the whole key; what is too much is overwritten by what follows.
    TAMO_ALWAYS_INLINE void append(char* p, HashKey key, std::size_t size) noexcept {
        key.copyTo(p);
        _pNext = p + size;
    }

    TAMO_ALWAYS_INLINE void append(char* p, std::string_view text) {
        _pNext = p;
        if (text.size() <= static_cast<std::size_t>(_pEnd - p)) [[likely]] {
            std::memcpy(p, text.data(), text.size());
            _pNext = p + text.size();
        } else {
            flush();
            _writer.write(text.data(), text.size());
            begin(_writer.placeOfRoom());
        }
    }

    BitStreamWriter& _writer;
    std::streambuf* _pBuf; // where the room is
    char* _pNext;          // null when nothing is left to hand over
    char* _pEnd;
};

} // namespace Tamo::FastInfoset

#endif
