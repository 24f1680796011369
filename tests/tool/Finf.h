#ifndef TAMO_TESTS_FINF_H
#define TAMO_TESTS_FINF_H

#include <gtest/gtest.h>
#include <string>

/// What a command line has done.
struct Result {
    int status;         ///< exit status, 128 + N for signal N
    std::string output; ///< standard output
    std::string errors; ///< standard error

    bool operator==(const Result&) const = default;
};

/// A test in an empty directory of its own, which holds nothing but what it puts there.
class FinfTest : public testing::Test {
protected:
    FinfTest();
    ~FinfTest() override;

    /// Runs a line of shell in the directory; `finf` is the program under test, standard input is empty.
    Result run(const std::string& line);

    /// What of these programs and files is not on this machine, for GTEST_SKIP: "needs zstd"; empty when all
    /// is. Only what scripts/test does not install may be missing (scripts/bootstrap all does).
    std::string lacking(const std::string& needed);

    /// Runs a line that must end with status 0 and say nothing on standard error; returns its standard
    /// output.
    std::string must(const std::string& line);

    void write(const std::string& name, const std::string& content);
    std::string read(const std::string& name);

    /// The names in the directory, in order, a space between them.
    std::string files();

    /// The canonical XML of a file, as xmllint sees it.
    std::string canonical(const std::string& name);

private:
    std::string _directory;
    std::string _log; // of the command line that runs; outside of the directory
};

#endif
