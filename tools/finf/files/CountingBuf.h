#ifndef TAMO_FINF_COUNTINGBUF_H
#define TAMO_FINF_COUNTINGBUF_H

#include "Tamo/Types.h"
#include <streambuf>

namespace finf {

/// A stream buffer that knows how much has been written to it, and passes it on in blocks. The destination,
/// which must be set first, is borrowed; it gets the rest when the buffer is flushed.
class CountingBuf : public std::streambuf {
public:
    /// Begins anew in front of destination; what has not been passed on is dropped.
    void setDestination(std::streambuf& destination) noexcept;

    /// How many octets were written, passed on or not.
    Tamo::UInt64 size() const noexcept { return _passedOn + static_cast<Tamo::UInt64>(pptr() - pbase()); }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;
    int sync() override;

private:
    bool passOn();

    std::streambuf* _pDestination = nullptr;
    Tamo::UInt64 _passedOn = 0;
    char _buffer[16384];
};

} // namespace finf

#endif
