#include "files/TemporaryFiles.h"
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace finf {

namespace {

const std::string PREFIX = ".finf-";
const char SUFFIX[] = ".tmp";

/// The process whose temporary file has this name, 0 when it is no such name.
pid_t processOf(std::string_view name) {
    if (!name.starts_with(PREFIX) || !name.ends_with(SUFFIX)) {
        return 0;
    }
    name.remove_prefix(PREFIX.size());
    pid_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    return error == std::errc() && *end == '-' ? process : 0;
}

} // namespace

TemporaryFiles& TemporaryFiles::instance() {
    static auto& files = *new TemporaryFiles;
    return files;
}

void TemporaryFiles::removeOnSignals() {
    if (_waiting) {
        return;
    }
    _waiting = true;
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction present {};
        // A signal that the caller ignores (nohup) stays ignored.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
    std::signal(SIGXFSZ, SIG_IGN);
    // Threads that are started later inherit it, so that only the one that waits gets the signals.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([this, signals] {
        int signal = 0;
        if (sigwait(&signals, &signal) == 0) {
            removeAllAndEnd(signal);
        }
    }).detach();
}

void TemporaryFiles::removeAllAndEnd(int signal) {
    // Held to the end: no file appears any more.
    const std::lock_guard lock(_mutex);
    for (const std::string& path : _paths) {
        ::unlink(path.c_str());
    }
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, signal);
    std::signal(signal, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    ::raise(signal);
}

int TemporaryFiles::create(const std::string& directory, mode_t mode, std::string& path) {
    const std::lock_guard lock(_mutex);
    removeLeftovers(directory);
    for (unsigned int n = 0;; ++n) {
        const std::string name = PREFIX + std::to_string(::getpid()) + "-" + std::to_string(n) + SUFFIX;
        path = (std::filesystem::path(directory) / name).string();
        if (_paths.contains(path)) {
            continue;
        }
        const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0) {
            // Processes elsewhere cannot see that this one is alive, but they see the lock.
            ::flock(descriptor, LOCK_EX | LOCK_NB);
            _paths.insert(path);
        } else if (errno == EEXIST) {
            continue;
        }
        return descriptor;
    }
}

// Those of processes that are gone, and that nobody has open.
void TemporaryFiles::removeLeftovers(const std::string& directory) {
    if (!_sweptDirectories.insert(directory).second) {
        return;
    }
    std::error_code error;
    const std::filesystem::path path = directory.empty() ? "." : directory;
    for (std::filesystem::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
        const pid_t process = processOf(it->path().filename().string());
        if (process <= 0 || ::kill(process, 0) == 0 || errno != ESRCH) {
            continue;
        }
        const int descriptor = ::open(it->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (descriptor >= 0) {
            if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
                ::unlink(it->path().c_str());
            }
            ::close(descriptor);
        }
    }
}

int TemporaryFiles::moveTo(const std::string& temporary, const std::string& path, bool replace) {
    const std::lock_guard lock(_mutex);
    if (!replace) {
        // Unlike rename, link never replaces a file that has appeared since the first look.
        if (::link(temporary.c_str(), path.c_str()) == 0) {
            ::unlink(temporary.c_str());
            _paths.erase(temporary);
            return 0;
        }
        struct stat status {};
        if (errno == EEXIST || ::lstat(path.c_str(), &status) == 0) {
            return EEXIST;
        }
        // A file system without hard links: rename below.
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        return errno;
    }
    _paths.erase(temporary);
    return 0;
}

void TemporaryFiles::remove(const std::string& path) noexcept {
    const std::lock_guard lock(_mutex);
    ::unlink(path.c_str());
    _paths.erase(path);
}

} // namespace finf
