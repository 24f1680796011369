#include "inspect/GzipCounter.h"
#include <algorithm>
#include <new>

namespace finf {

namespace {

constexpr int LEVEL = 6;
constexpr int GZIP_WINDOW = 15 + 16; // the largest window, with the header and trailer of gzip
constexpr int MEMORY_LEVEL = 8;

} // namespace

GzipCounter::GzipCounter() {
    if (deflateInit2(&_deflater, LEVEL, Z_DEFLATED, GZIP_WINDOW, MEMORY_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
}

GzipCounter::~GzipCounter() {
    deflateEnd(&_deflater);
}

Tamo::UInt64 GzipCounter::finish() {
    deflate("", 0, Z_FINISH);
    return _gzipSize;
}

GzipCounter::int_type GzipCounter::overflow(int_type c) {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        const char octet = traits_type::to_char_type(c);
        xsputn(&octet, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize GzipCounter::xsputn(const char* data, std::streamsize size) {
    constexpr std::streamsize BLOCK = 1 << 20;
    for (std::streamsize done = 0; done < size; done += BLOCK) {
        deflate(data + done, static_cast<unsigned int>(std::min(BLOCK, size - done)), Z_NO_FLUSH);
    }
    _size += static_cast<Tamo::UInt64>(size);
    return size;
}

void GzipCounter::deflate(const char* data, unsigned int size, int flush) {
    // The interface of zlib lacks the const; it does not write there.
    _deflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    _deflater.avail_in = size;
    do {
        Bytef output[16384];
        _deflater.next_out = output;
        _deflater.avail_out = sizeof output;
        ::deflate(&_deflater, flush);
        _gzipSize += sizeof output - _deflater.avail_out;
    } while (_deflater.avail_out == 0);
}

} // namespace finf
