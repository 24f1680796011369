#include "OutputFile.h"
#include "FinfError.h"
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace finf {

namespace {

// What the signal handler removes; it can use nothing but memory that is there already.
char temporaryPath[PATH_MAX];
volatile std::sig_atomic_t temporaryExists = 0;

constexpr int SIGNALS[] = {SIGHUP, SIGINT, SIGTERM};

/// Holds back the signals that end the process, so that a file and the note about it change together.
class SignalBlock {
public:
    SignalBlock() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : SIGNALS) {
            sigaddset(&signals, signal);
        }
        sigprocmask(SIG_BLOCK, &signals, &_previous);
    }
    ~SignalBlock() { sigprocmask(SIG_SETMASK, &_previous, nullptr); }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

private:
    sigset_t _previous;
};

extern "C" void removeTemporary(int signal) {
    if (temporaryExists != 0) {
        ::unlink(temporaryPath);
    }
    // SA_RESETHAND has restored the default action, which ends the process as the sender of the signal
    // expects.
    ::raise(signal);
}

void catchSignals() {
    struct sigaction action {};
    action.sa_handler = removeTemporary;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : SIGNALS) {
        struct sigaction present {};
        // A signal that the caller ignores (nohup) stays ignored.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

std::string cannotWrite(const std::string& path) {
    return path == "-" ? "cannot write to standard output" : "cannot write " + path;
}

} // namespace

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
        throw FinfError(_path + " exists already; --force overwrites it");
    }
    return createTemporary();
}

int OutputFile::createTemporary() {
    const std::filesystem::path directory = std::filesystem::path(_path).parent_path();
    const SignalBlock block;
    for (int attempt = 0;; ++attempt) {
        const std::string name =
            ".finf-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
        _temporary = (directory / name).string();
        if (_temporary.size() >= sizeof temporaryPath) {
            throw FinfError(cannotWrite(_path), ENAMETOOLONG);
        }
        const int descriptor = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) {
            std::strcpy(temporaryPath, _temporary.c_str());
            temporaryExists = 1;
            catchSignals();
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
    rename();
}

void OutputFile::rename() {
    const SignalBlock block;
    if (!_force) {
        // Unlike rename, link never replaces a file that has appeared since the first look.
        if (::link(_temporary.c_str(), _path.c_str()) == 0) {
            discard();
            return;
        }
        struct stat status {};
        if (errno == EEXIST || ::lstat(_path.c_str(), &status) == 0) {
            throw FinfError(_path + " exists already; --force overwrites it");
        }
        // A file system without hard links: rename below.
    }
    if (std::rename(_temporary.c_str(), _path.c_str()) != 0) {
        throw FinfError(cannotWrite(_path), errno);
    }
    temporaryExists = 0;
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
    const SignalBlock block;
    ::unlink(_temporary.c_str());
    temporaryExists = 0;
    _temporary.clear();
}

} // namespace finf
