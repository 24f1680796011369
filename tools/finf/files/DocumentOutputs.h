#ifndef TAMO_FINF_DOCUMENTOUTPUTS_H
#define TAMO_FINF_DOCUMENTOUTPUTS_H

#include "files/FileList.h"
#include "files/OutputFile.h"
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>

namespace finf {

/// Where the documents of an input go: one document alone to the file that was asked for, several to numbered
/// ones, x-1.xml, x-2.xml, ..., each of which appears when its document is complete. What is written
/// directly, as standard output, takes all of them, and so does a file with a separator.
class DocumentOutputs {
public:
    /// For the path of a job of the list; both are borrowed, and so are the options of the command line.
    DocumentOutputs(const Job& job, const FileList& list, const Options& options,
                    const OutputFile::Options& fileOptions);

    /// Where the next document is to be written. Throws FinfError.
    std::ostream& begin();

    /// The document is complete, and another one follows or not. Throws FinfError.
    void end(bool hasMore);

    /// Nothing is to be left of the document.
    void drop();

    /// Comes behind the last document; throws FinfError.
    void finish();

    /// Throws FinfError when a write has failed.
    void check() const;

    /// Writes out what the output holds.
    void flush();

    /// The octets that finished outputs have taken.
    std::uintmax_t size() const noexcept { return _size; }

    /// The names of the files when they are numbered, else empty.
    std::string names() const;

private:
    bool isForAll() const { return _options.separator || _file->isDirect(); }
    std::string numbered(std::size_t number) const;
    void commit(const std::string& path);

    const std::string _path;
    const FileList& _list;
    const Options& _options;
    const OutputFile::Options _fileOptions;
    std::optional<OutputFile> _file; // of the document that is being written, or of all
    std::size_t _documents = 0;      // that are complete
    std::size_t _numbered = 0;       // files
    std::uintmax_t _size = 0;
};

} // namespace finf

#endif
