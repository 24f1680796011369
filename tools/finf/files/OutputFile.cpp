#include "files/OutputFile.h"
#include "command/FinfError.h"
#include "files/TemporaryFiles.h"
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace finf {

namespace {

std::string cannotWrite(const std::string& path) {
    return path == "-" ? "cannot write to standard output" : "cannot write " + path;
}

FinfError existsAlready(const std::string& path) {
    return FinfError(path + " exists already; --force overwrites it");
}

} // namespace

void OutputFile::removeTemporariesOnSignals() {
    TemporaryFiles::instance().removeOnSignals();
}

OutputFile::OutputFile(const std::string& path, bool force)
    : _path(resolve(path, force)),
      _force(force),
      _descriptor(open()),
      _buf(_descriptor),
      _file(&_buf),
      _stream(_file) {}

OutputFile::~OutputFile() {
    discard();
}

std::string OutputFile::resolve(const std::string& path, bool force) {
    // Through a symbolic link the file that it names is replaced, not the link.
    std::error_code error;
    if (force && std::filesystem::is_symlink(path, error)) {
        const std::filesystem::path target = std::filesystem::canonical(path, error);
        return error ? path : target.string();
    }
    return path;
}

int OutputFile::open() {
    if (_path == "-") {
        return STDOUT_FILENO;
    }
    struct stat status {};
    if (::stat(_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        // Not a file that could be replaced; a directory is refused by the system.
        const int descriptor = ::open(_path.c_str(), O_WRONLY | O_CLOEXEC);
        if (descriptor < 0) {
            throw FinfError(cannotWrite(_path), errno);
        }
        return descriptor;
    }
    if (!_force && ::lstat(_path.c_str(), &status) == 0) {
        throw existsAlready(_path);
    }
    return createTemporary();
}

int OutputFile::createTemporary() {
    const std::filesystem::path directory = std::filesystem::path(_path).parent_path();
    for (int attempt = 0;; ++attempt) {
        const std::string name =
            ".finf-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
        const std::string temporary = (directory / name).string();
        const int descriptor = TemporaryFiles::instance().create(temporary);
        if (descriptor >= 0) {
            _temporary = temporary;
            return descriptor;
        }
        if (errno != EEXIST) {
            throw FinfError(cannotWrite(_path), errno);
        }
    }
}

void OutputFile::check() const {
    if (_buf.error() != 0) {
        throw FinfError(cannotWrite(_path), _buf.error());
    }
}

void OutputFile::commit() {
    _stream.finish();
    check();
    if (_temporary.empty()) {
        return;
    }
    // Some file systems report a full disk or quota only here.
    const int closed = ::close(_descriptor);
    const int error = errno;
    _descriptor = -1;
    if (closed != 0) {
        throw FinfError(cannotWrite(_path), error);
    }
    const int moved = TemporaryFiles::instance().moveTo(_temporary, _path, _force);
    if (moved == EEXIST && !_force) {
        throw existsAlready(_path);
    }
    if (moved != 0) {
        throw FinfError(cannotWrite(_path), moved);
    }
    _temporary.clear();
}

void OutputFile::discard() noexcept {
    if (_temporary.empty()) {
        return;
    }
    if (_descriptor >= 0) {
        ::close(_descriptor);
        _descriptor = -1;
    }
    TemporaryFiles::instance().remove(_temporary);
    _temporary.clear();
}

} // namespace finf
