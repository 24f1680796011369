#ifndef TAMO_FINF_STANDARDOUTPUT_H
#define TAMO_FINF_STANDARDOUTPUT_H

#include "Tamo/DeferredFlushStream.h"
#include "files/FileDescriptorBuf.h"
#include <ostream>
#include <string>

namespace finf {

/// Puts a buffer behind std::cout that remembers why a write has failed. One object, in main().
class StandardOutput {
public:
    StandardOutput();

    /// Gives std::cout its own buffer back.
    ~StandardOutput();

    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    /// Writes out what was printed so far, so that it stands in front of a message on standard error.
    static void passOn();

    /// Whether to print colours: "always", "never", or "auto", which is on a terminal unless its user wants
    /// none (https://no-color.org).
    static bool takesColours(const std::string& when);

    /// Writes the rest out; throws FinfError when that, or an earlier write, has failed.
    void finish();

private:
    FileDescriptorBuf _buf;
    std::ostream _direct;
    Tamo::DeferredFlushOutputStream _stream;
    std::streambuf* _pPrevious;
};

} // namespace finf

#endif
