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

// Whether octets may be handed to the stream's buffer directly: nothing that std::ostream::write does around
// the transfer is then missed.
bool isPlain(std::ostream& stream) {
    return !stream.tie() && !(stream.flags() & std::ios_base::unitbuf) && stream.rdbuf();
}

} // namespace

BitStreamWriter::BitStreamWriter(std::ostream& ostr, bool fillBit) : _pStream(&ostr), _fillBit(fillBit) {}

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

void BitStreamWriter::appendOctets(UInt64 value, int numOfBits) {
    // At most 7 pending bits and 32 new ones: they fit one word.
    const UInt64 mask = (static_cast<UInt64>(1) << numOfBits) - 1;
    const auto pending = static_cast<unsigned char>(_octet);
    const UInt64 bits = (static_cast<UInt64>(pending >> (8 - _pendingBits)) << numOfBits) | (value & mask);
    int count = _pendingBits + numOfBits;
    char octets[8];
    std::size_t size = 0;
    while (count >= 8) {
        count -= 8;
        octets[size++] = static_cast<char>(bits >> count);
    }
    _pendingBits = count;
    _octet = static_cast<char>(bits << (8 - count));
    if (count == 0) {
        _octet = 0;
    }
    if (size != 0) {
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

void BitStreamWriter::complete(bool fillBit) {
    if (_pendingBits != 0) {
        const int missing = 8 - _pendingBits;
        append(fillBit ? Utility::lowBitMask[missing] : 0u, missing);
    }
    flush();
}

void BitStreamWriter::flush() {
    std::ostream& stream = *_pStream;
    if (!isPlain(stream) || !stream.good()) {
        stream.flush();
    } else {
        bool complete = false;
        try {
            complete = stream.rdbuf()->pubsync() != -1;
        } catch (...) {
            complete = false;
        }
        if (!complete) {
            stream.setstate(std::ios_base::badbit);
        }
    }
    if (!stream.good()) {
        throwWriteError();
    }
}

void BitStreamWriter::writeToStream(const char* data, std::streamsize n) {
    std::ostream& stream = *_pStream;
    if (!isPlain(stream)) {
        stream.write(data, n);
    } else if (stream.good()) {
        bool complete = false;
        try {
            complete = n == 1 ? stream.rdbuf()->sputc(*data) != std::streambuf::traits_type::eof()
                              : stream.rdbuf()->sputn(data, n) == n;
        } catch (...) {
            complete = false;
        }
        if (!complete) {
            stream.setstate(std::ios_base::badbit);
        }
    }
    if (!stream.good()) {
        throwWriteError();
    }
}

} // namespace Tamo::FastInfoset
