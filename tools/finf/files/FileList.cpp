#include "files/FileList.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <system_error>

namespace finf {

namespace {

namespace fs = std::filesystem;

} // namespace

FileList::FileList(const Options& options, const Extensions& extensions)
    : _options(options), _extensions(extensions) {
    checkOptions();
    if (options.inputs.empty()) {
        addFile("-", "-");
    }
    for (const fs::path input : options.inputs) {
        std::error_code error;
        if (!fs::is_directory(input, error)) {
            addFile(input, input.filename());
        } else if (options.recursive) {
            addDirectory(input);
        } else {
            addFailure(input, FinfError("is a directory; --recursive converts the " +
                                        std::string(_extensions.input) + " files in it"));
        }
    }
}

void FileList::checkOptions() const {
    const auto& inputs = _options.inputs;
    const bool standardInput = inputs.empty() || std::find(inputs.begin(), inputs.end(), "-") != inputs.end();
    const char* problem = nullptr;
    if (standardInput && inputs.size() > 1) {
        problem = "standard input is converted alone";
    } else if (standardInput && !_options.outputDirectory.empty()) {
        problem = "standard input has no name for --output-directory";
    } else if (!_options.output.empty() && !_options.outputDirectory.empty()) {
        problem = "--output and --output-directory exclude each other";
    } else if (!_options.output.empty() && (inputs.size() > 1 || _options.recursive)) {
        problem = "--output takes one document; --output-directory takes several";
    }
    if (problem) {
        throw CLI::ValidationError(problem, CLI::ExitCodes::ValidationError);
    }
}

void FileList::addFile(const fs::path& input, const fs::path& relative) {
    const std::string output = outputOf(input, relative);
    if (output != "-") {
        const auto [it, isNew] =
            _inputOfOutput.emplace(fs::path(output).lexically_normal().string(), input.string());
        if (!isNew) {
            addFailure(input, FinfError(output + " is the output of " + it->second + " already"));
            return;
        }
    }
    std::error_code error;
    if (input != "-" && fs::is_regular_file(input, error)) {
        const std::uintmax_t size = fs::file_size(input, error);
        _octets += error ? 0 : size;
    }
    _jobs.push_back({input, output, nullptr});
}

void FileList::addDirectory(const fs::path& directory) {
    std::vector<fs::path> open{directory};
    std::vector<fs::path> files;
    bool failed = false;
    while (!open.empty()) {
        const fs::path current = open.back();
        open.pop_back();
        std::error_code error;
        for (fs::directory_iterator it(current, error), end; !error && it != end; it.increment(error)) {
            std::error_code ignored;
            // A directory behind a symbolic link may be one that is on the list already, or lead in a circle.
            if (it->is_directory(ignored)) {
                if (!it->is_symlink(ignored)) {
                    open.push_back(it->path());
                }
            } else if (it->path().extension() == _extensions.input && it->is_regular_file(ignored)) {
                files.push_back(it->path());
            }
        }
        if (error) {
            addFailure(current, FinfError("cannot read", error.value()));
            failed = true;
        }
    }
    if (files.empty() && !failed) {
        addFailure(directory, FinfError("holds no " + std::string(_extensions.input) + " file"));
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        addFile(file, file.lexically_relative(directory));
    }
}

void FileList::addFailure(const std::string& input, const FinfError& failure) {
    _jobs.push_back({input, {}, std::make_exception_ptr(failure)});
}

std::string FileList::outputOf(const fs::path& input, const fs::path& relative) const {
    if (!_options.output.empty()) {
        return _options.output;
    }
    if (input == "-") {
        return "-";
    }
    fs::path output = _options.outputDirectory.empty() ? input : _options.outputDirectory / relative;
    if (output.extension() == _extensions.input) {
        output.replace_extension();
    }
    output += _extensions.output;
    return output;
}

} // namespace finf
