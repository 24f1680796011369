#include "files/TemporaryFiles.h"
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace finf {

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
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction present {};
        // A signal that the caller ignores (nohup) stays ignored.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
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

int TemporaryFiles::create(const std::string& path) {
    const std::lock_guard lock(_mutex);
    const auto [it, isNew] = _paths.insert(path);
    const int descriptor = isNew ? ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666) : -1;
    if (!isNew) {
        errno = EEXIST;
    } else if (descriptor < 0) {
        const int error = errno;
        _paths.erase(it);
        errno = error;
    }
    return descriptor;
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
