#include "files/Compression.h"

namespace finf {

std::string_view magicOf(Compression compression) {
    switch (compression) {
    case Compression::GZIP:
        return "\x1F\x8B\x08"; // RFC 1952, with its one method
    case Compression::ZSTD:
        return "\x28\xB5\x2F\xFD"; // RFC 8878
    default:
        return {};
    }
}

std::string_view extensionOf(Compression compression) {
    switch (compression) {
    case Compression::GZIP:
        return ".gz";
    case Compression::ZSTD:
        return ".zst";
    default:
        return {};
    }
}

} // namespace finf
