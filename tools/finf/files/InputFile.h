#ifndef TAMO_FINF_INPUTFILE_H
#define TAMO_FINF_INPUTFILE_H

#include "files/DecompressingBuf.h"
#include "files/DocumentKind.h"
#include "files/FileDescriptorBuf.h"
#include <atomic>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace finf {

/// A file, or standard input, that is open for reading. What is compressed with gzip or zstd is read as what
/// it holds.
class InputFile {
public:
    /// Opens the file at path, or standard input for "-"; throws FinfError when that is impossible.
    /// What is read advances the counter, which is borrowed. With a follower, which is borrowed, the end of a
    /// file is waited at, and nothing is decompressed.
    explicit InputFile(const std::string& path, std::atomic<std::uintmax_t>* pOctetsRead = nullptr,
                       Follower* pFollower = nullptr);
    ~InputFile();

    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// All of the file at path; throws FinfError.
    static std::string readAll(const std::string& path);

    std::istream& stream() { return _stream; }

    /// Whether anything is left to be read.
    bool hasMore() { return _stream.peek() != std::istream::traits_type::eof(); }

    /// Throws FinfError when a read has failed: what looked like the end of the input was none.
    void check() const;

    /// What was read so far says that the document is of this kind.
    DocumentKind kind() const;

    /// Throws FinfError when what was read so far is plainly no document of this kind: when it is of the
    /// other kind, or empty.
    void checkKind(DocumentKind expected) const;

    /// Looks at the first octets, and throws FinfError when they cannot be read or are of the wrong kind.
    void requireKind(DocumentKind expected);

    /// Does the work, which reads a document of this kind. When it fails, a read that has failed, or the
    /// wrong kind of input, is thrown in place of what follows from it.
    void explain(DocumentKind expected, const std::function<void()>& work) const;

    /// The octets that were read, before they were decompressed.
    std::uintmax_t octetsRead() const noexcept { return _buf.octetsRead(); }

    /// What the system knows of the file; nothing unless it is a regular file that was named.
    std::optional<struct stat> status() const;

private:
    const std::string _path;
    int _descriptor;
    Follower* const _pFollower;
    FileDescriptorBuf _buf;
    std::unique_ptr<DecompressingBuf> _pDecompressing;
    std::istream _stream;
};

} // namespace finf

#endif
