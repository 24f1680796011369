#ifndef TAMO_FASTINFOSET_BITSTREAMWRITER_H
#define TAMO_FASTINFOSET_BITSTREAMWRITER_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/PutArea.h"
#include "Tamo/FastInfoset/Utility.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <cstring>
#include <ios>
#include <iosfwd>
#include <streambuf>
#include <string>

namespace Tamo::FastInfoset {

/// Packs values of 1 to 64 bits and octet strings into octets, most significant bit first.
///
/// Whole octets go to the stream's buffer as soon as they are complete; at most one partial octet is pending
/// between operations. The stream is borrowed, never closed, and flushed by complete() only. A stream that is
/// in any error state after a write or flush gives IOException. Used by one thread at a time.
class TAMO_API BitStreamWriter {
public:
    /// The most octets that are put into the stream's buffer in one go.
    static constexpr std::streamsize MOST_AT_ONCE = 1 << 20;

    /// A writer over ostr that pads with fillBit in complete().
    BitStreamWriter(std::ostream& ostr, bool fillBit);

    BitStreamWriter(const BitStreamWriter&) = delete;
    BitStreamWriter& operator=(const BitStreamWriter&) = delete;

    /// Completes the last octet; lets nothing out.
    virtual ~BitStreamWriter();

    /// Goes on with another stream, on an octet boundary. The last stream is left as it is: bits of an octet
    /// that is not complete are dropped.
    void reset(std::ostream& ostr);

    /// Appends one bit.
    void write(bool bit) { append(bit ? 1u : 0u, 1); }

    /// Appends count copies of bit.
    void writeBits(int count, bool bit);

    /// Appends the low numOfBits bits of value: 1 to 8, 16, 32 or 64 by the type; other counts fail an
    /// assertion.
    void write(unsigned char value, int numOfBits) {
        tamo_assert(checkInputParams(Utility::SIZEOFCHARINBIT, numOfBits));
        append(value, numOfBits);
    }
    void write(signed char value, int numOfBits) { write(static_cast<unsigned char>(value), numOfBits); }
    void write(unsigned short value, int numOfBits) {
        tamo_assert(checkInputParams(Utility::SIZEOFINT16INBIT, numOfBits));
        append(value, numOfBits);
    }
    void write(short value, int numOfBits) { write(static_cast<unsigned short>(value), numOfBits); }
    void write(unsigned int value, int numOfBits) {
        tamo_assert(checkInputParams(Utility::SIZEOFINT32INBIT, numOfBits));
        append(value, numOfBits);
    }
    void write(int value, int numOfBits) { write(static_cast<unsigned int>(value), numOfBits); }
    void write(unsigned long value, int numOfBits) {
        tamo_assert(checkInputParams(Utility::SIZEOFINT64INBIT, numOfBits));
        if (numOfBits > Utility::SIZEOFINT32INBIT) {
            append(static_cast<UInt64>(value) >> 32, numOfBits - Utility::SIZEOFINT32INBIT);
            numOfBits = Utility::SIZEOFINT32INBIT;
        }
        append(value, numOfBits);
    }
    void write(long value, int numOfBits) { write(static_cast<unsigned long>(value), numOfBits); }

    /// Appends whole octets; nothing for an empty string.
    void write(const std::string& octets) { write(octets.data(), octets.size()); }

    /// Appends the octets of a zero-terminated string without its terminator; nothing for null.
    void write(const char* str);

    /// Appends n octets; nothing when n is 0 or data is null.
    void write(const char* data, std::size_t n);

    /// Pads the partial octet with fillBit bits and flushes the stream.
    void complete(bool fillBit) {
        if (_pendingBits != 0) {
            const int missing = 8 - _pendingBits;
            append(fillBit ? Utility::lowBitMask[missing] : 0u, missing);
        }
        flush();
    }

    /// Pads with the constructor's fill bit and flushes the stream.
    void complete() { complete(_fillBit); }

    /// Appends the four bits 1111 that end a list (X.891, annex C), at bit position 0 or 4.
    TAMO_ALWAYS_INLINE void writeTerminator() {
        if (_pendingBits == 0) {
            _octet = static_cast<char>(0xF0);
            _pendingBits = 4;
        } else if (char* const pRoom = _pendingBits == 4 ? roomInStream(1) : nullptr) [[likely]] {
            *pRoom = static_cast<char>(_octet | 0x0F);
            advanceStream(1);
            _octet = 0;
            _pendingBits = 0;
        } else {
            write(0x0Fu, 4);
        }
    }

    /// Where whole octets are composed before take() sends them on.
    struct Room {
        char* pBegin;
        char* pEnd; ///< behind the last octet that there is room for
    };

    /// The least that a Room has room for, in octets.
    static constexpr std::size_t ROOM = 512;

    /// Starts a construct, that is complete(false), and tells where its octets are composed: in the stream's
    /// own buffer where that has room for ROOM octets or more, else in the writer, which null stands for.
    TAMO_ALWAYS_INLINE std::streambuf* startConstruct() {
        std::streambuf* const pBuf = _pIos->rdbuf(); // a stream that has none is not good
        if (!_pIos->good() || !isPlain() || !emitPending(*pBuf)) [[unlikely]] {
            complete(false);
            return placeOfRoom();
        }
        if (!synchronise(*pBuf)) [[unlikely]] {
            failStream();
        }
        return PutArea::room(*pBuf) >= ROOM ? pBuf : nullptr;
    }

    /// The same in the middle of a construct; pending bits are passed over.
    TAMO_ALWAYS_INLINE std::streambuf* placeOfRoom() noexcept {
        std::streambuf* const pBuf = _pIos->rdbuf();
        return pBuf && _pIos->good() && isPlain() && PutArea::room(*pBuf) >= ROOM ? pBuf : nullptr;
    }

    /// The room in that place, until the next operation.
    TAMO_ALWAYS_INLINE Room room(std::streambuf* pBuf) noexcept {
        return pBuf ? Room{PutArea::next(*pBuf), PutArea::end(*pBuf)} : Room{_own, _own + ROOM};
    }

    /// Takes over the octets from the beginning of the room in that place to before pEnd.
    TAMO_ALWAYS_INLINE void take(std::streambuf* pBuf, const char* pEnd) {
        if (pBuf) [[likely]] {
            PutArea::advance(*pBuf, static_cast<std::size_t>(pEnd - PutArea::next(*pBuf)));
        } else if (pEnd != _own) {
            write(_own, static_cast<std::size_t>(pEnd - _own));
        }
    }

    /// Bit number in the current octet that the next bit takes, 7 (most significant) to 0.
    int curBitOffsetInByte() const noexcept { return 7 - _pendingBits; }

    /// The pending octet: the bits written so far, left-aligned, the rest zero.
    char* curByte() noexcept { return &_octet; }

    /// Bit position within the current octet, 0 (most significant) to 7.
    int bitPos() const noexcept { return _pendingBits; }

    /// Sends complete octets to the stream; there are none left between operations.
    void writeFullBytes() noexcept {}

    /// Writes n octets to the stream past the pending bits.
    void writeToStream(const char* data, std::streamsize n) {
        char* const pRoom = n <= MOST_AT_ONCE ? roomInStream(static_cast<std::size_t>(n)) : nullptr;
        if (!pRoom) {
            transfer(data, n);
        } else {
            std::memcpy(pRoom, data, static_cast<std::size_t>(n));
            advanceStream(static_cast<std::size_t>(n));
        }
    }

    /// True when 1 <= numOfBits <= maxBits.
    bool checkInputParams(int maxBits, int& numOfBits) const noexcept {
        return numOfBits >= 1 && numOfBits <= maxBits;
    }

private:
    // Whether octets may be handed to the stream's buffer directly: nothing that std::ostream::write does
    // around the transfer is then missed.
    bool isPlain() const noexcept { return !_pIos->tie() && !(_pIos->flags() & std::ios_base::unitbuf); }

    // Where the next size octets of the stream go, past the pending bits. Null when the stream's buffer has
    // no such place, or the stream wants to know of each transfer or has failed: transfer() serves then.
    TAMO_ALWAYS_INLINE char* roomInStream(std::size_t size) const noexcept {
        const std::streambuf* const pBuf = _pIos->rdbuf();
        if (!pBuf || !_pIos->good() || !isPlain()) [[unlikely]] {
            return nullptr;
        }
        return PutArea::room(*pBuf) >= size ? PutArea::next(*pBuf) : nullptr;
    }

    // Takes over size octets that stand there.
    TAMO_ALWAYS_INLINE void advanceStream(std::size_t size) noexcept {
        PutArea::advance(*_pIos->rdbuf(), size);
    }

    void append(UInt64 value, int numOfBits) {
        const int pending = _pendingBits + numOfBits;
        if (pending < 8) {
            const unsigned int bits = static_cast<unsigned int>(value) & ((1u << numOfBits) - 1);
            _octet = static_cast<char>(static_cast<unsigned char>(_octet) | bits << (8 - pending));
            _pendingBits = pending;
        } else if (pending == 8) {
            const unsigned int bits = static_cast<unsigned int>(value) & ((1u << numOfBits) - 1);
            const char octet = static_cast<char>(static_cast<unsigned char>(_octet) | bits);
            _octet = 0;
            _pendingBits = 0;
            appendOctet(octet);
        } else {
            appendOctets(value, numOfBits);
        }
    }

    // The partial octet with zeros, if there is room for it.
    TAMO_ALWAYS_INLINE bool emitPending(std::streambuf& buf) noexcept {
        if (_pendingBits != 0) {
            if (PutArea::room(buf) == 0) [[unlikely]] {
                return false;
            }
            PutArea::put(buf, [this](char* p) {
                *p = _octet;
                return p + 1;
            });
            _octet = 0;
            _pendingBits = 0;
        }
        return true;
    }

    void appendOctet(char octet) {
        if (char* const pRoom = roomInStream(1)) [[likely]] {
            *pRoom = octet;
            advanceStream(1);
        } else {
            transfer(&octet, 1);
        }
    }

    void appendOctets(UInt64 value, int numOfBits);
    void writeUnaligned(const char* data, std::size_t n);
    void transfer(const char* data, std::streamsize n);

    void flush() {
        if (!_pIos->rdbuf() || !_pIos->good() || !isPlain()) [[unlikely]] {
            flushStream();
        } else if (!synchronise(*_pIos->rdbuf()) || !_pIos->good()) [[unlikely]] {
            failStream();
        }
    }

    TAMO_ALWAYS_INLINE bool synchronise(std::streambuf& buf) const noexcept {
        if (PutArea::syncOf(buf) == _pDefaultSync) {
            return true;
        }
        try {
            return buf.pubsync() != -1;
        } catch (...) {
            return false;
        }
    }

    void flushStream();
    [[noreturn]] void failStream();

    std::ostream* _pStream;
    std::ios* _pIos; // the same stream; its virtual base is looked up once
    PutArea::Sync _pDefaultSync = PutArea::defaultSync();
    bool _fillBit;
    int _pendingBits = 0;
    char _octet = 0;
    char _own[ROOM];
};

} // namespace Tamo::FastInfoset

#endif
