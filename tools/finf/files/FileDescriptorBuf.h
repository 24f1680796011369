#ifndef TAMO_FINF_FILEDESCRIPTORBUF_H
#define TAMO_FINF_FILEDESCRIPTORBUF_H

#include "files/Follower.h"
#include <atomic>
#include <cstdint>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

namespace finf {

/// A stream buffer over a file descriptor that remembers why a read or write failed.
///
/// Reading goes through a buffer; writing does not, so that a buffering stream belongs in front of it. The
/// descriptor is borrowed, and so is the counter of octets read, which may be null.
class FileDescriptorBuf : public std::streambuf {
public:
    explicit FileDescriptorBuf(int descriptor, std::atomic<std::uintmax_t>* pOctetsRead = nullptr)
        : _descriptor(descriptor), _pOctetsRead(pOctetsRead) {}

    /// Waits at the end of the file at path for more, as the follower says, which is borrowed.
    void follow(Follower& follower, const std::string& path) {
        _pFollower = &follower;
        _path = path;
    }

    /// The errno of the first read or write that failed, 0 when none has.
    int error() const noexcept { return _error; }

    /// Whether the input begins with these octets; to be asked before anything else is read. Of a pipe it
    /// takes as many octets as it needs to tell.
    bool startsWith(std::string_view octets);

    /// The first octets that were read, KIND_OCTETS at most.
    std::string_view beginning() const noexcept { return _beginning; }

    /// Whether a read has come to the end.
    bool hasEnded() const noexcept { return _hasEnded; }

    /// How many octets were read and written.
    std::uintmax_t octetsRead() const noexcept { return _octetsRead; }
    std::uintmax_t octetsWritten() const noexcept { return _octetsWritten; }

protected:
    int_type underflow() override;
    std::streamsize xsgetn(char* data, std::streamsize size) override;
    /// What is left of a regular file: an XML parser reads one of moderate size faster as a whole.
    std::streamsize showmanyc() override;
    /// Tells where reading stands, and nothing else.
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;

private:
    std::streamsize readSome(char* data, std::size_t size);

    int _descriptor;
    std::atomic<std::uintmax_t>* _pOctetsRead;
    Follower* _pFollower = nullptr;
    std::string _path; // for that
    int _error = 0;
    bool _hasEnded = false;
    std::uintmax_t _octetsRead = 0;
    std::uintmax_t _octetsWritten = 0;
    std::unique_ptr<char[]> _pInput;
    std::string _beginning;
};

} // namespace finf

#endif
