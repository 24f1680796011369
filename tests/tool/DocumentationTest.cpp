// The command lines in the tool's reference do what the reference shows.
#include "Finf.h"
#include <fstream>

namespace {

class DocumentationTest : public FinfTest {};

TEST_F(DocumentationTest, ConsoleBlocksShowWhatHappens) {
    must("cp " TAMO_SAMPLES "/* .");
    std::ifstream reference(TAMO_DOCS "/tool.md");
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

} // namespace
