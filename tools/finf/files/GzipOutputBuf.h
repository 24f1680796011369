#ifndef TAMO_FINF_GZIPOUTPUTBUF_H
#define TAMO_FINF_GZIPOUTPUTBUF_H

#include "files/CompressingBuf.h"
#include <zlib.h>

namespace finf {

/// Writes gzip (RFC 1952) as zlib does at level 6, without a name or time: equal octets give equal files.
class GzipOutputBuf : public CompressingBuf {
public:
    /// The destination is borrowed. Throws std::bad_alloc.
    explicit GzipOutputBuf(std::streambuf& destination);
    ~GzipOutputBuf() override;

private:
    bool compress(std::string_view octets, bool isEnd) override;

    std::streambuf& _destination;
    z_stream _deflater{};
};

} // namespace finf

#endif
