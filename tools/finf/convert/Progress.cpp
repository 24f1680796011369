#include "convert/Progress.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace finf {

namespace {

constexpr auto SILENCE = std::chrono::milliseconds(500);
constexpr auto INTERVAL = std::chrono::milliseconds(200);
constexpr std::size_t BAR = 24;

int terminalWidth() {
    struct winsize size {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

/// Hours, when there are any, minutes and seconds: 1:02:03, 2:03.
std::string duration(double seconds) {
    const auto whole = static_cast<long>(std::lround(std::min(seconds, 359999.0)));
    char text[32];
    if (whole >= 3600) {
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    }
    return text;
}

} // namespace

Progress::Progress(std::size_t files, std::uintmax_t octets, bool visible) : _files(files), _octets(octets) {
    if (visible) {
        _thread = std::thread([this] { show(); });
    }
}

Progress::~Progress() {
    if (_thread.joinable()) {
        {
            const std::lock_guard lock(_mutex);
            _ended = true;
        }
        _end.notify_one();
        _thread.join();
    }
}

void Progress::show() {
    std::unique_lock lock(_mutex);
    if (_end.wait_for(lock, SILENCE, [this] { return _ended; })) {
        return;
    }
    bool isShown = false;
    do {
        // Nothing into the terminal of another job. (In a pipe line of the foreground, the group is the
        // shell's choice, and the same for all of it.)
        if (::tcgetpgrp(STDERR_FILENO) != ::getpgrp()) {
            continue;
        }
        isShown = true;
        // To the beginning of the line, and clear what is left of the former one.
        std::cerr << '\r' + line(terminalWidth() - 1) + "\x1b[K";
    } while (!_end.wait_for(lock, INTERVAL, [this] { return _ended; }));
    if (isShown) {
        std::cerr << "\r\x1b[K";
    }
}

std::string Progress::line(int width) const {
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
    const auto done = static_cast<double>(_octetsRead.load());
    const double rate = done / seconds;
    std::string text;
    if (_octets > 0) {
        const double part = std::min(done / static_cast<double>(_octets), 1.0);
        const auto filled = static_cast<std::size_t>(part * static_cast<double>(BAR));
        text = '[' + std::string(filled, '#') + std::string(BAR - filled, '.') + "] " +
               std::to_string(static_cast<int>(part * 100)) + " %  ";
    }
    if (_files > 1) {
        text += std::to_string(_filesDone.load()) + '/' + std::to_string(_files) + " files  ";
    }
    char number[64];
    if (_octets == 0) {
        std::snprintf(number, sizeof number, "%.1f MB  ", done / 1e6);
        text += number;
    }
    std::snprintf(number, sizeof number, "%.1f MB/s", rate / 1e6);
    text += number;
    const double left = static_cast<double>(_octets) - done;
    if (left > 0 && rate > 0) {
        text += "  " + duration(left / rate) + " left";
    }
    return text.substr(0, static_cast<std::size_t>(std::max(width, 0)));
}

} // namespace finf
