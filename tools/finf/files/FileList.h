#ifndef TAMO_FINF_FILELIST_H
#define TAMO_FINF_FILELIST_H

#include "command/FinfError.h"
#include "command/Options.h"
#include "files/DocumentKind.h"
#include <cstdint>
#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace finf {

/// What a conversion reads and writes: the extensions, with their dots, and the kind of its input.
struct Extensions {
    const char* input;
    const char* output;
    DocumentKind kind;
};

/// What one file is converted to, and how that went.
struct Job {
    std::string input;            ///< a path, or "-" for standard input
    std::string output;           ///< a path, or "-" for standard output
    bool isCurrent = false;       ///< the output is there and no older than the input
    std::exception_ptr failure{}; ///< why there is no output
    bool isRecovered = false;     ///< failed, but what is whole has been written
    std::string names{};          ///< the outputs that were written, if not output alone
    std::uintmax_t octetsRead = 0;
    std::uintmax_t octetsWritten = 0;
};

/// The files that a command line asks to convert: those that it names and, when it says so, those in the
/// directories that it names.
class FileList {
public:
    /// Looks at the file system. Inputs that cannot be converted become jobs that have failed already.
    /// Throws CLI::ValidationError for options that do not go together.
    FileList(const Options& options, const Extensions& extensions);

    /// The jobs in the order of the command line, those of a directory sorted by path.
    std::vector<Job>& jobs() { return _jobs; }

    /// The input whose output has this path, null when there is none.
    const std::string* inputOf(const std::string& output) const;

    /// The octets of all inputs; 0 when the size of one is not known.
    std::uintmax_t octets() const { return _isSizeKnown ? _octets : 0; }

private:
    void checkOptions() const;
    void addFile(const std::filesystem::path& input, const std::filesystem::path& relative);
    void addDirectory(const std::filesystem::path& directory);
    void addFailure(const std::string& input, const FinfError& failure);
    std::string outputOf(const std::filesystem::path& input, const std::filesystem::path& relative) const;

    const Options& _options;
    const Extensions _extensions;
    std::vector<Job> _jobs;
    std::map<std::string, std::string> _inputOfOutput;
    std::uintmax_t _octets = 0;
    bool _isSizeKnown = true;
};

} // namespace finf

#endif
