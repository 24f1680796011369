// `finf inspect` shows a document in full, up to a fault, or a part of it.
#include "../codec/Octets.h"
#include "Finf.h"

namespace {

class InspectTest : public FinfTest {
protected:
    InspectTest() {
        using Tamo::FastInfoset::Test::octets;
        // All parts that a header can have, then a fault; text of a kind that output could trip over.
        write("broken.finf",
              octets(
                  "3C 3F 78 3E E0 00 00 01 7F 00 00 75 01 64 64 0F FF 00 01 61 62 00 00 61 00 00 70 00 00 75 "
                  "00 00 6C 00 00 74 00 00 73 00 11 00 76 00 20 00 01 00 30 33 00 00 00 07 00 03 01 01 "
                  "00 00 03 01 01 00 C2 00 6E 80 F0 D0 00 65 80 81 F0 04 75 74 66 2D 38 01 40 31 C6 80 E1 80 "
                  "80 F0 40 00 08 3B 39 22 5C 0A 1B FF C3 A9") +
                  std::string(60, 'x') + octets("F0 8C 0E 01 00 00 00 01 E3"));
        write("small.xml", "<a xmlns:p='urn:p' b='1'><p:c>text</p:c><d/></a>");
        must("finf encode small.xml");
    }

    void expectFile(const std::string& line, int status, const std::string& file) {
        const Result result = run(line);
        EXPECT_EQ(result.output, must("cat " TAMO_EXPECTED "/" + file)) << line;
        EXPECT_EQ(result.status, status) << line;
    }
};

TEST_F(InspectTest, ShowsAllThatIsThereUpToTheFault) {
    expectFile("finf inspect broken.finf --tables --full", 1, "broken.txt");
    expectFile("finf inspect --json --tables <broken.finf", 1, "broken.json");
    expectFile("finf inspect small.finf --color always --offset 0x0B --limit 12", 0, "part.txt");
    EXPECT_EQ(must("finf inspect small.finf --color auto --limit 1"),
              must("NO_COLOR=1 finf inspect --limit 1 <small.finf"));
    EXPECT_EQ(must("finf inspect small.finf --limit 0"), "... more, behind the --limit\n");
}

TEST_F(InspectTest, ExternalVocabularyAndOctetsBehindTheDocument) {
    must("finf encode small.xml -o known.finf --external-vocabulary urn:v=small.xml; printf '\\0rest' "
         ">>known.finf");
    expectFile("finf inspect known.finf --external-vocabulary urn:v=small.xml --offset 7", 1, "known.txt");
    EXPECT_EQ(
        run("finf inspect known.finf >/dev/null").errors,
        "finf: known.finf: offset 0x7, in external vocabulary: external vocabulary urn:v is needed; give "
        "it with --external-vocabulary urn:v=FILE\n");
}

TEST_F(InspectTest, OutputIsThatOfStandardOutput) {
    for (const char* form : {"", "--json", "--html", "--html --offset 7 --limit 5"}) {
        must(std::string("finf inspect small.finf -f -o x ") + form);
        must(std::string("finf inspect small.finf ") + form + " | cmp - x");
        must(std::string("finf inspect small.finf -o - ") + form + " | cmp - x");
    }
    must("touch ./-; finf inspect - -o - <small.finf | cmp - <(finf inspect small.finf); rm ./-");
    // Up to the fault, which is reported; from a pipe that nobody reads any more nothing is said.
    const Result broken = run("finf inspect --html broken.finf -o broken.html");
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(broken.errors, run("finf inspect broken.finf >/dev/null").errors);
    EXPECT_EQ(run("{ { sleep 0.1; finf inspect --html small.finf -o -; echo $? >&2; } | true; }").errors,
              "1\n");
    EXPECT_EQ(files(), "broken.finf broken.html small.finf small.xml x");
}

// What the page is made of: nothing of the document stands in it as text, and a browser is to fetch nothing.
TEST_F(InspectTest, PageIsOneFile) {
    must("cp broken.finf '<b>&.finf'");
    const std::string page = run("finf inspect --html '<b>&.finf'").output;
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n") && page.ends_with("</html>\n"));
    EXPECT_EQ(page.find("<b>&"), std::string::npos);
    EXPECT_EQ(page.find("xxxxxxxxxxxx"), std::string::npos);
    EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
    must("finf inspect --html '<b>&.finf' 2>/dev/null >p || test $? = 1; ! grep -E "
         "'@[A-Z]|(src|href)=|(url|import)[(]' p");
}

TEST_F(InspectTest, WrongUsage) {
    for (const char* option : {"--limit x", "--offset -1", "--color blue"}) {
        EXPECT_EQ(run(std::string("finf inspect small.finf 2>/dev/null ") + option), (Result{2, "", ""}));
    }
}

} // namespace
