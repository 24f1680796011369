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

OutputFile::OutputFile(const std::string& path, const Options& options)
    : _path(resolve(path, options.force)),
      _options(options),
      _descriptor(open()),
      _buf(_descriptor),
      _pCompressing(CompressingBuf::over(_buf, options.compression)),
      _file(_pCompressing ? static_cast<std::streambuf*>(_pCompressing.get()) : &_buf),
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
    if (!_options.force && ::lstat(_path.c_str(), &status) == 0) {
        throw existsAlready(_path);
    }
    return createTemporary();
}

int OutputFile::createTemporary() {
    const std::string directory = std::filesystem::path(_path).parent_path().string();
    // What an input is kept from others for must not be there for them while it is written either.
    const mode_t mode = _options.attributes ? _options.attributes->st_mode & S_IRWXU : 0666;
    const int descriptor = TemporaryFiles::instance().create(directory, mode | S_IWUSR, _temporary);
    if (descriptor < 0) {
        const int error = errno;
        _temporary.clear();
        throw FinfError(cannotWrite(_path), error);
    }
    return descriptor;
}

void OutputFile::takeAttributes() {
    const struct stat& input = *_options.attributes;
    mode_t mode = input.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    struct stat output {};
    if (::fstat(_descriptor, &output) == 0 && output.st_gid != input.st_gid &&
        ::fchown(_descriptor, static_cast<uid_t>(-1), input.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG); // another group is not the one that was meant
    }
    const struct timespec times[] = {input.st_atim, input.st_mtim};
    // Where a file system knows no such thing, the document is still there.
    static_cast<void>(::fchmod(_descriptor, mode));
    static_cast<void>(::futimens(_descriptor, times));
}

void OutputFile::check() const {
    if (_buf.error() != 0) {
        throw FinfError(cannotWrite(_path), _buf.error());
    }
}

void OutputFile::commit() {
    _stream.finish();
    if (_pCompressing) {
        _pCompressing->finish();
    }
    check();
    if (_temporary.empty()) {
        return;
    }
    if (_options.attributes) {
        takeAttributes();
    }
    // Some file systems report a full disk or quota only here.
    const int closed = ::close(_descriptor);
    const int error = errno;
    _descriptor = -1;
    if (closed != 0) {
        throw FinfError(cannotWrite(_path), error);
    }
    const int moved = TemporaryFiles::instance().moveTo(_temporary, _path, _options.force);
    if (moved == EEXIST && !_options.force) {
        throw existsAlready(_path);
    }
    if (moved != 0) {
        throw FinfError(cannotWrite(_path), moved);
    }
    _temporary.clear();
}

void OutputFile::commitAs(const std::string& path) {
    _path = resolve(path, _options.force);
    commit();
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
