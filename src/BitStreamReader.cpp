#include "Tamo/FastInfoset/BitStreamReader.h"
#include "GetArea.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>
#include <cstring>
#include <istream>

namespace Tamo::FastInfoset {

namespace {

// A narrow read may look one octet beyond the valid data; these octets are always zero.
constexpr std::size_t ZERO_OCTETS = 8;

constexpr unsigned char NOTHING = 0;

constexpr const char* OCTET_STRING_END = "Unexpected end of stream while parsing octet string";

} // namespace

BitStreamReader::BitStreamReader(std::istream& istr, Waiting waiting)
    : _pStream(&istr), _waiting(waiting), _pOwnBuffer(new unsigned char[BUFFER_SIZE + ZERO_OCTETS]) {
    std::memset(_pOwnBuffer.get(), 0, BUFFER_SIZE + ZERO_OCTETS);
    _pBuffer = _pOwnBuffer.get();
}

BitStreamReader::BitStreamReader(const char* pBuffer, std::size_t size)
    : _pStream(nullptr),
      _cachedBits(static_cast<UInt64>(size) * 8),
      _pBuffer(reinterpret_cast<const unsigned char*>(pBuffer)) {}

BitStreamReader::~BitStreamReader() = default;

bool BitStreamReader::peekSlow(unsigned char& value, int numBits) {
    refillBufferIfLessThan(numBits);
    const unsigned char* p = _pBuffer + (_bitOffset >> 3);
    const int end = bitPos() + numBits;
    if (end > 8) {
        // A memory block that holds all the bits holds the second octet too; a stream buffer has zeros
        // behind.
        const int low = end - 8;
        const int high = numBits - low;
        value = static_cast<unsigned char>(((p[0] & Utility::lowBitMask[high]) << low) + (p[1] >> (8 - low)));
    } else {
        value = static_cast<unsigned char>((p[0] >> (8 - end)) & Utility::lowBitMask[numBits]);
    }
    return !eof();
}

bool BitStreamReader::fillsUpTo(int numBits) {
    if (_pStream && unreadBits() >= 0) {
        refillBufferIfLessThan(numBits);
    }
    return unreadBits() >= numBits;
}

// Each wider read splits into a high part and a low part of half the width. A high part that fails ends the
// read, because the input cannot come back.

bool BitStreamReader::read(unsigned short& value, int numBits) {
    tamo_assert(checkInputParams(Utility::SIZEOFINT16INBIT, numBits));
    unsigned char high = 0;
    unsigned char low = 0;
    bool ok = true;
    if (numBits > Utility::SIZEOFCHARINBIT) {
        ok = read(high, numBits - Utility::SIZEOFCHARINBIT);
        numBits = Utility::SIZEOFCHARINBIT;
    }
    ok = ok && read(low, numBits);
    value = static_cast<unsigned short>((high << 8) | low);
    return ok;
}

bool BitStreamReader::read(short& value, int numBits) {
    unsigned short bits = 0;
    const bool ok = read(bits, numBits);
    value = static_cast<short>(bits);
    return ok;
}

bool BitStreamReader::read(unsigned int& value, int numBits) {
    tamo_assert(checkInputParams(Utility::SIZEOFINT32INBIT, numBits));
    unsigned short high = 0;
    unsigned short low = 0;
    bool ok = true;
    if (numBits > Utility::SIZEOFINT16INBIT) {
        ok = read(high, numBits - Utility::SIZEOFINT16INBIT);
        numBits = Utility::SIZEOFINT16INBIT;
    }
    ok = ok && read(low, numBits);
    value = (static_cast<unsigned int>(high) << 16) | low;
    return ok;
}

bool BitStreamReader::read(int& value, int numBits) {
    unsigned int bits = 0;
    const bool ok = read(bits, numBits);
    value = static_cast<int>(bits);
    return ok;
}

bool BitStreamReader::read(unsigned long& value, int numBits) {
    tamo_assert(checkInputParams(Utility::SIZEOFINT64INBIT, numBits));
    unsigned int high = 0;
    unsigned int low = 0;
    bool ok = true;
    if (numBits > Utility::SIZEOFINT32INBIT) {
        ok = read(high, numBits - Utility::SIZEOFINT32INBIT);
        numBits = Utility::SIZEOFINT32INBIT;
    }
    ok = ok && read(low, numBits);
    value = static_cast<unsigned long>((static_cast<UInt64>(high) << 32) | low);
    return ok;
}

bool BitStreamReader::read(long& value, int numBits) {
    unsigned long bits = 0;
    const bool ok = read(bits, numBits);
    value = static_cast<long>(bits);
    return ok;
}

bool BitStreamReader::read(std::string& value, std::size_t numOctets) {
    value.clear();
    if (numOctets == 0) {
        return true;
    }
    if (bitPos() != 0) {
        return readUnaligned(value, numOctets);
    }
    std::size_t remaining = numOctets;
    for (;;) {
        const unsigned char* p = nullptr;
        const std::size_t count = std::min(cachedOctets(p), remaining);
        value.append(reinterpret_cast<const char*>(p), count);
        _bitOffset += static_cast<UInt64>(count) * 8;
        remaining -= count;
        if (remaining == 0) {
            return !eof();
        }
        if (!_pStream) {
            throw FISParseException(OCTET_STRING_END);
        }
        refillBuffer();
        if (_cachedBits == 0) {
            throw FISParseException(OCTET_STRING_END);
        }
    }
}

bool BitStreamReader::readUnaligned(std::string& value, std::size_t numOctets) {
    bool ok = true;
    for (std::size_t i = 0; i < numOctets && ok; ++i) {
        if (!_pStream && unreadBits() < 8) {
            throw FISParseException(OCTET_STRING_END);
        }
        char octet = 0;
        ok = read(octet, 8);
        if (ok) {
            value.push_back(octet);
        }
    }
    return ok;
}

void BitStreamReader::skipSlow(int numBits) {
    tamo_assert(numBits >= 0);
    const Int64 beyond = numBits - unreadBits();
    if (beyond < 0 || (beyond == 0 && (!_pStream || _waiting == Waiting::FOR_OCTETS))) {
        _bitOffset += static_cast<UInt64>(numBits);
        return;
    }
    if (!_pStream) {
        throw FISParseException(OCTET_STRING_END);
    }
    refillBufferWith((static_cast<std::size_t>(beyond) + 7) / 8);
    _bitOffset = static_cast<UInt64>(beyond);
}

void BitStreamReader::continueIn(const unsigned char* pOctets, std::size_t size) {
    tamo_assert(!_pStream);
    tamo_assert(bitPos() == 0);
    leaveConstruct();
    _discardedBits += _bitOffset;
    _bitOffset = 0;
    _cachedBits = static_cast<UInt64>(size) * Utility::SIZEOFCHARINBIT;
    _pBuffer = size != 0 ? pOctets : &NOTHING; // where there are none a construct may begin, too
}

bool BitStreamReader::eof() const {
    return _cachedBits == 0 && (!_pStream || _pStream->eof());
}

bool BitStreamReader::isExhausted() {
    if (_waiting == Waiting::FOR_OCTETS) {
        return unreadBits() < Utility::SIZEOFCHARINBIT && _pStream->eof();
    }
    return !hasOctet();
}

void BitStreamReader::refillBuffer() {
    refillBufferWith(1);
}

void BitStreamReader::refillBufferWith(std::size_t needed) {
    tamo_assert(_pStream);
    leaveConstruct();
    _discardedBits += _cachedBits;
    _bitOffset = 0;
    fillFrom(0, needed);
}

void BitStreamReader::refillBufferIfLessThanImpl(int numBits) {
    const int unreadBits = cachedBits();
    tamo_assert(unreadBits >= 0);
    tamo_assert(_pStream);
    const std::size_t keep = (static_cast<std::size_t>(unreadBits) + 7) / 8;
    if (unreadBits > 0) {
        tamo_assert(_cachedBits % Utility::SIZEOFCHARINBIT == 0);
        std::memmove(_pOwnBuffer.get(), _pOwnBuffer.get() + _cachedBits / 8 - keep, keep);
    }
    leaveConstruct();
    _discardedBits += (_bitOffset - _bitOffset % 8);
    _bitOffset %= 8;
    fillFrom(keep, (static_cast<std::size_t>(bitPos() + numBits) + 7) / 8);
}

// Behind the octets that are kept: as many as there are, or, where octets are waited for one by one, as many
// as are at hand when there are the needed ones.
void BitStreamReader::fillFrom(std::size_t keep, std::size_t needed) {
    // The count is settled before the read, so that a stream that throws leaves no unread octets twice.
    _cachedBits = static_cast<UInt64>(keep) * 8;
    std::size_t valid = keep;
    std::size_t count = 0;
    do {
        unsigned char* const pFree = _pOwnBuffer.get() + valid;
        const std::size_t most = BUFFER_SIZE - valid;
        count = _waiting == Waiting::FOR_OCTETS
                    ? lookAhead(pFree, most)
                    : static_cast<std::size_t>(
                          readFromStream(reinterpret_cast<char*>(pFree), static_cast<std::streamsize>(most)));
        valid += count;
        _cachedBits += static_cast<UInt64>(count) * 8;
    } while (_waiting == Waiting::FOR_OCTETS && count > 0 && valid < std::min(needed, BUFFER_SIZE));
    // Octets behind the valid data are zero, never stale.
    std::memset(_pOwnBuffer.get() + valid, 0, ZERO_OCTETS);
}

// Waits for an octet and copies what the stream's buffer has then, up to most octets, which stay there; 0 at
// the end of the stream. What was looked at before is surely needed now, be it read or the beginning of what
// is to be read.
std::size_t BitStreamReader::lookAhead(unsigned char* pFree, std::size_t most) {
    constexpr int END = std::istream::traits_type::eof();
    consumeUpTo(obtained());
    if (_pStream->peek() != END) {
        const std::streambuf& buf = *_pStream->rdbuf();
        const std::size_t count = std::min(GetArea::left(buf), most);
        if (count > 0) {
            std::memcpy(pFree, GetArea::next(buf), count);
            return count;
        }
        // A buffer that shows no octets: it hands them out one by one.
        const int octet = _pStream->get();
        if (octet != END) {
            *pFree = static_cast<unsigned char>(octet);
            ++_consumed;
            return 1;
        }
    }
    requireEnd();
    return 0;
}

void BitStreamReader::consume() noexcept {
    if (_waiting == Waiting::FOR_OCTETS) {
        consumeUpTo(std::min((position() + 7) / 8, obtained()));
    }
}

void BitStreamReader::consumeUpTo(UInt64 octet) noexcept {
    if (octet > _consumed) {
        // A handler may have read from the buffer, too, or put another one in its place.
        if (std::streambuf* const pBuf = _pStream->rdbuf()) {
            GetArea::advance(*pBuf,
                             std::min(static_cast<std::size_t>(octet - _consumed), GetArea::left(*pBuf)));
        }
        _consumed = octet;
    }
}

std::streamsize BitStreamReader::readFromStream(char* buf, std::streamsize n) {
    tamo_assert(_pStream);
    _pStream->read(buf, n);
    const std::streamsize count = _pStream->gcount();
    if (count == 0) {
        requireEnd();
    }
    return count;
}

// A stream that has yielded nothing must have ended.
void BitStreamReader::requireEnd() const {
    if (!_pStream->good() && !_pStream->eof()) {
        throw IOException("error reading stream while parsing Fast Infoset document");
    }
}

} // namespace Tamo::FastInfoset
