#include "Tamo/FastInfoset/BitStreamWriter.h"
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

BitStreamWriter::BitStreamWriter(std::ostream& ostr, bool fillBit)
    : _pStream(&ostr), _pIos(&ostr), _fillBit(fillBit) {}

BitStreamWriter::~BitStreamWriter() {
    try {
        complete();
    } catch (...) {
        try {
            tamo_unexpected();
        } catch (...) { // NOLINT(bugprone-empty-catch): a destructor lets nothing out
        }
    }
}

void BitStreamWriter::reset(std::ostream& ostr) {
    _pStream = &ostr;
    _pIos = &ostr;
    _pendingBits = 0;
    _octet = 0;
}

void BitStreamWriter::appendOctets(UInt64 value, int numOfBits) {
    // At most 7 pending bits and 32 new ones: they fit one word.
    const UInt64 mask = (static_cast<UInt64>(1) << numOfBits) - 1;
    const auto pending = static_cast<unsigned char>(_octet);
    const UInt64 bits = (static_cast<UInt64>(pending >> (8 - _pendingBits)) << numOfBits) | (value & mask);
    int count = _pendingBits + numOfBits;
    char octets[8] = {};
    std::size_t size = 0;
    while (count >= 8) {
        count -= 8;
        octets[size++] = static_cast<char>(bits >> count);
    }
    _pendingBits = count;
    _octet = count == 0 ? '\0' : static_cast<char>(bits << (8 - count));
    if (char* const pRoom = roomInStream(sizeof(octets))) {
        std::memcpy(pRoom, octets, sizeof(octets)); // what is too much is overwritten by what follows
        advanceStream(size);
    } else {
        writeToStream(octets, static_cast<std::streamsize>(size));
    }
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

void BitStreamWriter::flushStream() {
    _pStream->flush();
    if (!_pIos->good()) {
        throwWriteError();
    }
}

void BitStreamWriter::failStream() {
    _pIos->setstate(std::ios_base::badbit);
    throwWriteError();
}

void BitStreamWriter::transfer(const char* data, std::streamsize n) {
    if (!isPlain() || !_pIos->rdbuf()) {
        _pStream->write(data, n);
    } else if (_pIos->good()) {
        bool complete = false;
        try {
            complete = n == 1 ? _pIos->rdbuf()->sputc(*data) != std::streambuf::traits_type::eof()
                              : _pIos->rdbuf()->sputn(data, n) == n;
        } catch (...) {
            complete = false;
        }
        if (!complete) {
            failStream();
        }
    }
    if (!_pIos->good()) {
        throwWriteError();
    }
}

} // namespace Tamo::FastInfoset
