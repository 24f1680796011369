#include "convert/Batch.h"
#include "command/FinfError.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace finf {

Batch::Batch(const Options& options, const Extensions& extensions, Factory factory)
    : _options(options), _list(options, extensions), _factory(std::move(factory)) {}

ExitStatus Batch::run() {
    OutputFile::removeTemporariesOnSignals();
    convertAll();
    return report();
}

void Batch::convertAll() {
    // The line would stand between the lines of the document.
    const bool mixed = _list.jobs().front().output == "-" && ::isatty(STDOUT_FILENO);
    Progress progress(_list.jobs().size(), _list.octets(),
                      !_options.quiet && !mixed && ::isatty(STDERR_FILENO));
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
        if (job.failure) {
            continue;
        }
        try {
            if (!pConversion) {
                pConversion = _factory();
            }
            convert(*pConversion, job, progress);
        } catch (...) {
            job.failure = std::current_exception();
        }
    }
}

void Batch::convert(Conversion& conversion, const Job& job, Progress& progress) {
    InputFile input(job.input, &progress.octetsRead());
    if (!_options.outputDirectory.empty()) {
        const std::filesystem::path directory = std::filesystem::path(job.output).parent_path();
        std::error_code error;
        std::filesystem::create_directories(directory, error);
        if (error) {
            throw FinfError("cannot make directory " + directory.string(), error.value());
        }
    }
    OutputFile output(job.output, _options.force);
    try {
        conversion.convert(input.stream(), output.stream());
    } catch (const std::exception&) {
        // A failed read or write has made the conversion fail, and says better why.
        input.check();
        output.check();
        throw;
    }
    input.check();
    output.commit();
}

ExitStatus Batch::report() {
    std::size_t failures = 0;
    for (const Job& job : _list.jobs()) {
        if (job.failure) {
            ++failures;
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
    return failures > 0 ? FAILED : DONE;
}

} // namespace finf
