#include "files/InputFile.h"
#include "command/FinfError.h"
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

namespace finf {

namespace {

int openForReading(const std::string& path) {
    const int descriptor = path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw FinfError("cannot open", errno);
    }
    return descriptor;
}

} // namespace

InputFile::InputFile(const std::string& path, std::atomic<std::uintmax_t>* pOctetsRead)
    : _descriptor(openForReading(path)), _buf(_descriptor, pOctetsRead), _stream(&_buf) {}

InputFile::~InputFile() {
    if (_descriptor != STDIN_FILENO) {
        ::close(_descriptor);
    }
}

std::string InputFile::readAll(const std::string& path) {
    InputFile file(path);
    std::string octets{std::istreambuf_iterator<char>(file.stream()), std::istreambuf_iterator<char>()};
    file.check();
    return octets;
}

void InputFile::check() const {
    if (_buf.error() != 0) {
        throw FinfError("cannot read", _buf.error());
    }
}

} // namespace finf
