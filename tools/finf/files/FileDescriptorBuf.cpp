#include "files/FileDescriptorBuf.h"
#include "files/DocumentKind.h"
#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace finf {

namespace {

constexpr std::size_t CAPACITY = 65536;

} // namespace

FileDescriptorBuf::int_type FileDescriptorBuf::underflow() {
    if (!_pInput) {
        _pInput = std::make_unique<char[]>(CAPACITY);
    }
    const std::streamsize size = readSome(_pInput.get(), CAPACITY);
    if (size <= 0) {
        return traits_type::eof();
    }
    setg(_pInput.get(), _pInput.get(), _pInput.get() + size);
    return traits_type::to_int_type(*gptr());
}

bool FileDescriptorBuf::startsWith(std::string_view octets) {
    char first[8];
    const off_t at = ::lseek(_descriptor, 0, SEEK_CUR);
    if (at >= 0) {
        // Where that is possible nothing is read, so that all of the file can still be read at once.
        const ssize_t count = ::pread(_descriptor, first, std::min(sizeof first, octets.size()), at);
        return std::string_view(first, static_cast<std::size_t>(std::max<ssize_t>(count, 0))) == octets;
    }
    if (gptr() == egptr() && traits_type::eq_int_type(underflow(), traits_type::eof())) {
        return false;
    }
    for (;;) {
        const std::string_view there(gptr(), static_cast<std::size_t>(egptr() - gptr()));
        if (there.size() >= octets.size() || !octets.starts_with(there)) {
            return there.starts_with(octets);
        }
        const std::streamsize more = readSome(egptr(), CAPACITY - there.size());
        if (more <= 0) {
            return false;
        }
        setg(eback(), gptr(), egptr() + more);
    }
}

std::streamsize FileDescriptorBuf::xsgetn(char* data, std::streamsize size) {
    std::streamsize count = std::min(size, static_cast<std::streamsize>(egptr() - gptr()));
    std::copy_n(gptr(), count, data);
    gbump(static_cast<int>(count));
    // Large reads pass the buffer.
    while (size - count >= static_cast<std::streamsize>(CAPACITY)) {
        const std::streamsize more = readSome(data + count, static_cast<std::size_t>(size - count));
        if (more <= 0) {
            return count;
        }
        count += more;
    }
    return count < size ? count + std::streambuf::xsgetn(data + count, size - count) : count;
}

std::streamsize FileDescriptorBuf::showmanyc() {
    struct stat status;
    const off_t at = ::lseek(_descriptor, 0, SEEK_CUR);
    return at >= 0 && ::fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > at
               ? static_cast<std::streamsize>(status.st_size - at)
               : 0;
}

std::streamsize FileDescriptorBuf::readSome(char* data, std::size_t size) {
    ssize_t count = 0;
    if (!_pFollower || _pFollower->await(_descriptor, _path)) {
        do {
            count = ::read(_descriptor, data, size);
        } while (count < 0 && errno == EINTR);
    }
    _hasEnded = _hasEnded || count == 0;
    if (count < 0 && _error == 0) {
        _error = errno;
    }
    if (count > 0 && _beginning.size() < KIND_OCTETS) {
        _beginning.append(data, std::min(static_cast<std::size_t>(count), KIND_OCTETS - _beginning.size()));
    }
    _octetsRead += static_cast<std::uintmax_t>(std::max<ssize_t>(count, 0));
    if (count > 0 && _pOctetsRead) {
        *_pOctetsRead += static_cast<std::uintmax_t>(count);
    }
    return count;
}

FileDescriptorBuf::pos_type FileDescriptorBuf::seekoff(off_type offset, std::ios_base::seekdir from,
                                                       std::ios_base::openmode which) {
    const bool asks = offset == 0 && from == std::ios_base::cur && (which & std::ios_base::in) != 0;
    return asks ? static_cast<off_type>(_octetsRead) - (egptr() - gptr()) : off_type{-1};
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
    _octetsWritten += static_cast<std::uintmax_t>(written);
    return written;
}

} // namespace finf
