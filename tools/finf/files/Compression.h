#ifndef TAMO_FINF_COMPRESSION_H
#define TAMO_FINF_COMPRESSION_H

#include <string_view>

namespace finf {

/// How the octets of a file are compressed.
enum class Compression { NONE, GZIP, ZSTD };

/// What a file begins with that is compressed so; empty for NONE.
std::string_view magicOf(Compression compression);

/// What such a file's name ends with: ".gz", ".zst", or nothing.
std::string_view extensionOf(Compression compression);

/// Those that a file may have.
constexpr Compression COMPRESSIONS[] = {Compression::GZIP, Compression::ZSTD};

} // namespace finf

#endif
