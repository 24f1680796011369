// Runs the jobs that matter on each document given, warmed up, with its instructions counted alone: to be run
// under callgrind by scripts/instruction-counts. Prints a line for each measurement: its name and the number
// of events.

#include "DocumentSet.h"
#include "TamoJobs.h"
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <valgrind/callgrind.h>

using namespace Tamo::Benchmarks;

namespace {

const std::string COUNTED(" parse parse-stream parse-fed parse-fed-whole parse-fed-single write-hash "
                          "write-map to-fis to-xml sax-parser xml-writer ");

} // namespace

int main(int argc, char** argv) {
    try {
        for (int i = 1; i < argc; ++i) {
            const DocumentSet set(std::filesystem::path(argv[i]).stem().string(), {argv[i]});
            for (const Job& job : TamoJobs::all()) {
                if (COUNTED.find(" " + job.name + " ") == std::string::npos) {
                    continue;
                }
                job.run(set);
                CALLGRIND_ZERO_STATS;
                CALLGRIND_TOGGLE_COLLECT;
                job.run(set);
                CALLGRIND_TOGGLE_COLLECT;
                const std::string name = set.name() + " " + job.name;
                CALLGRIND_DUMP_STATS_AT(name.c_str());
                std::printf("%s %zu\n", name.c_str(), set.documents().front()->recording.events());
            }
        }
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "instructions: " << e.what() << '\n';
        return 1;
    }
}
