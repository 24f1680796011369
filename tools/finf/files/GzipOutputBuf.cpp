#include "files/GzipOutputBuf.h"
#include <new>

namespace finf {

namespace {

constexpr int LEVEL = 6;
constexpr int GZIP_WINDOW = 15 + 16; // the largest window, with the header and trailer of gzip
constexpr int MEMORY_LEVEL = 8;

} // namespace

GzipOutputBuf::GzipOutputBuf(std::streambuf& destination) : _destination(destination) {
    if (deflateInit2(&_deflater, LEVEL, Z_DEFLATED, GZIP_WINDOW, MEMORY_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
}

GzipOutputBuf::~GzipOutputBuf() {
    deflateEnd(&_deflater);
}

bool GzipOutputBuf::compress(std::string_view octets, bool isEnd) {
    // The interface of zlib lacks the const; it does not write there.
    _deflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(octets.data()));
    _deflater.avail_in = static_cast<uInt>(octets.size());
    do {
        Bytef output[16384];
        _deflater.next_out = output;
        _deflater.avail_out = sizeof output;
        ::deflate(&_deflater, isEnd ? Z_FINISH : Z_NO_FLUSH);
        const auto size = static_cast<std::streamsize>(sizeof output - _deflater.avail_out);
        if (_destination.sputn(reinterpret_cast<const char*>(output), size) != size) {
            return false;
        }
    } while (_deflater.avail_out == 0);
    return true;
}

} // namespace finf
