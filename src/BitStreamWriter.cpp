#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "PutArea.h"
#include "Tamo/Exception.h"
#include <cstring>
#include <ostream>
#include <streambuf>

namespace Tamo::FastInfoset {

namespace {

[[noreturn]] void throwWriteError() {
    throw IOException("error while writing Fast Infoset document to stream");
}

} // namespace

BitStreamWriter::BitStreamWriter(std::ostream& ostr, bool fillBit) : _fillBit(fillBit) {
    reset(ostr);
}

BitStreamWriter::BitStreamWriter(Sink& sink, bool fillBit) : _fillBit(fillBit) {
    reset(sink);
}

BitStreamWriter::~BitStreamWriter() {
    if (hasSink()) {
        return;
    }
    try {
        complete();
    } catch (...) {
        try {
            tamo_unexpected();
        } catch (...) { // NOLINT(bugprone-empty-catch): a destructor lets nothing out
        }
    }
}

void BitStreamWriter::use(std::ostream* pStream, Sink* pSink) {
    _pStream = pStream;
    _pIos = pStream;
    _pSink = pSink;
    _pendingBits = 0;
    _octet = 0;
}

void BitStreamWriter::appendOctets(UInt64 value, int numOfBits) {
    // At most 7 pending bits and 32 new ones: they fit one word.
    const UInt64 mask = (static_cast<UInt64>(1) << numOfBits) - 1;
    const auto pending = static_cast<unsigned char>(_octet);
    const UInt64 bits = (static_cast<UInt64>(pending >> (8 - _pendingBits)) << numOfBits) | (value & mask);
    int count = _pendingBits + numOfBits;
    char octets[8];
    std::size_t size = 0;
    for (; count >= 8; ++size) {
        count -= 8;
        octets[size] = static_cast<char>(bits >> count);
    }
    _pendingBits = count;
    _octet = count == 0 ? '\0' : static_cast<char>(bits << (8 - count));
    writeToStream(octets, static_cast<std::streamsize>(size));
}

void BitStreamWriter::writeBits(int count, bool bit) {
    for (int i = 0; i < count; ++i) {
        write(bit);
    }
}

void BitStreamWriter::write(const char* str) {
    if (str) {
        write(str, std::strlen(str));
    }
}

void BitStreamWriter::write(const char* data, std::size_t n) {
    if (n == 0 || !data) {
        return;
    }
    if (_pendingBits == 0) {
        writeToStream(data, static_cast<std::streamsize>(n));
    } else {
        writeUnaligned(data, n);
    }
}

void BitStreamWriter::writeUnaligned(const char* data, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        append(static_cast<unsigned char>(data[i]), 8);
    }
}

void BitStreamWriter::writeToStream(const char* data, std::streamsize n) {
    std::streambuf* const pBuf = buffer();
    const auto size = static_cast<std::size_t>(n);
    if (n > MOST_AT_ONCE || !isPlain() || !pBuf || PutArea::left(*pBuf) < size) {
        transfer(data, n);
        return;
    }
    std::memcpy(PutArea::next(*pBuf), data, size);
    PutArea::advance(*pBuf, size);
}

void BitStreamWriter::synchronise() {
    std::streambuf* const pBuf = buffer();
    if (isPlain() && pBuf && PutArea::syncOf(*pBuf) == PutArea::defaultSync()) {
        return;
    }
    if (hasSink()) {
        if (_pSink->pubsync() == -1) {
            throwWriteError();
        }
        return;
    }
    flush();
}

void BitStreamWriter::flush() {
    if (hasSink()) {
        _pSink->deliver();
        return;
    }
    _pStream->flush();
    if (!_pIos->good()) {
        throwWriteError();
    }
}

void BitStreamWriter::transfer(const char* data, std::streamsize n) {
    if (hasSink()) {
        if (_pSink->sputn(data, n) != n) {
            throwWriteError();
        }
        return;
    }
    _pStream->write(data, n);
    if (!_pIos->good()) {
        throwWriteError();
    }
}

} // namespace Tamo::FastInfoset
