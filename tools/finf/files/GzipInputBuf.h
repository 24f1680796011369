#ifndef TAMO_FINF_GZIPINPUTBUF_H
#define TAMO_FINF_GZIPINPUTBUF_H

#include "files/DecompressingBuf.h"
#include <zlib.h>

namespace finf {

/// Reads gzip (RFC 1952), also several members one behind the other.
class GzipInputBuf : public DecompressingBuf {
public:
    /// The source is borrowed. Throws std::bad_alloc.
    explicit GzipInputBuf(std::streambuf& source);
    ~GzipInputBuf() override;

private:
    bool decompress(std::string_view& input, std::span<char>& output) override;

    z_stream _inflater{};
    bool _isBetweenMembers = false;
};

} // namespace finf

#endif
