#include "files/CountingBuf.h"

namespace finf {

void CountingBuf::setDestination(std::streambuf& destination) noexcept {
    _pDestination = &destination;
    _passedOn = 0;
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
    const std::streamsize count = _pDestination->sputn(data, size);
    _passedOn += static_cast<Tamo::UInt64>(count);
    return count;
}

int CountingBuf::sync() {
    return passOn() ? _pDestination->pubsync() : -1;
}

bool CountingBuf::passOn() {
    const std::streamsize size = pptr() - pbase();
    if (_pDestination->sputn(pbase(), size) != size) {
        return false;
    }
    _passedOn += static_cast<Tamo::UInt64>(size);
    setp(_buffer, _buffer + sizeof _buffer);
    return true;
}

} // namespace finf
