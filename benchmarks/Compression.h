#ifndef TAMO_BENCHMARKS_COMPRESSION_H
#define TAMO_BENCHMARKS_COMPRESSION_H

#include <cstddef>
#include <string>

namespace Tamo::Benchmarks {

/// Sizes under general compressors, in octets.
class Compression {
public:
    /// As gzip -6 would leave it.
    static std::size_t gzip(const std::string& octets);

    /// As zstd -3 would leave it.
    static std::size_t zstd(const std::string& octets);
};

} // namespace Tamo::Benchmarks

#endif
