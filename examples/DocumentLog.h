#ifndef TAMO_EXAMPLE_DOCUMENTLOG_H
#define TAMO_EXAMPLE_DOCUMENTLOG_H

#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace example {

/// A file that is a sequence of Fast Infoset documents and grows by one at a time. For POSIX systems.
///
/// What append() has returned from is on the disk, whenever the process is killed. One process writes to a
/// log, and one thread at a time; others may read it meanwhile, and find at its end a document that is not
/// complete yet.
class DocumentLog {
public:
    /// Opens the log at path, which is made when it is not there, and reports the documents that it holds to
    /// the handler, which is borrowed. What a killed process has left of a document is cut off; the handler
    /// may have seen its beginning, but no endDocument(). Throws std::system_error, and what the parser
    /// throws for a document that is damaged otherwise; nothing is cut off then.
    DocumentLog(const std::string& path, Tamo::FastInfoset::FISDefaultHandler& handler)
        : _file(::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666)) {
        require(_file.descriptor >= 0, "cannot open");
        require(::flock(_file.descriptor, LOCK_EX | LOCK_NB) == 0, "cannot have it alone");
        // [recover]
        std::ifstream stream(path, std::ios::binary);
        Tamo::FastInfoset::FastInfosetParser parser;
        parser.setStrict(true);
        parser.initialize(&handler);
        try {
            while (parser.parseNext(stream)) {
                _size += parser.documentSize();
            }
        } catch (const Tamo::FastInfoset::FISParseException&) {
            if (!stream.eof() || stream.bad()) {
                throw;
            }
            // The file ends before the document does: nobody was told that it is durable.
            require(::ftruncate(_file.descriptor, static_cast<off_t>(_size)) == 0, "cannot cut it");
        }
        // [/recover]
        // The name of a new file is to last as long as what is in it.
        const std::string directory = std::filesystem::absolute(path).parent_path();
        const File parent(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        require(parent.descriptor >= 0 && ::fsync(_file.descriptor) == 0 && ::fsync(parent.descriptor) == 0,
                "cannot make it durable");
    }

    DocumentLog(const DocumentLog&) = delete;
    DocumentLog& operator=(const DocumentLog&) = delete;

    // [append]
    /// Adds a whole document, which is durable afterwards. Throws std::system_error; the log is then as it
    /// was before, as far as the disk lets it.
    void append(std::string_view document) {
        try {
            for (std::string_view rest = document; !rest.empty();) {
                const ssize_t count = ::write(_file.descriptor, rest.data(), rest.size());
                require(count >= 0 || errno == EINTR, "cannot write");
                rest.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
            }
            require(::fdatasync(_file.descriptor) == 0, "cannot make it durable");
        } catch (...) {
            static_cast<void>(::ftruncate(_file.descriptor, static_cast<off_t>(_size)));
            throw;
        }
        _size += document.size();
    }
    // [/append]

    /// The octets of the documents that are durable.
    std::uint64_t size() const noexcept { return _size; }

private:
    struct File {
        explicit File(int number) : descriptor(number) {}
        ~File() {
            if (descriptor >= 0) {
                ::close(descriptor);
            }
        }
        File(const File&) = delete;
        File& operator=(const File&) = delete;

        const int descriptor;
    };

    static void require(bool condition, const char* otherwise) {
        if (!condition) {
            throw std::system_error(errno, std::generic_category(), std::string("log: ") + otherwise);
        }
    }

    File _file;
    std::uint64_t _size = 0;
};

} // namespace example

#endif
