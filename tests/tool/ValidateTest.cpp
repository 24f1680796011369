// `finf validate` names what a strict reader would refuse, and `finf stats` adds up.
#include "../codec/Octets.h"
#include "Finf.h"

namespace {

using Tamo::FastInfoset::Test::octets;

class ValidateTest : public FinfTest {};

TEST_F(ValidateTest, NamesEveryDeparture) {
    write(
        "body.finf",
        octets(
            "E0 00 00 01 80 78 C1 00 75 CF 00 70 81 F0 3D 81 00 61 78 00 62 40 31 78 81 40 31 F1 90 78 90 78 "
            "8C 14 39 80 FF 84 61 E2 0D 00 00 00 00") +
            std::string(265, 'c') + octets("3E 00 71 00 63 F0 90 79 F0 90 7A C4 F0 3C 00 64 FF 7A 7A"));
    write("head.finf", "<?xml?>" + octets("E0 00 00 01 A0 00 0A 00 20 00 00 01 00 02 00 08 3C 00 61 FF"));
    write("in.xml", "<a b='1'>text</a>");
    must("finf encode in.xml");
    const Result result = run("finf validate in.finf body.finf head.finf");
    EXPECT_EQ(result.output, must("cat " TAMO_EXPECTED "/departures.txt"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(run("finf validate -q in.finf head.finf none"),
              (Result{1, must("grep ^head " TAMO_EXPECTED "/departures.txt"),
                      "finf: none: cannot open: No such file or directory\n"}));
    EXPECT_EQ(must("finf validate -q in.finf; finf validate <in.finf"), "standard input: clean\n");
}

// What the encoder writes is clean, whatever it is asked for.
TEST_F(ValidateTest, OurOwnDocumentsAreClean) {
    must("for f in " TAMO_SAMPLES "/*.* " TAMO_TEST_DATA "/roundtrip/*; do\n"
         "  for o in --typed --max-indexed-length=-1 --external-vocabulary=urn:v=" TAMO_SAMPLES
         "/order.xml; do\n"
         "    finf encode $f $o -o out -f; finf validate -q out --external-vocabulary urn:v=" TAMO_SAMPLES
         "/order.xml\n"
         "  done\n"
         "done");
}

TEST_F(ValidateTest, StatisticsAddUpAndAreDrawn) {
    must("finf encode " TAMO_SAMPLES "/track.xml -o '<&>' --typed; finf decode '<&>' -o track.xml");
    EXPECT_EQ(must("finf stats '<&>' --svg all.svg | awk '/^$/ { n++ } n == 1 && $1 != \"spent\" { "
                   "sub(/[a-z ]+/, \"\"); sum += $1 } END { print int(sum + 0.5) }'"),
              must("stat -c %s '<&>'"));
    EXPECT_EQ(must("finf stats - <'<&>' | awk '/^XML  / { print $2 } /^XML, gzip/ { print $3 }'"),
              must("stat -c %s track.xml; gzip -6nc track.xml | wc -c"));
    EXPECT_EQ(run("finf stats '<&>' --svg track.xml >/dev/null").errors,
              "finf: track.xml: track.xml exists already; --force overwrites it\n");
    must("xmllint --noout all.svg; finf stats '<&>' --svg - | cmp - all.svg");
}

} // namespace
