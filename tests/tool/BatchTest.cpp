// Many documents at a time: where the results go, what happens to the others when one fails, interruption.
#include "Finf.h"

namespace {

class BatchTest : public FinfTest {
protected:
    BatchTest() {
        must("mkdir -p d/s/t; ln -s .. d/s/t/circle; echo text >d/notes.txt; echo '<a>' >d/s/broken.xml\n"
             "echo '<c/>' >c.xml; for i in $(seq 40); do echo \"<a>$i <b>some text</b></a>\" >d/s/$i.xml; "
             "done\n"
             "cp d/s/1.xml d/one.xml; cp d/s/2.xml d/s/t/two.xml");
    }
};

TEST_F(BatchTest, ConvertsDirectoriesAndGoesOnAfterFailures) {
    const Result result = run("finf encode -r d missing.xml c.xml c.xml --output-directory o/p -j 3");
    EXPECT_EQ(result, (Result{1, "",
                              "finf: d/s/broken.xml: line 2, column 1: no element found\n"
                              "finf: missing.xml: cannot open: No such file or directory\n"
                              "finf: c.xml: o/p/c.finf is the output of c.xml already\n"
                              "finf: 3 of 46 inputs not converted\n"}));
    EXPECT_EQ(must("cd o/p; find . -type f | grep -v '/s/[0-9]' | LC_ALL=C sort | tr '\\n' ' '"),
              "./c.finf ./one.finf ./s/t/two.finf ");
    // Back beside the inputs, and every document the same as when it is converted alone.
    must("finf decode --recursive o -j 0; cd d; for f in one.xml s/[0-9]*.xml s/t/two.xml; do\n"
         "finf encode $f -o - | finf decode | cmp - ../o/p/$f; done; cd ..; test $(ls o/p/s/*.xml | wc -l) = "
         "40");
    // Existing results are kept, and replaced by force only.
    EXPECT_EQ(run("finf decode -r o -j 2 -q | cat").errors.find("finf: o/p/c.finf: o/p/c.xml exists already"),
              0u);
    must("echo new >o/p/c.xml; finf decode -r o -j 2 -f; grep -q '<c' o/p/c.xml");
    EXPECT_EQ(must("find . -name '*.tmp'"), "");
}

TEST_F(BatchTest, ReadsASharedVocabularyInEveryThread) {
    must("o='--external-vocabulary urn:v=d/one.xml -j 4'; finf encode -r d/s/t d/s/[0-9]*.xml "
         "--output-directory x $o\n"
         "finf decode -r x $o; for i in $(seq 40); do finf encode d/s/$i.xml -o - | finf decode | cmp - "
         "x/$i.xml; done");
}

// Two conversions wait for their input, a third one is done.
TEST_F(BatchTest, LeavesNothingHalfWrittenWhenInterrupted) {
    for (const char* signal : {"INT 130", "TERM 143", "HUP 129", "QUIT 131"}) {
        SCOPED_TRACE(signal);
        must("set -- " + std::string(signal) +
             "; mkfifo p q; exec 3<>p 4<>q; printf '<a>' >&3; printf '<a>' >&4\n"
             // In the background of a script the interrupt would be ignored.
             "(trap - INT QUIT; ulimit -c 0; exec finf encode c.xml p q -j 2) & pid=$!\n"
             "until [ $(ls .finf-*.tmp 2>/dev/null | wc -l) = 2 ] && [ -e c.finf ]; do sleep 0.02; done\n"
             "kill -$1 $pid; wait $pid 2>/dev/null; test $? = $2; [ $? = 0 ] && rm p q c.finf");
        EXPECT_EQ(must("ls -A | tr '\\n' ' '"), "c.xml d ");
    }
}

TEST_F(BatchTest, ShowsProgressOnATerminalOnly) {
    if (run("script -qec true /dev/null").status != 0) {
        GTEST_SKIP() << "script(1) has no terminal here";
    }
    const std::string slow = "mkfifo p; (sleep 0.8; echo '<a/>' >p) & finf encode -f p c.xml";
    const std::string shown = must("script -qec \"" + slow + "\" /dev/null; rm p");
    EXPECT_NE(shown.find("\r0/2 files  0.0 MB  0.0 MB/s"), std::string::npos) << shown;
    EXPECT_TRUE(shown.ends_with("\r\x1b[K")) << shown;
    EXPECT_EQ(must("script -qec \"" + slow + " --quiet\" /dev/null; rm p"), "");
    EXPECT_EQ(run(slow), (Result{0, "", ""}));
}

} // namespace
