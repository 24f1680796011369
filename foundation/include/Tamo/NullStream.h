#ifndef TAMO_NULLSTREAM_H
#define TAMO_NULLSTREAM_H

#include "Tamo/Export.h"
#include <ostream>
#include <streambuf>

namespace Tamo {

/// The buffer of a NullOutputStream; used by one thread at a time.
class TAMO_API NullOutputBuf : public std::streambuf {
protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
};

/// A stream that accepts everything and keeps nothing; used by one thread at a time.
class TAMO_API NullOutputStream : public std::ostream {
public:
    /// A stream that never fails.
    NullOutputStream();

private:
    NullOutputBuf _buf;
};

} // namespace Tamo

#endif
