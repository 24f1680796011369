#ifndef TAMO_FINF_ZSTDINPUTBUF_H
#define TAMO_FINF_ZSTDINPUTBUF_H

#include "files/DecompressingBuf.h"
#include <zstd.h>

namespace finf {

/// Reads Zstandard (RFC 8878), also several frames one behind the other. Frames that want a window of more
/// than 128 MiB are refused.
class ZstdInputBuf : public DecompressingBuf {
public:
    /// The source is borrowed. Throws std::bad_alloc.
    explicit ZstdInputBuf(std::streambuf& source);
    ~ZstdInputBuf() override;

private:
    bool decompress(std::string_view& input, std::span<char>& output) override;

    ZSTD_DStream* const _pStream;
};

} // namespace finf

#endif
