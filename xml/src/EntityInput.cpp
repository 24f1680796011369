#include "EntityInput.h"
#include "Tamo/Exception.h"
#include "Tamo/MemoryStream.h"
#include <algorithm>
#include <cstring>

namespace Tamo::XML {

namespace {

/// How many octets Expat gets at a time, unless it waits for the end of a long token: it looks at a token
/// from its beginning each time that it gets more, so that it gets as much again as it has.
constexpr std::size_t PIECE = 64 * 1024;
constexpr std::size_t MAX_PIECE = 1 << 30; // an int counts them

/// An entity of fewer octets goes to Expat in one piece when its size is known. That is a fifth faster:
/// behind every piece but the last Expat counts lines and columns. Expat keeps a copy of the piece, hence the
/// limits.
constexpr std::size_t MAX_WHOLE = 16 * 1024 * 1024;
constexpr std::size_t MAX_WHOLE_IN_MEMORY = 64 * 1024 * 1024; // at most as much again as the caller has
constexpr std::size_t MAX_WHOLE_AGAIN = 1024 * 1024; // of an entity that is here already, and read again

/// One octet more than there seem to be: the first read is to see the end.
std::size_t firstSize(std::size_t available, std::size_t limit) {
    return available < limit ? available + 1 : PIECE;
}

/// How many octets the stream says it has, in memory or in a file; for others the size of a piece.
std::size_t availableIn(std::istream& stream) {
    try {
        const std::streamsize count = stream.good() ? stream.rdbuf()->in_avail() : 0;
        return count > 0 ? static_cast<std::size_t>(count) : PIECE - 1;
    } catch (...) {
        return PIECE - 1; // only a hint; read() finds out what is wrong
    }
}

} // namespace

EntityInput::EntityInput(std::istream& stream)
    : _pStream(&stream),
      _size(firstSize(availableIn(stream),
                      dynamic_cast<MemoryInputBuf*>(stream.rdbuf()) ? MAX_WHOLE_IN_MEMORY : MAX_WHOLE)) {}

EntityInput::EntityInput(const char* data, std::size_t size)
    : _pData(data), _left(size), _size(firstSize(size, MAX_WHOLE_IN_MEMORY)) {}

std::size_t EntityInput::nextSize(std::size_t unfinished) const {
    return std::max(_size, std::min(unfinished, MAX_PIECE));
}

std::size_t EntityInput::read(char* pBuffer, std::size_t size) {
    _size = PIECE;
    const std::size_t count = std::min(size, _left);
    if (count > 0) {
        std::memcpy(pBuffer, _pData, count);
        _pData += count;
        _left -= count;
    }
    return count < size && _pStream ? count + readStream(pBuffer + count, size - count) : count;
}

void EntityInput::readAgain(const char* pData, std::size_t size) {
    _pData = pData;
    _left = size;
    _size = PIECE;
}

void EntityInput::readWholeAgain(const char* pData, std::size_t size) {
    readAgain(pData, size);
    _pStream = nullptr;
    _size = firstSize(size, MAX_WHOLE_AGAIN);
}

std::size_t EntityInput::readStream(char* pBuffer, std::size_t size) {
    try {
        _pStream->read(pBuffer, static_cast<std::streamsize>(size));
    } catch (const std::ios_base::failure&) {
        // A stream that throws says in its state why.
    }
    if (_pStream->bad() || (_pStream->fail() && !_pStream->eof())) {
        throw IOException("Cannot read from the input stream");
    }
    return static_cast<std::size_t>(_pStream->gcount());
}

} // namespace Tamo::XML
