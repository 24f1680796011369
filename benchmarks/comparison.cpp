// Compares this library with others on sets of real documents: times as ratios to Expat's parse of the same
// information. Every set is proved first: all ways through the library report what Expat reports.

#include "Comparison.h"
#include "ChecksumHandler.h"
#include "ExpatPeer.h"
#include "PeerJobs.h"
#include "TamoJobs.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>

using namespace Tamo;
using namespace Tamo::Benchmarks;

namespace {

const char USAGE[] = "usage: comparison [OPTIONS] DIRECTORY\n"
                     "DIRECTORY holds one directory for each set of documents.\n"
                     "  --sets A,B...    only these sets\n"
                     "  --jobs A,B...    only these jobs; a trailing * stands for any ending\n"
                     "  --rounds N       rounds of measurement (15)\n"
                     "  --time SECONDS   shortest time of one job in one round (0.02)\n"
                     "  --details        medians, best times and spread of every set\n"
                     "  --no-proof       do not prove the events first\n"
                     "  --list           say which sets and jobs there are\n";

struct Options {
    std::string directory;
    std::vector<std::string> sets;
    std::vector<std::string> jobs;
    int rounds = 15;
    double time = 0.02;
    bool details = false;
    bool proof = true;
    bool list = false;
};

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, ',');) {
        parts.push_back(part);
    }
    return parts;
}

Options parseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        const auto value = [&]() -> std::string {
            if (++i == argc) {
                throw std::invalid_argument(option + " needs a value");
            }
            return argv[i];
        };
        if (option == "--sets") {
            options.sets = split(value());
        } else if (option == "--jobs") {
            options.jobs = split(value());
        } else if (option == "--rounds") {
            options.rounds = std::max(1, std::stoi(value()));
        } else if (option == "--time") {
            options.time = std::stod(value());
        } else if (option == "--details") {
            options.details = true;
        } else if (option == "--no-proof") {
            options.proof = false;
        } else if (option == "--list") {
            options.list = true;
        } else if (option.starts_with("--") || !options.directory.empty()) {
            throw std::invalid_argument("what is " + option + "?");
        } else {
            options.directory = option;
        }
    }
    if (options.directory.empty()) {
        throw std::invalid_argument("no directory of documents");
    }
    return options;
}

bool chosen(const std::string& name, const std::vector<std::string>& patterns) {
    return patterns.empty() || std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
               return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1))
                                             : name == pattern;
           });
}

Job yardstick() {
    return {"expat", "Expat, namespace triplets, C handlers that count: the yardstick",
            [](const DocumentSet& set) {
                UInt64 events = 0;
                for (const auto& pDocument : set.documents()) {
                    events += ExpatPeer::parse(pDocument->xml);
                }
                return events;
            }};
}

Job expatSax2() {
    return {"expat-sax2", "Expat, its names and values copied to SAX2 events", [](const DocumentSet& set) {
                ChecksumHandler handler;
                for (const auto& pDocument : set.documents()) {
                    ExpatPeer::parse(pDocument->xml, handler, handler);
                }
                return handler.sum();
            }};
}

std::vector<Job> chooseJobs(const Options& options) {
    std::vector<Job> jobs{yardstick()};
    std::vector<Job> others{expatSax2()};
    for (auto&& more : {TamoJobs::all(), PeerJobs::all()}) {
        others.insert(others.end(), more.begin(), more.end());
    }
    for (Job& job : others) {
        if (chosen(job.name, options.jobs)) {
            jobs.push_back(std::move(job));
        }
    }
    return jobs;
}

void printDetails(const DocumentSet& set, const std::vector<Job>& jobs, const std::vector<Result>& results) {
    std::printf("\n%s: %s\n", set.name().c_str(), set.description().c_str());
    std::printf("  %-18s %11s %11s %8s %8s %8s\n", "job", "median ms", "best ms", "spread", "ratio",
                "of best");
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        const Result& result = results[i];
        std::printf("  %-18s %11.3f %11.3f %7.1f%% %8.3f %8.3f\n", jobs[i].name.c_str(), result.median * 1e3,
                    result.best * 1e3, result.spread * 100, result.ratio, result.bestRatio);
    }
    std::fflush(stdout);
}

struct Row {
    std::string name;
    std::vector<Result> results;
};

// Sets across, jobs down, for there are more jobs than fit on a line.
void printTable(const char* title, const std::vector<Row>& rows, const std::vector<Job>& jobs,
                double Result::*pField) {
    std::printf("\n%s\n\n| job |", title);
    for (const Row& row : rows) {
        std::printf(" %s |", row.name.c_str());
    }
    std::printf(" mean | worst |\n|---|");
    for (std::size_t i = 0; i < rows.size() + 2; ++i) {
        std::printf("---:|");
    }
    std::printf("\n");
    for (std::size_t job = 1; job < jobs.size(); ++job) {
        std::printf("| %s |", jobs[job].name.c_str());
        double sum = 0;
        double worst = 0;
        int count = 0;
        for (const Row& row : rows) {
            const double ratio = row.results[job].*pField;
            if (std::isnan(ratio)) {
                std::printf(" - |");
                continue;
            }
            std::printf(" %.3f |", ratio);
            sum += ratio;
            worst = std::max(worst, ratio);
            ++count;
        }
        std::printf(" %.3f | %.3f |\n", sum / count, worst);
    }
}

void run(const Options& options) {
    const Comparison comparison(chooseJobs(options), options.rounds, options.time);
    if (options.list) {
        for (const Job& job : comparison.jobs()) {
            std::printf("%-18s %s\n", job.name.c_str(), job.description.c_str());
        }
    }
    std::vector<Row> rows;
    for (const auto& directory : DocumentSet::find(options.directory)) {
        if (!chosen(directory.filename().string(), options.sets)) {
            continue;
        }
        const DocumentSet set(directory);
        if (options.list) {
            std::printf("%-18s %s\n", set.name().c_str(), set.description().c_str());
            continue;
        }
        if (options.proof) {
            set.prove();
            PeerJobs::prove(set);
        }
        rows.push_back({set.name(), comparison.measure(set)});
        if (options.details) {
            printDetails(set, comparison.jobs(), rows.back().results);
        } else {
            std::fprintf(stderr, "%s: measured\n", set.name().c_str());
        }
    }
    if (!rows.empty()) {
        if (options.proof) {
            std::printf("\nEvents proved equal to Expat's reading in all sets.\n");
        }
        std::printf("%d rounds, times as ratios to Expat's.\n", options.rounds);
        printTable("Median of the rounds' ratios:", rows, comparison.jobs(), &Result::ratio);
        printTable("Ratio of the best times:", rows, comparison.jobs(), &Result::bestRatio);
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = parseOptions(argc, argv);
    } catch (const std::exception& e) {
        std::cerr << "comparison: " << e.what() << '\n' << USAGE;
        return 2;
    }
    try {
        run(options);
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "comparison: " << e.what() << '\n';
        return 1;
    }
}
