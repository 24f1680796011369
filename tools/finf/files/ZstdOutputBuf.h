#ifndef TAMO_FINF_ZSTDOUTPUTBUF_H
#define TAMO_FINF_ZSTDOUTPUTBUF_H

#include "files/CompressingBuf.h"
#include <zstd.h>

namespace finf {

/// Writes Zstandard (RFC 8878) at the library's own level, with a checksum.
class ZstdOutputBuf : public CompressingBuf {
public:
    /// The destination is borrowed. Throws std::bad_alloc.
    explicit ZstdOutputBuf(std::streambuf& destination);
    ~ZstdOutputBuf() override;

private:
    bool compress(std::string_view octets, bool isEnd) override;

    std::streambuf& _destination;
    ZSTD_CCtx* const _pContext;
};

} // namespace finf

#endif
