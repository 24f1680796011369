#ifndef TAMO_FINF_COMPRESSINGBUF_H
#define TAMO_FINF_COMPRESSINGBUF_H

#include "files/Compression.h"
#include <memory>
#include <streambuf>
#include <string_view>

namespace finf {

/// A stream buffer that compresses what is written to it. Nothing is complete before finish().
class CompressingBuf : public std::streambuf {
public:
    /// Writes to destination, which is borrowed; null for Compression::NONE. Throws std::bad_alloc.
    static std::unique_ptr<CompressingBuf> over(std::streambuf& destination, Compression compression);

    /// Writes out what is held back and ends the compressed data.
    void finish() { compress({}, true); }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;

    /// Compresses octets, all that follow when it is the end; false when the destination takes no more.
    virtual bool compress(std::string_view octets, bool isEnd) = 0;
};

} // namespace finf

#endif
