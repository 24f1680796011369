#include "Tamo/MemoryStream.h"

namespace Tamo {

MemoryInputBuf::MemoryInputBuf(const char* data, std::size_t size) {
    // A get area is never written to; std::streambuf just has no const form of it.
    char* const pData = const_cast<char*>(data);
    setg(pData, pData, pData + size);
}

MemoryInputBuf::pos_type MemoryInputBuf::seekoff(off_type offset, std::ios_base::seekdir direction,
                                                 std::ios_base::openmode which) {
    const off_type size = egptr() - eback();
    const off_type base = direction == std::ios_base::beg   ? 0
                          : direction == std::ios_base::cur ? gptr() - eback()
                                                            : size;
    if (!(which & std::ios_base::in) || offset < -base || offset > size - base) {
        return pos_type(off_type(-1));
    }
    setg(eback(), eback() + (base + offset), egptr());
    return pos_type(base + offset);
}

MemoryInputBuf::pos_type MemoryInputBuf::seekpos(pos_type position, std::ios_base::openmode which) {
    return seekoff(off_type(position), std::ios_base::beg, which);
}

MemoryInputStream::MemoryInputStream(const char* data, std::size_t size)
    : std::istream(nullptr), _buf(data, size) {
    rdbuf(&_buf);
}

} // namespace Tamo
