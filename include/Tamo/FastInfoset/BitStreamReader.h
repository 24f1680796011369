#ifndef TAMO_FASTINFOSET_BITSTREAMREADER_H
#define TAMO_FASTINFOSET_BITSTREAMREADER_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitMasks.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <memory>
#include <string>

namespace Tamo::FastInfoset {

/// Reads a byte stream or a memory block as a sequence of bits, most significant bit of each octet first.
///
/// A stream is read through a buffer of 1024 octets. As a rule a whole buffer is waited for and taken, so
/// that the stream may be read further than the document goes; with Waiting::FOR_OCTETS no octet is waited
/// for that is not asked for, and no octet is taken that is not read. A memory block is read in place and
/// must outlive the reader. Neither source is owned. Every read and peek returns true while input lasts
/// (`!eof()`); a read that straddles the end of a stream delivers zero bits for what is missing. A memory
/// block that runs out fails the assertion "_pStream", which those who use hasBits() first never meet. Used
/// by one thread at a time.
///
/// The narrow reads are inline: the branch taken while two whole octets are buffered neither refills nor
/// checks for the end; everything else goes the careful way (`peekSlow`).
class TAMO_API BitStreamReader {
    using Utility = BitMasks; // the name that stands in assertions

public:
    /// Octets read from a stream at a time.
    static constexpr std::size_t BUFFER_SIZE = 1024;

    /// What is waited for when a stream has to be read: a whole buffer or the end of the stream, or no more
    /// than the octets that are asked for.
    enum class Waiting { FOR_BLOCKS, FOR_OCTETS };

    /// Where its scope ends, also by an exception, the stream is left where it has been read to: consume().
    class Consumption {
    public:
        explicit Consumption(BitStreamReader& reader) noexcept : _reader(reader) {}
        Consumption(const Consumption&) = delete;
        Consumption& operator=(const Consumption&) = delete;
        ~Consumption() { _reader.consume(); }

    private:
        BitStreamReader& _reader;
    };

    /// A reader over a stream; nothing is read yet.
    explicit BitStreamReader(std::istream& istr, Waiting waiting = Waiting::FOR_BLOCKS);

    /// A reader over size octets at pBuffer.
    BitStreamReader(const char* pBuffer, std::size_t size);

    BitStreamReader(const BitStreamReader&) = delete;
    BitStreamReader& operator=(const BitStreamReader&) = delete;
    ~BitStreamReader();

    /// Reads one bit.
    bool read(bool& value) {
        unsigned char bit = 0;
        const bool ok = peekBits(bit, 1);
        ++_bitOffset;
        value = bit != 0;
        return ok;
    }

    /// Reads numBits bits (1 to 8) without advancing; other counts fail an assertion.
    bool peek(unsigned char& value, int numBits) {
        tamo_assert(checkInputParams(Utility::SIZEOFCHARINBIT, numBits));
        return peekBits(value, numBits);
    }
    bool peek(char& value, int numBits) {
        unsigned char bits = 0;
        const bool ok = peek(bits, numBits);
        value = static_cast<char>(bits);
        return ok;
    }

    /// Reads numBits bits (1 to 8) and advances by them, also at the end of the stream.
    bool read(unsigned char& value, int numBits) {
        const bool ok = peek(value, numBits);
        _bitOffset += static_cast<UInt64>(numBits);
        return ok;
    }
    bool read(char& value, int numBits) {
        const bool ok = peek(value, numBits);
        _bitOffset += static_cast<UInt64>(numBits);
        return ok;
    }

    /// Reads numBits bits (1 to 16).
    bool read(unsigned short& value, int numBits);
    bool read(short& value, int numBits);

    /// Reads numBits bits (1 to 32).
    bool read(unsigned int& value, int numBits);
    bool read(int& value, int numBits);

    /// Reads numBits bits (1 to 64).
    bool read(unsigned long& value, int numBits);
    bool read(long& value, int numBits);

    /// Reads numOctets whole octets into value, replacing it. From an octet boundary this is a block copy,
    /// and input that ends too early throws FISParseException; memory grows with what is really there.
    bool read(std::string& value, std::size_t numOctets);

    /// Advances by numBits bits. At most one buffer beyond the cached bits can be passed; a skip past the end
    /// of a memory block throws FISParseException.
    void skip(int numBits) {
        if (numBits >= 0 && unreadBits() > numBits) [[likely]] {
            _bitOffset += static_cast<UInt64>(numBits);
        } else {
            skipSlow(numBits);
        }
    }

    /// Advances to the next octet boundary if not on one.
    void skipToByteStart() {
        _bitOffset = (_bitOffset + 7) & ~static_cast<UInt64>(7);
        tamo_assert(cachedBits() >= 0);
        tamo_assert(_bitOffset % Utility::SIZEOFCHARINBIT == 0);
    }

    /// Bit position within the current octet, 0 (most significant) to 7.
    int bitPos() const noexcept { return static_cast<int>(_bitOffset & 7u); }

    /// Unread bits in the buffer; negative after a read past the end, limited to the range of int.
    int cachedBits() const noexcept {
        const Int64 bits = unreadBits();
        constexpr Int64 most = std::numeric_limits<int>::max();
        return static_cast<int>(bits < most ? bits : most);
    }

    /// True when the buffer is empty and the source has ended.
    bool eof() const;

    /// Discards the buffer and fills it from the stream.
    void refillBuffer();

    /// Fills the buffer from the stream, keeping the unread bits, when fewer than numBits are unread.
    void refillBufferIfLessThan(int numBits) {
        if (unreadBits() < numBits) {
            refillBufferIfLessThanImpl(numBits);
        }
    }

    /// Reads up to n octets from the stream into buf and returns their number, 0 at the end of the stream;
    /// throws IOException when the stream fails.
    std::streamsize readFromStream(char* buf, std::streamsize n);

    /// True when 1 <= numBits <= maxBits.
    bool checkInputParams(int maxBits, int& numBits) const noexcept {
        return numBits >= 1 && numBits <= maxBits;
    }

    /// The longest octet string or array, in octets, that Decoder reads through this reader; no limit by
    /// default.
    UInt64 maxStringLength() const noexcept { return _maxStringLength; }
    void setMaxStringLength(UInt64 maxStringLength) noexcept { _maxStringLength = maxStringLength; }

    /// Whether those who read constructs refuse what ITU-T X.891 does not allow; they do not by default.
    bool isStrict() const noexcept { return _strict; }
    void setStrict(bool flag) noexcept { _strict = flag; }

    /// Position of the next bit, in bits from the start of the source.
    UInt64 position() const noexcept { return _discardedBits + _bitOffset; }

    /// Keeps in mind that a construct begins in the octet of the next bit, or in one of those that
    /// cachedOctets() has told of.
    void beginConstruct() noexcept { _pConstruct = _pBuffer + (_bitOffset >> 3); }
    void beginConstruct(const unsigned char* pOctet) noexcept { _pConstruct = pOctet; }

    /// The octet in which the last of them begins, counted from the start of the source; 0 before.
    UInt64 constructOctet() const noexcept {
        return _pConstruct
                   ? _discardedBits / Utility::SIZEOFCHARINBIT + static_cast<UInt64>(_pConstruct - _pBuffer)
                   : _constructOctet;
    }

    /// The octets that have been taken from the source: of a memory block all.
    UInt64 obtained() const noexcept { return (_discardedBits + _cachedBits) / Utility::SIZEOFCHARINBIT; }

    /// The octets from the current one on that are surely there, when the reader stands on an octet boundary:
    /// their number, and in pOctets their address. Nothing is read or advanced.
    std::size_t cachedOctets(const unsigned char*& pOctets) const noexcept {
        pOctets = _pBuffer + (_bitOffset >> 3);
        return unreadBits() > 0 ? static_cast<std::size_t>(unreadBits() >> 3) : 0;
    }

    /// The octet that holds the next bit when it and all of the following octet are cached, else -1.
    int currentOctet() const noexcept { return unreadBits() >= 16 ? _pBuffer[_bitOffset >> 3] : -1; }

    /// True when numBits bits (1 to 64) can be read; fills the buffer when needed and never fails an
    /// assertion: for those who report the end of a source themselves.
    bool hasBits(int numBits) { return unreadBits() >= numBits || fillsUpTo(numBits); }

    /// True when a whole octet can be read.
    bool hasOctet() { return hasBits(Utility::SIZEOFCHARINBIT); }

    /// Whether no whole octet is left, as far as can be told without waiting for one (Waiting::FOR_OCTETS).
    bool isExhausted();

    /// What the reader of a stream waits for.
    Waiting waiting() const noexcept { return _waiting; }

    /// Takes from the stream the octets that have been read, that of the next bit too if it has been read in
    /// part, where they have only been looked at: with Waiting::FOR_OCTETS. Until then, and until more octets
    /// have to be waited for, those that were in the stream's buffer stay there.
    void consume() noexcept;

    /// Advances by numBits bits that the caller has seen to be cached.
    void advance(UInt64 numBits) noexcept { _bitOffset += numBits; }

    /// Goes on in another block: the octets from the current one on, on whose first bit the reader must
    /// stand, are these now. position() counts on. For a memory block only.
    void continueIn(const unsigned char* pOctets, std::size_t size);

    /// Goes to an octet among those that cachedOctets() has told of.
    void advanceTo(const unsigned char* pOctet) noexcept {
        _bitOffset = static_cast<UInt64>(pOctet - _pBuffer) * Utility::SIZEOFCHARINBIT;
    }

private:
    // What is in the buffer will be elsewhere.
    void leaveConstruct() noexcept {
        _constructOctet = constructOctet();
        _pConstruct = nullptr;
    }

    Int64 unreadBits() const noexcept { return static_cast<Int64>(_cachedBits - _bitOffset); }

    bool peekBits(unsigned char& value, int numBits) {
        if (unreadBits() >= 16) [[likely]] {
            const unsigned char* p = _pBuffer + (_bitOffset >> 3);
            const unsigned int pair = (static_cast<unsigned int>(p[0]) << 8) | p[1];
            const int shift = 16 - bitPos() - numBits;
            value = static_cast<unsigned char>((pair >> shift) & Utility::lowBitMask[numBits]);
            return true;
        }
        return peekSlow(value, numBits);
    }

    bool peekSlow(unsigned char& value, int numBits);
    bool fillsUpTo(int numBits);
    void skipSlow(int numBits);
    void refillBufferIfLessThanImpl(int numBits);
    void refillBufferWith(std::size_t needed);
    void fillFrom(std::size_t keep, std::size_t needed);
    std::size_t lookAhead(unsigned char* pFree, std::size_t most);
    void consumeUpTo(UInt64 octet) noexcept;
    void requireEnd() const;
    bool readUnaligned(std::string& value, std::size_t numOctets);

    std::istream* _pStream;
    UInt64 _cachedBits = 0;
    UInt64 _bitOffset = 0;
    UInt64 _discardedBits = 0;
    UInt64 _maxStringLength = std::numeric_limits<UInt64>::max();
    const unsigned char* _pBuffer;
    const unsigned char* _pConstruct = nullptr; // in the buffer; null: where _constructOctet says
    UInt64 _constructOctet = 0;
    bool _strict = false;
    Waiting _waiting = Waiting::FOR_BLOCKS;
    UInt64 _consumed = 0; // octets taken from a stream that is read octet by octet; obtained() are looked at
    std::unique_ptr<unsigned char[]> _pOwnBuffer;
};

} // namespace Tamo::FastInfoset

#endif
