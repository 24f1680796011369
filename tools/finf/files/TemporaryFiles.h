#ifndef TAMO_FINF_TEMPORARYFILES_H
#define TAMO_FINF_TEMPORARYFILES_H

#include <mutex>
#include <set>
#include <string>
#include <sys/types.h>

namespace finf {

/// The temporary files that the process has made, so that a signal which ends it leaves none behind. Those of
/// a process that was killed are found by their names, .finf-PID-N.tmp, and removed by the next one that
/// writes to their directory.
///
/// A thread of its own waits for the signals and removes the files, so that nothing here has to be done in a
/// signal handler. Usable from several threads.
class TemporaryFiles {
public:
    /// The object of the process; it is never destroyed, since a signal may come at any time.
    static TemporaryFiles& instance();

    /// From now on SIGHUP, SIGINT, SIGQUIT and SIGTERM, unless they are ignored, remove the files and then
    /// end the process as they would have; a file that grows beyond its limit (SIGXFSZ) is a failed write. To
    /// be called by the first thread, before there are others.
    void removeOnSignals();

    /// Makes a new file in a directory (empty for the present one), with at most these permissions, and opens
    /// it for writing; path gets its name. Returns -1, with the reason in errno, when that is impossible.
    /// What a killed process has left in the directory is removed.
    int create(const std::string& directory, mode_t mode, std::string& path);

    /// Gives a file its final name. Without replace, a file of that name is left and EEXIST returned.
    /// Returns 0 or the system's error; the temporary file is gone when it is 0.
    int moveTo(const std::string& temporary, const std::string& path, bool replace);

    void remove(const std::string& path) noexcept;

private:
    void removeAllAndEnd(int signal);
    void removeLeftovers(const std::string& directory);

    std::mutex _mutex; // held whenever a file and the note about it change
    std::set<std::string> _paths;
    std::set<std::string> _sweptDirectories;
    bool _waiting = false;
};

} // namespace finf

#endif
