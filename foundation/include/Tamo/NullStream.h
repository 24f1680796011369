#ifndef TAMO_NULLSTREAM_H
#define TAMO_NULLSTREAM_H

#include <ostream>
#include <streambuf>

namespace Tamo {

/// The buffer of a NullOutputStream.
class NullOutputBuf : public std::streambuf {
protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
};

/// A stream that accepts everything and keeps nothing.
class NullOutputStream : public std::ostream {
public:
    /// A stream that never fails.
    NullOutputStream();

private:
    NullOutputBuf _buf;
};

} // namespace Tamo

#endif
