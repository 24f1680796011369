#ifndef TAMO_FINF_INPUTFILE_H
#define TAMO_FINF_INPUTFILE_H

#include "files/FileDescriptorBuf.h"
#include <istream>
#include <string>

namespace finf {

/// A file, or standard input, that is open for reading.
class InputFile {
public:
    /// Opens the file at path, or standard input for "-"; throws FinfError when that is impossible.
    /// What is read advances the counter, which is borrowed.
    explicit InputFile(const std::string& path, std::atomic<std::uintmax_t>* pOctetsRead = nullptr);
    ~InputFile();

    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// All of the file at path; throws FinfError.
    static std::string readAll(const std::string& path);

    std::istream& stream() { return _stream; }

    /// Throws FinfError when a read has failed: what looked like the end of the input was none.
    void check() const;

private:
    int _descriptor;
    FileDescriptorBuf _buf;
    std::istream _stream;
};

} // namespace finf

#endif
