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
            "8C 14 39 80 FF 84 61 86 01 D8 00 00 61 8C 24 FF E2 0D 00 00 00 00") +
            std::string(265, 'c') + octets("3E 00 71 00 63 F0 90 79 F0 90 7A C4 F0 3C 00 64 FF"));
    write("head.finf",
          "<?xml?>" + octets("E0 00 00 01 A0 08 0A 01 02 61 62 61 00 61 01 20 01 FF 00 30 B0 41 01 "
                             "02 00 08 00 7F 3C 00 61 FF"));
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

// Names and characters that XML does not know, and what fills the octet behind characters of five.
TEST_F(ValidateTest, LooksAtNamesCharactersAndFillBits) {
    write("bad", octets("E0 00 00 01 20 08 00 00 06 61 62 63 64 65 66 67 7C 01 31 61 78 00 2D 40 01 F0 90 01 "
                        "88 3C 07 88 3C 04 "
                        "FF"));
    EXPECT_EQ(
        run("finf validate bad"),
        (Result{3,
                "bad: offset 0x11, in local name: no name that XML knows (Namespaces in XML, 3)\n"
                "bad: offset 0x15, in local name: no name that XML knows (Namespaces in XML, 3)\n"
                "bad: offset 0x17, in attribute value: a character that XML does not know (XML 1.0, 2.2)\n"
                "bad: offset 0x1a, in character chunk: a character that XML does not know (XML 1.0, 2.2)\n"
                "bad: offset 0x21, bit 6, in character chunk: fill bits behind the last character are not "
                "ones (X.891, 7.17.6)\n",
                ""}));
}

TEST_F(ValidateTest, DirectoriesAndJson) {
    must("mkdir -p d/e; printf '<a b=\"1\">x</a>' | finf encode >d/a.finf; (cat d/a.finf; echo) | gzip "
         ">d/e/b.finf.gz; "
         "head -c 6 d/a.finf >d/e/c.finf; echo no >d/x.xml");
    EXPECT_EQ(run("finf validate -r d --json"),
              (Result{1,
                      "[\n  { \"file\": \"d/a.finf\", \"verdict\": \"clean\" },\n"
                      "  { \"file\": \"d/e/b.finf.gz\", \"verdict\": \"broken\",\n"
                      "    \"fault\":\n"
                      "      { \"offset\": 17, \"bit\": 0, \"construct\": \"trailing octets\", \"what\": \"1 "
                      "that begin no document (X.891, 12)\" } },\n"
                      "  { \"file\": \"d/e/c.finf\", \"verdict\": \"broken\",\n"
                      "    \"fault\":\n"
                      "      { \"offset\": 6, \"bit\": 0, \"construct\": \"local name\", \"what\": "
                      "\"Unexpected end of the "
                      "document\" } }\n]\n",
                      "finf: d/e/b.finf.gz: offset 0x11, in trailing octets: 1 that begin no document "
                      "(X.891, 12)\n"
                      "finf: d/e/c.finf: offset 0x6, in local name: Unexpected end of the document\n"}));
    EXPECT_EQ(must("finf stats --json d/a.finf"),
              "[\n  { \"file\": \"d/a.finf\", \"elements\": 1, \"attributes\": 1, \"characterChunks\": 1,\n"
              "    \"bits\": { \"structure\": 78, \"padding\": 6, \"lengths\": 20, \"indexes\": 0, \"literal "
              "names\": 16, "
              "\"literal strings\": 16, \"typed data\": 0, \"trailing octets\": 0 },\n"
              "    \"tables\": { \"LOCAL NAME\": { \"hits\": 0, \"added\": 2, \"neither\": 0 }, \"ATTRIBUTE "
              "VALUE\": { "
              "\"hits\": 0, \"added\": 1, \"neither\": 0 }, \"CONTENT CHARACTER CHUNK\": { \"hits\": 0, "
              "\"added\": 1, "
              "\"neither\": 0 }, \"ELEMENT NAME\": { \"hits\": 0, \"added\": 1, \"neither\": 0 }, "
              "\"ATTRIBUTE NAME\": { "
              "\"hits\": 0, \"added\": 1, \"neither\": 0 } },\n"
              "    \"octets\": { \"xml\": 53, \"xmlGzip\": 72, \"fastInfoset\": 17, \"fastInfosetGzip\": 37 "
              "} }\n]\n");
    EXPECT_EQ(run("finf stats -r d --json | grep -c '\"file\"'").output, "1\n");
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
