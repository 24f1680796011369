#ifndef TAMO_FASTINFOSET_BITSTREAMWRITER_H
#define TAMO_FASTINFOSET_BITSTREAMWRITER_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitMasks.h"
#include "Tamo/Sink.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <ios>
#include <iosfwd>
#include <streambuf>
#include <string>

namespace Tamo::FastInfoset {

/// Packs values of 1 to 64 bits and octet strings into octets, most significant bit first.
///
/// Whole octets go to the stream's buffer as soon as they are complete; at most one partial octet is pending
/// between operations. The stream is borrowed, never closed, and flushed by complete(), unless that is
/// switched off, and flush() only. A stream that is in any error state after a write or flush gives
/// IOException; one whose exceptions() ask for it throws what std::ostream::write and flush throw, the
/// buffer's own exception included. In the place of a stream stands a Sink, which lets out what it throws,
/// and gives IOException when it takes less than it is offered.
///
/// As the operations of std::ostream do, this puts octets into the put area of the stream's buffer where that
/// has room, without a virtual call, and hands all others to xsputn. Nothing behind the last octet written is
/// touched. Used by one thread at a time.
class TAMO_API BitStreamWriter {
    using Utility = BitMasks; // the name that stands in assertions

public:
    /// The most octets that are put into the stream's buffer in one go.
    static constexpr std::streamsize MOST_AT_ONCE = 1 << 20;

    /// A writer over ostr that pads with fillBit in complete().
    BitStreamWriter(std::ostream& ostr, bool fillBit);
    BitStreamWriter(Sink& sink, bool fillBit);

    BitStreamWriter(const BitStreamWriter&) = delete;
    BitStreamWriter& operator=(const BitStreamWriter&) = delete;

    /// Completes the last octet for a stream; a sink, which may have ended, is left as it is. Lets nothing
    /// out.
    virtual ~BitStreamWriter();

    /// Goes on with another stream or sink, on an octet boundary. The last one is left as it is: bits of an
    /// octet that is not complete are dropped.
    void reset(std::ostream& ostr) { use(&ostr, nullptr); }
    void reset(Sink& sink) { use(nullptr, &sink); }

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

    /// Whether complete() flushes, which it does at first.
    void setFlushing(bool flag) noexcept { _flushes = flag; }

    /// Flushes the stream, or has the sink deliver, whatever setFlushing() says; a partial octet stays here.
    void flush();

    /// Pads the partial octet with fillBit bits and flushes the stream or sink.
    void complete(bool fillBit) {
        if (_pendingBits != 0) {
            const int missing = 8 - _pendingBits;
            append(fillBit ? Utility::lowBitMask[missing] : 0u, missing);
        }
        if (_flushes) {
            synchronise();
        }
    }

    /// Pads with the constructor's fill bit and flushes the stream or sink.
    void complete() { complete(_fillBit); }

    /// Bit number in the current octet that the next bit takes, 7 (most significant) to 0.
    int curBitOffsetInByte() const noexcept { return 7 - _pendingBits; }

    /// The pending octet: the bits written so far, left-aligned, the rest zero.
    char* curByte() noexcept { return &_octet; }

    /// Bit position within the current octet, 0 (most significant) to 7.
    int bitPos() const noexcept { return _pendingBits; }

    /// Whether octets go to a sink.
    bool hasSink() const noexcept { return _pSink != nullptr; }

    /// Sends complete octets to the stream; there are none left between operations.
    void writeFullBytes() noexcept {}

    /// Writes n octets to the stream past the pending bits.
    void writeToStream(const char* data, std::streamsize n);

    /// True when 1 <= numOfBits <= maxBits.
    bool checkInputParams(int maxBits, int& numOfBits) const noexcept {
        return numOfBits >= 1 && numOfBits <= maxBits;
    }

protected:
    /// Whether octets may be handed to the stream's buffer directly: nothing that std::ostream::write does
    /// around the transfer is then missed.
    bool isPlain() const noexcept {
        return !_pIos || (_pIos->good() && !_pIos->tie() && !(_pIos->flags() & std::ios_base::unitbuf));
    }

    /// The stream's, which may have none and is not good then, or the sink.
    std::streambuf* buffer() const noexcept { return _pIos ? _pIos->rdbuf() : _pSink; }

    std::ios* _pIos;      ///< the stream, whose virtual base is looked up once, or null
    Sink* _pSink;         ///< the sink in the place of a stream, or null
    int _pendingBits = 0; ///< those of the octet that is not complete
    char _octet = 0;      ///< they, with zeros behind
    bool _flushes = true; ///< whether complete() flushes

private:
    void append(UInt64 value, int numOfBits) {
        const int pending = _pendingBits + numOfBits;
        if (pending < 8) {
            const unsigned int bits = static_cast<unsigned int>(value) & ((1u << numOfBits) - 1);
            _octet = static_cast<char>(static_cast<unsigned char>(_octet) | bits << (8 - pending));
            _pendingBits = pending;
        } else {
            appendOctets(value, numOfBits);
        }
    }

    void appendOctets(UInt64 value, int numOfBits);
    void writeUnaligned(const char* data, std::size_t n);
    void transfer(const char* data, std::streamsize n);
    void synchronise();
    void use(std::ostream* pStream, Sink* pSink);

    std::ostream* _pStream; // the same stream
    bool _fillBit;
};

} // namespace Tamo::FastInfoset

#endif
