#ifndef TAMO_MEMORYSTREAM_H
#define TAMO_MEMORYSTREAM_H

#include "Tamo/Export.h"
#include <cstddef>
#include <istream>
#include <streambuf>

namespace Tamo {

/// The buffer of a MemoryInputStream; used by one thread at a time.
class TAMO_API MemoryInputBuf : public std::streambuf {
public:
    /// A buffer over size octets at data.
    MemoryInputBuf(const char* data, std::size_t size);

protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir direction,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;
};

/// A stream that reads a block of memory where it stands, without a copy.
///
/// The block must outlive the stream and must not change meanwhile. The stream can be positioned anywhere
/// from the beginning of the block to its end. One stream is used by one thread at a time.
class TAMO_API MemoryInputStream : public std::istream {
public:
    /// A stream over size octets at data; data may be null when size is 0.
    MemoryInputStream(const char* data, std::size_t size);

private:
    MemoryInputBuf _buf;
};

} // namespace Tamo

#endif
