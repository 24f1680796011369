#ifndef TAMO_FINF_OUTPUTFILE_H
#define TAMO_FINF_OUTPUTFILE_H

#include "Tamo/DeferredFlushStream.h"
#include "files/FileDescriptorBuf.h"
#include <ostream>
#include <string>

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

    /// Prepares to write to path, or to standard output for "-". A regular file that exists is refused unless
    /// force is true. Throws FinfError.
    OutputFile(const std::string& path, bool force);

    /// Removes what was not committed.
    ~OutputFile();

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    std::ostream& stream() { return _stream; }

    /// Throws FinfError when a write has failed.
    void check() const;

    /// Writes the rest out and gives the file its name; throws FinfError and leaves nothing behind on
    /// failure.
    void commit();

private:
    static std::string resolve(const std::string& path, bool force);
    int open();
    int createTemporary();
    void discard() noexcept;

    std::string _path;
    bool _force;
    std::string _temporary; // empty when the output is written directly
    int _descriptor;
    FileDescriptorBuf _buf;
    std::ostream _file;
    Tamo::DeferredFlushOutputStream _stream;
};

} // namespace finf

#endif
