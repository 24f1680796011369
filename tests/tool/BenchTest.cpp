// `finf bench`: every number is there and plausible; documents that two parsers report differently are
// refused.
#include "Finf.h"
#include <regex>

namespace {

class BenchTest : public FinfTest {};

TEST_F(BenchTest, MeasuresXMLAndFastInfoset) {
    must("cp " TAMO_SAMPLES "/order.xml " TAMO_SAMPLES
         "/catalogue.xml .; finf encode order.xml catalogue.xml");
    const std::string number = "\\d*[1-9.]\\d*\\.\\d";
    const std::string row = " +(\\d+) +(\\d+) +" + number + " +" + number + " \\(\\d+\\.\\d\\d\\) +" +
                            number + " \\(\\d+\\.\\d\\d\\)  ";
    const std::string table = must("finf bench order.xml catalogue.finf --rounds 3");
    std::smatch match;
    ASSERT_TRUE(
        std::regex_search(table, match, std::regex("\n" + row + "order.xml\n" + row + "catalogue.finf\n$")))
        << table;
    EXPECT_EQ(match[1], "4868");
    EXPECT_EQ(match[2], "2860");
    EXPECT_EQ(match[4], "2036");

    // 45,000 values: more than the tables take that writing begins with.
    must("(echo '<r>'; for i in $(seq 45000); do echo \"<e a='$i'/>\"; done; echo '</r>') >'b\"ig.xml'");
    const std::string json = must("finf bench 'b\"ig.xml' order.finf --rounds 1 --json");
    const std::string object =
        R"(\{"file": "FILE", "rounds": 1, "xmlOctets": \d+, "fastInfosetOctets": \d+, )"
        R"("expat": [1-9]\d*\.\d+, "parsing": [1-9]\d*\.\d+, "writing": [1-9]\d*\.\d+\})";
    const auto of = [&](const char* file) { return std::regex_replace(object, std::regex("FILE"), file); };
    EXPECT_TRUE(std::regex_match(
        json, std::regex("\\[\n" + of(R"(b\\"ig\.xml)") + ",\n" + of("order.finf") + "\n\\]\n")))
        << json;
}

TEST_F(BenchTest, GoesOnAfterADocumentThatItCannotMeasure) {
    write("koi8.xml", "<?xml version='1.0' encoding='KOI8-R'?><a/>");
    write("a.xml", "<a/>");
    const Result result = run("finf bench koi8.xml a.xml none.xml --rounds 1 --json");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "finf: koi8.xml: Expat: line 1: unknown encoding\n"
                             "finf: none.xml: cannot open: No such file or directory\n");
    EXPECT_TRUE(result.output.starts_with("[\n{\"file\": \"a.xml\", ")) << result.output;
}

} // namespace
