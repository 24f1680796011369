#include "files/CompressingBuf.h"
#include "files/GzipOutputBuf.h"
#include "files/ZstdOutputBuf.h"
#include <algorithm>
#include <string_view>

namespace finf {

std::unique_ptr<CompressingBuf> CompressingBuf::over(std::streambuf& destination, Compression compression) {
    switch (compression) {
    case Compression::GZIP:
        return std::make_unique<GzipOutputBuf>(destination);
    case Compression::ZSTD:
        return std::make_unique<ZstdOutputBuf>(destination);
    default:
        return nullptr;
    }
}

CompressingBuf::int_type CompressingBuf::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) {
        return traits_type::not_eof(c);
    }
    const char octet = traits_type::to_char_type(c);
    return xsputn(&octet, 1) == 1 ? c : traits_type::eof();
}

std::streamsize CompressingBuf::xsputn(const char* data, std::streamsize size) {
    constexpr std::streamsize BLOCK = 1 << 20;
    for (std::streamsize done = 0; done < size; done += BLOCK) {
        const std::streamsize count = std::min(BLOCK, size - done);
        if (!compress(std::string_view(data + done, static_cast<std::size_t>(count)), false)) {
            return done;
        }
    }
    return size;
}

} // namespace finf
