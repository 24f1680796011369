#include "files/GzipInputBuf.h"
#include <new>

namespace finf {

namespace {

constexpr int GZIP_WINDOW = 15 + 16; // the largest window, with the header and trailer of gzip

} // namespace

GzipInputBuf::GzipInputBuf(std::streambuf& source) : DecompressingBuf(source, "gzip") {
    if (inflateInit2(&_inflater, GZIP_WINDOW) != Z_OK) {
        throw std::bad_alloc();
    }
}

GzipInputBuf::~GzipInputBuf() {
    inflateEnd(&_inflater);
}

bool GzipInputBuf::decompress(std::string_view& input, std::span<char>& output) {
    if (_isBetweenMembers && !input.empty()) {
        inflateReset(&_inflater);
        _isBetweenMembers = false;
    }
    // The interface of zlib lacks the const; it does not write there.
    _inflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    _inflater.avail_in = static_cast<uInt>(input.size());
    _inflater.next_out = reinterpret_cast<Bytef*>(output.data());
    _inflater.avail_out = static_cast<uInt>(output.size());
    const int result = _isBetweenMembers ? Z_STREAM_END : ::inflate(&_inflater, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
        damaged();
    }
    input.remove_prefix(input.size() - _inflater.avail_in);
    output = output.last(_inflater.avail_out);
    _isBetweenMembers = result == Z_STREAM_END;
    return _isBetweenMembers;
}

} // namespace finf
