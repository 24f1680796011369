#include "files/Follower.h"
#include <cerrno>
#include <sys/select.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace finf {

namespace {

constexpr int NONE = -1; // of the descriptors
constexpr struct timespec NO_TIME {};
constexpr struct timespec POLL_INTERVAL { 0, 50'000'000 };

/// There to end the wait, which says so itself.
extern "C" void doNothing(int) {}

} // namespace

Follower::Follower(std::function<void()> beforeWaiting) : _beforeWaiting(std::move(beforeWaiting)) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, &_signalsBefore);
    struct sigaction action {};
    action.sa_handler = &doNothing;
    for (const auto& [signal, pBefore] :
         {std::pair(SIGINT, &_interruptBefore), std::pair(SIGTERM, &_terminateBefore)}) {
        sigaction(signal, nullptr, pBefore);
        // One that the caller ignores stays ignored.
        if (pBefore->sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

Follower::~Follower() {
    sigaction(SIGINT, &_interruptBefore, nullptr);
    sigaction(SIGTERM, &_terminateBefore, nullptr);
    pthread_sigmask(SIG_SETMASK, &_signalsBefore, nullptr);
}

bool Follower::await(int descriptor, const std::string& path) {
    for (bool isFirst = true;; isFirst = false) {
        struct stat status {};
        const bool isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
        const off_t at = isRegular ? ::lseek(descriptor, 0, SEEK_CUR) : 0;
        // A signal also counts where there is always something to be read.
        if (!sleep(NONE, &NO_TIME)) {
            return false;
        }
        if (isRegular ? status.st_size > at : !sleep(descriptor, &NO_TIME)) {
            return true;
        }
        if (isFirst) {
            _beforeWaiting();
        }
        if (isRegular) {
            _fault = status.st_size < at ? "has been cut to " + std::to_string(status.st_size) +
                                               " octets, of which " + std::to_string(at) + " were read"
                                         : changeOf(descriptor, path);
            if (!_fault.empty()) {
                return false;
            }
        }
        if (!sleep(isRegular ? NONE : descriptor, isRegular ? &POLL_INTERVAL : nullptr)) {
            return !_isInterrupted;
        }
    }
}

// True when the time is over; false when the descriptor is ready, or fails, or when a signal has come.
bool Follower::sleep(int descriptor, const struct timespec* pTime) {
    fd_set descriptors;
    FD_ZERO(&descriptors);
    if (descriptor >= 0) {
        FD_SET(descriptor, &descriptors);
    }
    // Signals come in here and nowhere else, so that none is missed.
    sigset_t signals = _signalsBefore;
    sigdelset(&signals, SIGINT);
    sigdelset(&signals, SIGTERM);
    const int count = ::pselect(descriptor + 1, &descriptors, nullptr, nullptr, pTime, &signals);
    _isInterrupted = _isInterrupted || (count < 0 && errno == EINTR);
    return count == 0;
}

// What has become of the name, behind which all of the file has been read.
std::string Follower::changeOf(int descriptor, const std::string& path) const {
    struct stat opened {};
    struct stat named {};
    if (path == "-" || ::fstat(descriptor, &opened) != 0) {
        return {};
    }
    if (::stat(path.c_str(), &named) != 0) {
        return "has been removed";
    }
    return opened.st_dev == named.st_dev && opened.st_ino == named.st_ino
               ? std::string()
               : "has been replaced by another file";
}

} // namespace finf
