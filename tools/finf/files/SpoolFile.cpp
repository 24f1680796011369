#include "files/SpoolFile.h"
#include "command/FinfError.h"
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace finf {

namespace {

int openNameless() {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    std::string pattern = (directory / "finf-XXXXXX").string();
    const int descriptor = error ? -1 : ::mkostemp(pattern.data(), O_CLOEXEC);
    if (descriptor < 0) {
        throw FinfError("cannot make a temporary file", error ? error.value() : errno);
    }
    ::unlink(pattern.c_str());
    return descriptor;
}

} // namespace

SpoolFile::SpoolFile()
    : _descriptor(openNameless()), _pSink(std::make_unique<FileDescriptorBuf>(_descriptor)) {}

SpoolFile::~SpoolFile() {
    ::close(_descriptor);
}

std::istream& SpoolFile::read() {
    if (_pSink->error() != 0) {
        throw FinfError("cannot write a temporary file", _pSink->error());
    }
    ::lseek(_descriptor, 0, SEEK_SET);
    _pSource = std::make_unique<FileDescriptorBuf>(_descriptor);
    _pStream = std::make_unique<std::istream>(_pSource.get());
    return *_pStream;
}

} // namespace finf
