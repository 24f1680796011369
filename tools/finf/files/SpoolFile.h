#ifndef TAMO_FINF_SPOOLFILE_H
#define TAMO_FINF_SPOOLFILE_H

#include "files/FileDescriptorBuf.h"
#include <istream>
#include <memory>

namespace finf {

/// A file without a name that keeps what cannot be read twice, such as a pipe; gone with the process.
class SpoolFile {
public:
    /// Throws FinfError.
    SpoolFile();
    ~SpoolFile();

    SpoolFile(const SpoolFile&) = delete;
    SpoolFile& operator=(const SpoolFile&) = delete;

    /// Takes the octets.
    std::streambuf& sink() { return *_pSink; }

    /// All that was written, from its beginning. Throws FinfError when a write has failed.
    std::istream& read();

private:
    int _descriptor;
    std::unique_ptr<FileDescriptorBuf> _pSink;
    std::unique_ptr<FileDescriptorBuf> _pSource;
    std::unique_ptr<std::istream> _pStream;
};

} // namespace finf

#endif
