#include "convert/Batch.h"
#include "command/FinfError.h"
#include "convert/TornDocument.h"
#include "files/Follower.h"
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace finf {

namespace {

// One file below it is converted before anybody asks.
constexpr std::uintmax_t LEAST_WITH_PROGRESS = 16 << 20;

} // namespace

Batch::Batch(const Options& options, const Extensions& extensions, Factory factory)
    : _options(options), _extensions(extensions), _list(options, extensions), _factory(std::move(factory)) {}

ExitStatus Batch::run() {
    if (!_options.follow) { // which has no temporaries, and ends by itself on signals
        OutputFile::removeTemporariesOnSignals();
    }
    convertAll();
    return report();
}

void Batch::convertAll() {
    // The line would stand between the lines of the document.
    const bool isMixed = _list.jobs().front().output == "-" && ::isatty(STDOUT_FILENO);
    const bool isSmall =
        _list.jobs().size() == 1 && _list.octets() > 0 && _list.octets() < LEAST_WITH_PROGRESS;
    Progress progress(_list.jobs().size(), _list.octets(),
                      !_options.quiet && !_options.follow && !isMixed && !isSmall && ::isatty(STDERR_FILENO));
    const std::size_t wanted = _options.jobs > 0 ? _options.jobs : std::thread::hardware_concurrency();
    const std::size_t useful = std::min(wanted, _list.jobs().size());
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < useful; ++i) {
        threads.emplace_back([&] { work(progress); });
    }
    work(progress);
}

void Batch::work(Progress& progress) {
    std::unique_ptr<Conversion> pConversion;
    for (std::size_t i; (i = _next++) < _list.jobs().size(); progress.fileDone()) {
        Job& job = _list.jobs()[i];
        if (job.failure || job.isCurrent) {
            continue;
        }
        try {
            if (!pConversion) {
                pConversion = _factory();
            }
            convert(*pConversion, job, progress);
        } catch (const TornDocument&) {
            job.failure = std::current_exception();
            job.isRecovered = _options.recover;
        } catch (...) {
            job.failure = std::current_exception();
        }
    }
}

void Batch::convert(Conversion& conversion, Job& job, Progress& progress) {
    checkOutput(job);
    std::optional<DocumentOutputs> outputs;
    std::optional<Follower> follower;
    if (_options.follow) {
        follower.emplace([&] {
            conversion.flush();
            outputs->flush();
        });
    }
    InputFile input(job.input, &progress.octetsRead(), follower ? &*follower : nullptr);
    if (!_options.outputDirectory.empty()) {
        const std::filesystem::path directory = std::filesystem::path(job.output).parent_path();
        std::error_code error;
        std::filesystem::create_directories(directory, error);
        if (error) {
            throw FinfError("cannot make directory " + directory.string(), error.value());
        }
    }
    outputs.emplace(job, _list, _options,
                    OutputFile::Options{_options.force || _options.inPlace || _options.update,
                                        _options.compression, input.status()});
    std::optional<TornDocument> torn;
    try {
        convertDocuments(conversion, input, *outputs);
    } catch (const TornDocument& e) {
        outputs->check();
        input.checkKind(_extensions.kind);
        torn = e;
    } catch (const std::exception&) {
        outputs->check(); // a failed write has made the conversion fail, and says better why
        input.check();
        input.checkKind(_extensions.kind);
        throw;
    }
    outputs->finish();
    job.octetsRead = input.octetsRead();
    job.octetsWritten = outputs->size();
    job.names = outputs->names();
    try {
        input.check();
    } catch (const FinfError& e) {
        if (!_options.recover) {
            throw;
        }
        torn.emplace(torn ? std::string(torn->what()) + ": " + e.what() : e.what(), true);
    }
    if (torn && !(follower && follower->isInterrupted())) {
        throw *torn;
    }
}

void Batch::convertDocuments(Conversion& conversion, InputFile& input, DocumentOutputs& outputs) const {
    // XML text is one document.
    const bool takesMore = _extensions.kind == DocumentKind::FAST_INFOSET && !_options.firstOnly;
    if (_options.follow && !input.hasMore()) {
        return;
    }
    bool hasMore = false;
    do {
        std::ostream& out = outputs.begin();
        try {
            conversion.convert(input.stream(), out);
        } catch (const TornDocument& e) {
            if (e.hasOutput()) {
                outputs.end(false);
            } else {
                outputs.drop();
            }
            throw;
        }
        hasMore = takesMore && input.hasMore();
        if (!hasMore && !_options.recover) {
            input.check(); // before the output gets its name: what looks like the end may be none
        }
        // What is no document is going to be refused, and makes no second output.
        outputs.end(hasMore && (_options.inPlace || mayBeFastInfoset(input.stream().peek())));
    } while (hasMore);
}

void Batch::checkOutput(const Job& job) const {
    std::error_code unknown;
    if (job.output != "-") {
        if (!_options.inPlace && job.input != "-" &&
            std::filesystem::equivalent(job.input, job.output, unknown)) {
            throw FinfError(job.output + " is the document itself; --in-place replaces it");
        }
    } else if ((_extensions.kind == DocumentKind::XML || _options.compression != Compression::NONE) &&
               !_options.force && ::isatty(STDOUT_FILENO)) {
        throw FinfError("binary is not written to a terminal; -o FILE writes it to a file, --force shows it");
    }
}

ExitStatus Batch::report() {
    std::size_t failures = 0;
    std::size_t recovered = 0;
    for (const Job& job : _list.jobs()) {
        if (_options.verbose && (!job.failure || job.isRecovered)) {
            std::cerr << summaryOf(job);
        }
        if (job.failure) {
            ++(job.isRecovered ? recovered : failures);
            try {
                std::rethrow_exception(job.failure);
            } catch (const std::exception& e) {
                FinfError::report(job.input == "-" ? "standard input" : job.input, e);
            }
        }
    }
    if (failures > 0 && _list.jobs().size() > 1) {
        std::cerr << "finf: " + std::to_string(failures) + " of " + std::to_string(_list.jobs().size()) +
                         " inputs not converted\n";
    }
    return failures > 0 ? FAILED : recovered > 0 ? RECOVERED : DONE;
}

std::string Batch::summaryOf(const Job& job) {
    const auto nameOf = [](const std::string& path, const char* standard) {
        return FinfError::oneLine(path == "-" ? standard : path);
    };
    std::string line = nameOf(job.input, "standard input");
    if (job.isCurrent) {
        return line + ": " + nameOf(job.output, "") + " is not older\n";
    }
    line += ": " + std::to_string(job.octetsRead) + " -> " + std::to_string(job.octetsWritten) + " octets";
    if (job.octetsRead > 0) {
        char percent[32];
        std::snprintf(percent, sizeof percent, " (%.1f %%)",
                      100 * static_cast<double>(job.octetsWritten) / static_cast<double>(job.octetsRead));
        line += percent;
    }
    return line + ", " + nameOf(job.names.empty() ? job.output : job.names, "standard output") + '\n';
}

} // namespace finf
