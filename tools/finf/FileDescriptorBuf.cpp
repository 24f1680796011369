#include "FileDescriptorBuf.h"
#include <cerrno>
#include <unistd.h>

namespace finf {

namespace {

constexpr std::size_t CAPACITY = 65536;

} // namespace

FileDescriptorBuf::int_type FileDescriptorBuf::underflow() {
    if (!_pInput) {
        _pInput = std::make_unique<char[]>(CAPACITY);
    }
    ssize_t size;
    do {
        size = ::read(_descriptor, _pInput.get(), CAPACITY);
    } while (size < 0 && errno == EINTR);
    if (size <= 0) {
        if (size < 0 && _error == 0) {
            _error = errno;
        }
        return traits_type::eof();
    }
    if (_pOctetsRead) {
        *_pOctetsRead += static_cast<std::uintmax_t>(size);
    }
    setg(_pInput.get(), _pInput.get(), _pInput.get() + size);
    return traits_type::to_int_type(*gptr());
}

FileDescriptorBuf::int_type FileDescriptorBuf::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) {
        return traits_type::not_eof(c);
    }
    const char octet = traits_type::to_char_type(c);
    return xsputn(&octet, 1) == 1 ? c : traits_type::eof();
}

std::streamsize FileDescriptorBuf::xsputn(const char* data, std::streamsize size) {
    std::streamsize written = 0;
    while (written < size) {
        const ssize_t n = ::write(_descriptor, data + written, static_cast<std::size_t>(size - written));
        if (n < 0 && errno != EINTR) {
            if (_error == 0) {
                _error = errno;
            }
            break;
        }
        written += n > 0 ? n : 0;
    }
    return written;
}

} // namespace finf
