#include "files/InputFile.h"
#include "command/FinfError.h"
#include <algorithm>
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

Compression compressionOf(FileDescriptorBuf& buf) {
    const auto found = std::find_if(std::begin(COMPRESSIONS), std::end(COMPRESSIONS),
                                    [&](Compression each) { return buf.startsWith(magicOf(each)); });
    return found == std::end(COMPRESSIONS) ? Compression::NONE : *found;
}

} // namespace

InputFile::InputFile(const std::string& path, std::atomic<std::uintmax_t>* pOctetsRead, Follower* pFollower)
    : _path(path),
      _descriptor(openForReading(path)),
      _pFollower(pFollower),
      _buf(_descriptor, pOctetsRead),
      _pDecompressing(DecompressingBuf::over(_buf, pFollower ? Compression::NONE : compressionOf(_buf))),
      _stream(_pDecompressing ? static_cast<std::streambuf*>(_pDecompressing.get()) : &_buf) {
    if (pFollower) {
        _buf.follow(*pFollower, path);
    }
}

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
    if (_pDecompressing && !_pDecompressing->fault().empty()) {
        throw FinfError(_pDecompressing->fault());
    }
    if (_pFollower && !_pFollower->fault().empty()) {
        throw FinfError(_pFollower->fault());
    }
}

DocumentKind InputFile::kind() const {
    return kindOf(_pDecompressing ? _pDecompressing->beginning() : _buf.beginning());
}

void InputFile::checkKind(DocumentKind expected) const {
    const DocumentKind found = kind();
    const std::string name = _path == "-" ? std::string() : " " + _path;
    if (found == DocumentKind::EMPTY && _buf.hasEnded()) {
        throw FinfError("is empty");
    }
    if (found == DocumentKind::XML && expected == DocumentKind::FAST_INFOSET) {
        throw FinfError("this is XML text; finf encode" + name + " makes Fast Infoset of it");
    }
    if (found == DocumentKind::FAST_INFOSET && expected == DocumentKind::XML) {
        throw FinfError("this is Fast Infoset; finf decode" + name + " makes XML text of it");
    }
}

void InputFile::requireKind(DocumentKind expected) {
    _stream.peek();
    check();
    checkKind(expected);
}

void InputFile::explain(DocumentKind expected, const std::function<void()>& work) const {
    try {
        work();
    } catch (const std::exception&) {
        check();
        checkKind(expected);
        throw;
    }
    check();
}

std::optional<struct stat> InputFile::status() const {
    struct stat status {};
    if (_path != "-" && ::fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        return status;
    }
    return std::nullopt;
}

} // namespace finf
