#ifndef TAMO_FINF_PROGRESS_H
#define TAMO_FINF_PROGRESS_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace finf {

/// Shows on the terminal how far a lengthy conversion is, in a line that is gone in the end.
///
/// The counters may be advanced by any thread. What takes less than half a second shows nothing.
class Progress {
public:
    /// For files of so many octets together, 0 when that is not known. Without visible, nothing is shown.
    Progress(std::size_t files, std::uintmax_t octets, bool visible);

    /// Removes the line.
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// The octets that were read.
    std::atomic<std::uintmax_t>& octetsRead() { return _octetsRead; }

    void fileDone() { ++_filesDone; }

private:
    void show();
    std::string line(int width) const;

    const std::size_t _files;
    const std::uintmax_t _octets;
    std::atomic<std::size_t> _filesDone = 0;
    std::atomic<std::uintmax_t> _octetsRead = 0;
    const std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
    std::mutex _mutex;
    std::condition_variable _end;
    bool _ended = false;
    std::thread _thread;
};

} // namespace finf

#endif
