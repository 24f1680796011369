#include "files/ZstdInputBuf.h"
#include <new>

namespace finf {

ZstdInputBuf::ZstdInputBuf(std::streambuf& source)
    : DecompressingBuf(source, "zstd"), _pStream(ZSTD_createDStream()) {
    if (!_pStream) {
        throw std::bad_alloc();
    }
}

ZstdInputBuf::~ZstdInputBuf() {
    ZSTD_freeDStream(_pStream);
}

bool ZstdInputBuf::decompress(std::string_view& input, std::span<char>& output) {
    ZSTD_inBuffer in{input.data(), input.size(), 0};
    ZSTD_outBuffer out{output.data(), output.size(), 0};
    const std::size_t result = ZSTD_decompressStream(_pStream, &out, &in);
    if (ZSTD_isError(result) != 0) {
        damaged();
    }
    input.remove_prefix(in.pos);
    output = output.subspan(out.pos);
    return result == 0;
}

} // namespace finf
