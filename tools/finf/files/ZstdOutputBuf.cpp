#include "files/ZstdOutputBuf.h"
#include <new>

namespace finf {

ZstdOutputBuf::ZstdOutputBuf(std::streambuf& destination)
    : _destination(destination), _pContext(ZSTD_createCCtx()) {
    if (!_pContext) {
        throw std::bad_alloc();
    }
    ZSTD_CCtx_setParameter(_pContext, ZSTD_c_checksumFlag, 1);
}

ZstdOutputBuf::~ZstdOutputBuf() {
    ZSTD_freeCCtx(_pContext);
}

bool ZstdOutputBuf::compress(std::string_view octets, bool isEnd) {
    ZSTD_inBuffer in{octets.data(), octets.size(), 0};
    for (bool isDone = false; !isDone;) {
        char output[16384];
        ZSTD_outBuffer out{output, sizeof output, 0};
        const std::size_t left =
            ZSTD_compressStream2(_pContext, &out, &in, isEnd ? ZSTD_e_end : ZSTD_e_continue);
        if (ZSTD_isError(left) != 0) {
            throw std::bad_alloc(); // the only failure that these parameters leave
        }
        const auto size = static_cast<std::streamsize>(out.pos);
        if (_destination.sputn(output, size) != size) {
            return false;
        }
        isDone = isEnd ? left == 0 : in.pos == in.size;
    }
    return true;
}

} // namespace finf
