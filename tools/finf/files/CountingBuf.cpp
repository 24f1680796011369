#include "files/CountingBuf.h"

namespace finf {

CountingBuf::CountingBuf(std::streambuf& destination) : _destination(destination) {
    setp(_buffer, _buffer + sizeof _buffer);
}

CountingBuf::int_type CountingBuf::overflow(int_type c) {
    if (!passOn()) {
        return traits_type::eof();
    }
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
}

std::streamsize CountingBuf::xsputn(const char* data, std::streamsize size) {
    if (size <= epptr() - pptr()) {
        return std::streambuf::xsputn(data, size);
    }
    if (!passOn()) {
        return 0;
    }
    const std::streamsize count = _destination.sputn(data, size);
    _passedOn += static_cast<Tamo::UInt64>(count);
    return count;
}

int CountingBuf::sync() {
    return passOn() ? _destination.pubsync() : -1;
}

bool CountingBuf::passOn() {
    const std::streamsize size = pptr() - pbase();
    if (_destination.sputn(pbase(), size) != size) {
        return false;
    }
    _passedOn += static_cast<Tamo::UInt64>(size);
    setp(_buffer, _buffer + sizeof _buffer);
    return true;
}

} // namespace finf
