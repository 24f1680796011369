#include "Compression.h"
#include <stdexcept>
#include <vector>
#include <zlib.h>
#include <zstd.h>

namespace Tamo::Benchmarks {

std::size_t Compression::gzip(const std::string& octets) {
    constexpr int LEVEL = 6;
    constexpr int GZIP_FORMAT = 15 + 16;
    z_stream stream{};
    if (deflateInit2(&stream, LEVEL, Z_DEFLATED, GZIP_FORMAT, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("zlib cannot be initialised");
    }
    std::vector<unsigned char> compressed(deflateBound(&stream, octets.size()));
    std::string input(octets);
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = compressed.data();
    stream.avail_out = static_cast<uInt>(compressed.size());
    const int status = deflate(&stream, Z_FINISH);
    const std::size_t size = stream.total_out;
    deflateEnd(&stream);
    if (status != Z_STREAM_END) {
        throw std::runtime_error("zlib cannot compress");
    }
    return size;
}

std::size_t Compression::zstd(const std::string& octets) {
    constexpr int LEVEL = 3;
    std::vector<char> compressed(ZSTD_compressBound(octets.size()));
    const std::size_t size =
        ZSTD_compress(compressed.data(), compressed.size(), octets.data(), octets.size(), LEVEL);
    if (ZSTD_isError(size)) {
        throw std::runtime_error("zstd cannot compress");
    }
    return size;
}

} // namespace Tamo::Benchmarks
