#include "files/FileList.h"
#include "files/DirectoryWalk.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <system_error>

namespace finf {

namespace {

namespace fs = std::filesystem;

/// What files of XML are called that are not called .xml.
constexpr std::string_view XML_EXTENSIONS[] = {
    ".atom",  ".dae", ".dbk",    ".dita", ".docbook", ".fo",    ".gir",   ".gml", ".gpx",
    ".html",  ".kml", ".mathml", ".mml",  ".owl",     ".plist", ".rdf",   ".rng", ".rss",
    ".sch",   ".svg", ".tei",    ".ui",   ".wsdl",    ".x3d",   ".xhtml", ".xib", ".xlf",
    ".xliff", ".xmi", ".xmp",    ".xsd",  ".xsl",     ".xslt",  ".xspf"};

bool isXMLName(const fs::path& path) {
    return std::find(std::begin(XML_EXTENSIONS), std::end(XML_EXTENSIONS), path.extension().string()) !=
           std::end(XML_EXTENSIONS);
}

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
            addFailure(input, DirectoryWalk::isDirectory("converts", _extensions.input));
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
    if (!problem && _options.inPlace) {
        if (standardInput) {
            problem = "standard input is no file that --in-place could replace";
        } else if (!_options.output.empty() || !_options.outputDirectory.empty()) {
            problem = "--in-place excludes --output, --stdout and --output-directory";
        }
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
    } else {
        _isSizeKnown = false;
    }
    Job job{input, output};
    if (_options.update && output != "-") {
        std::error_code none;
        const auto made = fs::last_write_time(output, none);
        job.isCurrent = !none && made >= fs::last_write_time(input, error) && !error;
    }
    _jobs.push_back(job);
}

const std::string* FileList::inputOf(const std::string& output) const {
    const auto found = _inputOfOutput.find(fs::path(output).lexically_normal().string());
    return found == _inputOfOutput.end() ? nullptr : &found->second;
}

void FileList::addDirectory(const fs::path& directory) {
    const auto failure = [this](const std::string& path, const FinfError& e) { addFailure(path, e); };
    for (const fs::path& file : DirectoryWalk::documentsBelow(directory, _extensions.input, failure)) {
        addFile(file, file.lexically_relative(directory));
    }
}

void FileList::addFailure(const std::string& input, const FinfError& failure) {
    Job job{input, {}};
    job.failure = std::make_exception_ptr(failure);
    _jobs.push_back(job);
}

std::string FileList::outputOf(const fs::path& input, const fs::path& relative) const {
    if (!_options.output.empty()) {
        return _options.output;
    }
    if (input == "-") {
        return "-";
    }
    if (_options.inPlace) {
        return input;
    }
    fs::path output = DirectoryWalk::uncompressed(
        _options.outputDirectory.empty() ? input : _options.outputDirectory / relative);
    const bool isUsual = output.extension() == _extensions.input;
    if (isUsual) {
        output.replace_extension();
    }
    // What was encoded as a.svg.finf is a.svg again.
    if (!isUsual || !isXMLName(output) || std::string_view(_extensions.output) != ".xml") {
        output += _extensions.output;
    }
    output += extensionOf(_options.compression);
    return output;
}

} // namespace finf
