#ifndef TAMO_FINF_OUTPUTFILE_H
#define TAMO_FINF_OUTPUTFILE_H

#include "Tamo/DeferredFlushStream.h"
#include "files/CompressingBuf.h"
#include "files/Compression.h"
#include "files/FileDescriptorBuf.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <sys/stat.h>

namespace finf {

/// A file that appears complete or not at all, or standard output.
///
/// What is written goes to a temporary file in the directory of the result, which commit() renames. Until
/// then the temporary file is removed by the destructor and, after removeTemporariesOnSignals(), when the
/// process is interrupted or terminated. What is no regular file (a device, a pipe) is written directly. The
/// stream flushes nothing before commit(). An object is used by one thread; there may be several objects.
class OutputFile {
public:
    /// Makes interruption and termination remove what was not committed. To be called by the first thread,
    /// before there are others.
    static void removeTemporariesOnSignals();

    /// How a file is written.
    struct Options {
        bool force = false; ///< a regular file that exists is replaced
        Compression compression = Compression::NONE;
        /// What a regular file keeps of its input: permissions, group and modification time.
        std::optional<struct stat> attributes;
    };

    /// Prepares to write to path, or to standard output for "-". A regular file that exists is refused unless
    /// it may be replaced. Throws FinfError.
    OutputFile(const std::string& path, const Options& options);
    OutputFile(const std::string& path, bool force) : OutputFile(path, Options{force, {}, {}}) {}

    /// Removes what was not committed.
    ~OutputFile();

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    std::ostream& stream() { return _stream; }

    /// Whether it is written directly: standard output, a device or a pipe.
    bool isDirect() const noexcept { return _temporary.empty(); }

    /// Writes out what the stream holds; check() tells of a failure.
    void flush() { _stream.finish(); }

    /// Throws FinfError when a write has failed.
    void check() const;

    /// Writes the rest out and gives the file its name; throws FinfError and leaves nothing behind on
    /// failure.
    void commit();

    /// The same under another name in the same directory.
    void commitAs(const std::string& path);

    /// The octets that the output has taken so far.
    std::uintmax_t size() const noexcept { return _buf.octetsWritten(); }

private:
    static std::string resolve(const std::string& path, bool force);
    int open();
    int createTemporary();
    void takeAttributes();
    void discard() noexcept;

    std::string _path;
    const Options _options;
    std::string _temporary; // empty when the output is written directly
    int _descriptor;
    FileDescriptorBuf _buf;
    std::unique_ptr<CompressingBuf> _pCompressing;
    std::ostream _file;
    Tamo::DeferredFlushOutputStream _stream;
};

} // namespace finf

#endif
