#ifndef TAMO_FINF_GZIPCOUNTER_H
#define TAMO_FINF_GZIPCOUNTER_H

#include "Tamo/Types.h"
#include <streambuf>
#include <zlib.h>

namespace finf {

/// Counts the octets that are written to it, and those of their gzip form (RFC 1952, level 6), of which it
/// keeps nothing.
class GzipCounter : public std::streambuf {
public:
    /// Throws std::bad_alloc.
    GzipCounter();
    ~GzipCounter() override;

    GzipCounter(const GzipCounter&) = delete;
    GzipCounter& operator=(const GzipCounter&) = delete;

    /// How many octets were written.
    Tamo::UInt64 size() const noexcept { return _size; }

    /// How many octets that makes with gzip; nothing can be written any more.
    Tamo::UInt64 finish();

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;

private:
    void deflate(const char* data, unsigned int size, int flush);

    z_stream _deflater{};
    Tamo::UInt64 _size = 0;
    Tamo::UInt64 _gzipSize = 0;
};

} // namespace finf

#endif
