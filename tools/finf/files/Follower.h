#ifndef TAMO_FINF_FOLLOWER_H
#define TAMO_FINF_FOLLOWER_H

#include <csignal>
#include <functional>
#include <string>

namespace finf {

/// Waits for what is going to be written to a file, or to come through a pipe, until it is interrupted or
/// terminated (SIGINT, SIGTERM), which only happens while it waits. One object in a process, used by one
/// thread, which is the only one.
class Follower {
public:
    /// beforeWaiting is called whenever nothing is there to be read.
    explicit Follower(std::function<void()> beforeWaiting);

    /// Lets the signals do what they did before.
    ~Follower();

    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;

    /// Waits until the descriptor of the file at path ("-" for standard input) has something to be read, or
    /// has come to an end as pipes do. False when following has ended before.
    bool await(int descriptor, const std::string& path);

    /// Whether a signal has ended it.
    bool isInterrupted() const noexcept { return _isInterrupted; }

    /// What has happened to the file, which has ended it; empty when nothing has.
    const std::string& fault() const noexcept { return _fault; }

private:
    bool sleep(int descriptor, const struct timespec* pTime);
    std::string changeOf(int descriptor, const std::string& path) const;

    const std::function<void()> _beforeWaiting;
    sigset_t _signalsBefore{};
    struct sigaction _interruptBefore {};
    struct sigaction _terminateBefore {};
    bool _isInterrupted = false;
    std::string _fault;
};

} // namespace finf

#endif
