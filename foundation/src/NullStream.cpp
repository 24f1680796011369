#include "Tamo/NullStream.h"

namespace Tamo {

NullOutputBuf::int_type NullOutputBuf::overflow(int_type c) {
    return traits_type::not_eof(c);
}

std::streamsize NullOutputBuf::xsputn(const char*, std::streamsize count) {
    return count;
}

NullOutputStream::NullOutputStream() : std::ostream(nullptr) {
    rdbuf(&_buf);
}

} // namespace Tamo
