// How the tool treats the user's files: names, permissions, times, compression, terminals, leftovers.
#include "Finf.h"

namespace {

class MannersTest : public FinfTest {
protected:
    MannersTest() { must("cp " TAMO_SAMPLES "/order.xml " TAMO_SAMPLES "/drawing.svg ."); }
};

// The document, however it is wrapped, and whatever its name says.
TEST_F(MannersTest, CompressedDocumentsAreReadAndWritten) {
    must("finf encode order.xml; finf decode -c order.finf >plain.xml");
    for (const char* line : {
             "finf encode order.xml --compress gzip; gzip -dc order.finf.gz | cmp - order.finf",
             "finf encode order.xml --compress zstd; zstd -qdc order.finf.zst | cmp - order.finf",
             "finf decode order.finf.gz -c | cmp - plain.xml; finf decode -c <order.finf.zst | cmp - "
             "plain.xml",
             "cat order.finf.zst | finf decode | cmp - plain.xml; mv order.finf.zst x; finf decode -c x | "
             "cmp - "
             "plain.xml",
             "gzip order.xml; finf encode -f order.xml.gz; finf diff order.finf plain.xml",
             "(gzip -c plain.xml; gzip -c </dev/null) | finf encode | finf diff - plain.xml",
             "head -c 1000 plain.xml | gzip >two; tail -c +1001 plain.xml | gzip >>two; finf encode -c two | "
             "finf "
             "diff - plain.xml",
             "finf validate order.finf.gz; finf inspect order.finf.gz | cmp - <(finf inspect order.finf)",
             "finf stats --json <order.finf.gz | cmp - <(finf stats --json - <order.finf)",
             "rm order.finf; finf decode order.finf.gz --compress zstd; zstd -qdc order.xml.zst | cmp - "
             "plain.xml",
             "mkdir d; mv *.gz *.zst d; finf decode -r d --output-directory e; ls d e | tr '\\n' ' '",
         }) {
        SCOPED_TRACE(line);
        const Result result = run("set -e -o pipefail; " + std::string(line));
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
    }
    EXPECT_EQ(must("ls e"), "order.xml\n");
}

// What comes out of a small file may be large; the program does not grow with it.
TEST_F(MannersTest, DecompressesInBoundedMemory) {
    if (run("ulimit -v 80000; finf --version").status != 0) {
        GTEST_SKIP() << "the program itself takes more (a sanitizer)";
    }
    must("(echo '<a>'; yes '<b>text</b>' | head -c 90000000 | head -n -1; echo '</a>') | zstd -q "
         ">big.xml.zst");
    must("ulimit -v 80000; finf encode big.xml.zst; finf validate -q big.finf; finf stats big.finf "
         ">/dev/null");
}

// One octet for a long name, again and again, and more elements in one another than the reader takes.
TEST_F(MannersTest, WhatIsEncodedIsDecoded) {
    must("name=$(printf 'n%.0s' $(seq 1000)); (echo '<a>'; yes \"<$name/>\" | tr -d '\\n' | head -c "
         "100300000; "
         "echo '</a>') >long.xml");
    EXPECT_EQ(
        run("finf encode long.xml"),
        (Result{1, "",
                "finf: long.xml: repeats itself more than finf decode reads (delivered octets for each octet "
                "read: 200); --max-amplification and --max-output change that\n"}));
    must("finf encode long.xml --max-amplification 4000; finf decode long.finf -c --max-amplification 4000 "
         ">back; "
         "rm long.xml back");
    EXPECT_EQ(run("printf '<a><b/></a>' | finf encode --max-depth 1 >x").errors,
              "finf: standard input: nested deeper than finf decode reads; --max-depth changes that\n");
}

TEST_F(MannersTest, NamesComeBack) {
    must(
        "mkdir a.b; cp order.xml v1.2.xml; cp order.xml a.b/plain; finf encode drawing.svg v1.2.xml "
        "a.b/plain\n"
        "rm drawing.svg v1.2.xml a.b/plain order.xml; finf decode drawing.svg.finf v1.2.finf a.b/plain.finf");
    EXPECT_EQ(files() + " / " + must("ls a.b | tr '\\n' ' '"),
              "a.b drawing.svg drawing.svg.finf v1.2.finf v1.2.xml / plain.finf plain.xml ");
}

TEST_F(MannersTest, OutputsKeepModeAndTime) {
    must(
        "chmod 600 order.xml; touch -d '2020-02-03 04:05:06.789' order.xml; finf encode order.xml; chmod 400 "
        "order.finf; finf decode order.finf -o back.xml; touch -d 2021-01-01 drawing.svg; chmod 664 "
        "drawing.svg; umask 077; finf encode drawing.svg --compress zstd");
    EXPECT_EQ(must("stat -c '%n %a %.3Y' order.finf back.xml drawing.svg.finf.zst; date -d @1580702706 +%s"),
              "order.finf 400 " + must("printf '%.3f' $(stat -c %.3Y order.xml)") + "\nback.xml 400 " +
                  must("printf '%.3f' $(stat -c %.3Y order.xml)") + "\ndrawing.svg.finf.zst 664 " +
                  must("stat -c %.3Y drawing.svg") + "1580702706\n");
}

TEST_F(MannersTest, UpdateConvertsWhatIsNewer) {
    must(
        "finf encode order.xml drawing.svg; touch -d '+1 minute' order.xml; echo '<new/>' >new.xml; echo old "
        ">order.finf; touch -d 2000-01-01 order.finf; touch drawing.svg.finf");
    EXPECT_EQ(run("finf encode -uv order.xml drawing.svg new.xml"),
              (Result{0, "",
                      "order.xml: 4868 -> 2860 octets (58.8 %), order.finf\n"
                      "drawing.svg: drawing.svg.finf is not older\n"
                      "new.xml: 7 -> 11 octets (157.1 %), new.finf\n"}));
    EXPECT_EQ(run("finf encode -uv new.xml").errors, "new.xml: new.finf is not older\n");
}

TEST_F(MannersTest, InPlaceReplacesAndKeepsAllOnFailure) {
    must("cp order.xml before; finf encode --in-place -k order.xml; finf diff before order.xml; finf "
         "validate -q "
         "order.xml; finf decode --in-place order.xml; finf diff before order.xml");
    EXPECT_EQ(run("finf decode --in-place order.xml").status, 1);
    must("finf diff before order.xml");
}

TEST_F(MannersTest, PrettyIsForReading) {
    write("a.xml", "<a> <b>x<i>y</i></b><c><d/><!--e--></c> </a>");
    EXPECT_EQ(must("finf encode -c a.xml | finf decode --pretty"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n  <b>x<i>y</i></b>\n  <c>\n    <d/>\n    "
              "<!--e-->\n  </c>\n</a>\n");
}

// Needs a pseudo-terminal.
TEST_F(MannersTest, TerminalsGetTextOnly) {
    if (run("script -qec true /dev/null").status != 0) {
        GTEST_SKIP() << "script(1) has no terminal here";
    }
    const std::string refused =
        ": binary is not written to a terminal; -o FILE writes it to a file, --force shows "
        "it\r\n";
    EXPECT_EQ(run("script -qec 'finf encode -c order.xml' /dev/null"),
              (Result{1, "finf: order.xml" + refused, ""}));
    must("finf encode order.xml");
    EXPECT_EQ(run("script -qec 'finf decode order.finf -c --compress gzip' /dev/null"),
              (Result{1, "finf: order.finf" + refused, ""}));
    EXPECT_NE(must("script -qec 'finf encode -c order.xml --force' /dev/null"), "");
    EXPECT_EQ(must("script -qec 'finf decode -c order.finf' /dev/null | tr -d '\\r'"),
              must("finf decode -c order.finf"));
}

// What a process leaves that had no chance to clean up is removed by the next one, and nothing else.
TEST_F(MannersTest, LeftoversOfKilledProcessesAreRemoved) {
    must("mkfifo p q; exec 3<>p 4<>q; printf '<a>' >&3; printf '<a>' >&4; touch .finf-1x-0.tmp .finf-9.tmp\n"
         "finf encode p & killed=$!; finf encode q & alive=$!\n"
         "until [ $(ls .finf-*-*.tmp | wc -l) = 3 ]; do sleep 0.02; done\n"
         "kill -9 $killed; wait $killed 2>/dev/null; ls .finf-$killed-0.tmp >/dev/null\n"
         "finf encode order.xml; ls -A | sed s/$alive/ALIVE/ | LC_ALL=C sort | tr '\\n' ' ' >../seen; kill "
         "$alive; wait "
         "$alive 2>/dev/null; true");
    EXPECT_EQ(must("cat ../seen"),
              ".finf-1x-0.tmp .finf-9.tmp .finf-ALIVE-0.tmp drawing.svg order.finf order.xml p q ");
    EXPECT_EQ(files(), ".finf-1x-0.tmp .finf-9.tmp drawing.svg order.finf order.xml p q");
}

} // namespace
