#include "files/DocumentOutputs.h"
#include "command/FinfError.h"
#include <filesystem>

namespace finf {

DocumentOutputs::DocumentOutputs(const Job& job, const FileList& list, const Options& options,
                                 const OutputFile::Options& fileOptions)
    : _path(job.output), _list(list), _options(options), _fileOptions(fileOptions) {}

std::ostream& DocumentOutputs::begin() {
    if (!_file) {
        _file.emplace(_documents == 0 ? _path : numbered(_documents + 1), _fileOptions);
    }
    return _file->stream();
}

void DocumentOutputs::end(bool hasMore) {
    ++_documents;
    if (isForAll()) {
        return;
    }
    const bool isAlone = _documents == 1 && !hasMore;
    if (!isAlone && _options.inPlace) {
        throw FinfError("more stands behind the document, which alone --in-place would leave");
    }
    commit(isAlone ? _path : numbered(_documents));
    _numbered += isAlone ? 0 : 1;
}

void DocumentOutputs::drop() {
    if (!isForAll() || _documents == 0) {
        _file.reset();
    }
}

void DocumentOutputs::finish() {
    if (_file) {
        commit(_path);
    }
}

void DocumentOutputs::check() const {
    if (_file) {
        _file->check();
    }
}

void DocumentOutputs::flush() {
    if (_file) {
        _file->flush();
    }
}

std::string DocumentOutputs::names() const {
    return _numbered == 0   ? std::string()
           : _numbered == 1 ? numbered(1)
                            : numbered(1) + " to " + numbered(_numbered);
}

// In front of the extension, and of that of a compression.
std::string DocumentOutputs::numbered(std::size_t number) const {
    std::filesystem::path path(_path);
    std::string extensions(extensionOf(_options.compression));
    if (!extensions.empty() && path.extension() == extensions) {
        path.replace_extension();
    } else {
        extensions.clear();
    }
    extensions = path.extension().string() + extensions;
    path.replace_extension();
    return path.string() + "-" + std::to_string(number) + extensions;
}

void DocumentOutputs::commit(const std::string& path) {
    if (path != _path) {
        if (const std::string* pInput = _list.inputOf(path)) {
            throw FinfError(path + " is the output of " + *pInput + " already");
        }
    }
    _file->commitAs(path);
    _size += _file->size();
    _file.reset();
}

} // namespace finf
