// The command lines in the documents do what the documents show.
#include "Finf.h"
#include <fstream>

namespace {

class PicturesTest : public FinfTest {};

class DocumentationTest : public FinfTest, public testing::WithParamInterface<const char*> {};

TEST_P(DocumentationTest, ConsoleBlocksShowWhatHappens) {
    if (const std::string missing = lacking("git zstd"); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    must("cp -r " TAMO_SAMPLES "/* .");
    std::ifstream reference(std::string(TAMO_DOCS "/") + GetParam());
    std::string line, shown, happened;
    bool inBlock = false;
    int commands = 0;
    while (std::getline(reference, line)) {
        if (line.starts_with("```")) {
            inBlock = line == "```console";
        } else if (inBlock) {
            shown += line + '\n';
            if (line.starts_with("$ ")) {
                happened += line + '\n' + run("exec 2>&1; " + line.substr(2)).output;
                ++commands;
            }
        }
    }
    EXPECT_GE(commands, 5);
    EXPECT_EQ(happened, shown);
}

// The pictures are what the program makes of the samples now.
TEST_F(PicturesTest, AreThoseThatTheProgramMakes) {
    EXPECT_EQ(run(TAMO_DOCS "/../scripts/pictures --check " FINF_DIRECTORY "/finf"), (Result{0, "", ""}));
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentationTest,
                         testing::Values("tool.md", "format.md", "../README.md"));

} // namespace
