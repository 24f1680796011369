#include "Finf.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sys/wait.h>

namespace {

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

FinfTest::FinfTest() {
    std::string pattern = testing::TempDir() + "finf-test-XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary directory: " + pattern);
    }
    _directory = pattern + "/d";
    _log = pattern + "/log";
    std::filesystem::create_directory(_directory);
}

FinfTest::~FinfTest() {
    std::filesystem::remove_all(std::filesystem::path(_directory).parent_path());
}

Result FinfTest::run(const std::string& line) {
    write("../script", "PATH='" FINF_DIRECTORY "':$PATH\n" + line + '\n');
    const std::string command =
        "cd '" + _directory + "' && bash ../script </dev/null >'" + _log + ".out' 2>'" + _log + ".err'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(_log + ".out"),
            readFile(_log + ".err")};
}

std::string FinfTest::lacking(const std::string& needed) {
    return must("for n in " + needed +
                "; do [ -e $n ] || command -v $n >/dev/null || echo -n \"needs $n \"; done");
}

std::string FinfTest::must(const std::string& line) {
    const Result result = run(line);
    EXPECT_EQ(result.status, 0) << line;
    EXPECT_EQ(result.errors, "") << line;
    return result.output;
}

void FinfTest::write(const std::string& name, const std::string& content) {
    std::ofstream stream(_directory + '/' + name, std::ios::binary);
    stream << content;
    ASSERT_TRUE(stream.good()) << name;
}

std::string FinfTest::read(const std::string& name) {
    return readFile(_directory + '/' + name);
}

std::string FinfTest::files() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(_directory)) {
        names.insert(entry.path().filename());
    }
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : " ") + name;
    }
    return list;
}

std::string FinfTest::canonical(const std::string& name) {
    return must("xmllint --nonet --nowarning --huge --c14n '" + name + "'");
}
