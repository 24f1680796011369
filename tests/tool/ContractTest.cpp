// What the tool promises about exit statuses, messages and the files that it leaves behind.
#include "Finf.h"

namespace {

class ContractTest : public FinfTest {
protected:
    ContractTest() {
        write("a.xml", DOCUMENT);
        write("tags.xml", "<a>\n <b>text\n </c>\n</a>\n");
        write("entity.xml", "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a>\n&outside;</a>");
        write("bad.finf", std::string("\xE0\x00\x00\x02\x00", 5));
        must("finf encode a.xml -o good.finf; head -c 12 good.finf >short.finf; mkdir dir");
    }

    static constexpr char DOCUMENT[] = "<a xmlns='urn:a'>some text, long enough<b c='d'/></a>";
    static constexpr char FILES[] = "a.xml bad.finf dir entity.xml good.finf short.finf tags.xml";
};

struct Failure {
    const char* line;
    int status;
    const char* message; ///< all of standard error, or its beginning up to an asterisk
};

const Failure FAILURES[] = {
    {"finf encode tags.xml", 1, "finf: tags.xml: line 3, column 4: mismatched tag\n"},
    {"finf encode <tags.xml >/dev/null", 1, "finf: standard input: line 3, column 4: mismatched tag\n"},
    {"finf encode good.finf -o x", 1,
     "finf: good.finf: this is Fast Infoset; finf decode good.finf makes XML text of it\n"},
    {"finf encode entity.xml", 1, "finf: entity.xml: line 3, column 1: entity outside is declared outside*"},
    {"finf decode bad.finf", 1, "finf: bad.finf: Unsupported Fast Infoset document version\n"},
    {"finf decode </dev/null", 1, "finf: standard input: is empty\n"},
    {"finf decode a.xml -o x", 1,
     "finf: a.xml: this is XML text; finf encode a.xml makes Fast Infoset of it\n"},
    {"finf validate <a.xml", 1,
     "finf: standard input: this is XML text; finf encode makes Fast Infoset of it\n"},
    {"gzip <a.xml | finf stats", 1,
     "finf: standard input: this is XML text; finf encode makes Fast Infoset of it\n"},
    {"zstd -qc good.finf | head -c 50 | finf decode -o x", 1,
     "finf: standard input: zstd data that ends early\n"},
    {"gzip <a.xml | head -c 50 | finf encode -o x", 1, "finf: standard input: gzip data that ends early\n"},
    {"(gzip <a.xml; echo no member of it) | finf encode -o x", 1,
     "finf: standard input: damaged gzip data\n"},
    {"finf encode a.xml --compress gzip -o /dev/full", 1,
     "finf: a.xml: cannot write /dev/full: No space left on device\n"},
    {"finf encode a.xml --compress zip", 2, "finf: --compress: zip not in *"},
    {"finf encode a.xml -o a.xml", 1, "finf: a.xml: a.xml is the document itself; --in-place replaces it\n"},
    {"finf encode a.xml -fo ./a.xml", 1,
     "finf: a.xml: ./a.xml is the document itself; --in-place replaces it\n"},
    {"finf encode --in-place tags.xml", 1, "finf: tags.xml: line 3, column 4: mismatched tag\n"},
    {"finf encode --in-place <a.xml", 2, "finf: standard input is no file that --in-place could replace*"},
    {"finf encode --in-place -c a.xml", 2, "finf: --in-place excludes --output, --stdout and*"},
    {"set -o pipefail; { ulimit -f 0; finf encode a.xml -o x; } 2>&1 | cat >&2", 1,
     "finf: a.xml: cannot write x: File too large\n"},
    {"finf encode a.xml -o good.finf", 1, "finf: a.xml: good.finf exists already; --force overwrites it\n"},
    {"finf decode good.finf -o a.xml", 1, "finf: good.finf: a.xml exists already; --force overwrites it\n"},
    {"finf encode a.xml -o dir --force", 1, "finf: a.xml: cannot write dir: Is a directory\n"},
    {"finf encode a.xml -o dir/none/x", 1,
     "finf: a.xml: cannot write dir/none/x: No such file or directory\n"},
    {"finf encode a.xml -o a.xml/x", 1, "finf: a.xml: cannot write a.xml/x: Not a directory\n"},
    {"finf encode a.xml -o /proc/self/x", 1, "finf: a.xml: cannot write /proc/self/x: *"},
    {"finf encode a.xml -o /dev/full", 1, "finf: a.xml: cannot write /dev/full: No space left on device\n"},
    {"finf decode good.finf -o x --max-depth 1", 1, "finf: good.finf: Limit exceeded: element depth: 1\n"},
    {"finf decode good.finf -o x --max-string-length 20", 1, "finf: good.finf: Limit exceeded: *"},
    {"finf decode good.finf -o x --max-table-entries 2", 1,
     "finf: good.finf: Limit exceeded: table entries: 2\n"},
    {"finf decode good.finf -o x --max-output 25", 1,
     "finf: good.finf: Limit exceeded: delivered octets: 25\n"},
    {"finf encode a.xml -o x --external-vocabulary urn:v=good.finf --max-depth 1", 1,
     "finf: a.xml: external vocabulary good.finf: Limit exceeded: element depth: 1\n"},
    {"finf decode good.finf --max-depth -1", 2,
     "finf: --max-depth takes a number from 0 to 18446744073709551615, not -1; finf decode --help "
     "shows the usage\n"},
    {"finf encode a.xml -o - >&-", 1, "finf: a.xml: cannot write to standard output: Bad file descriptor\n"},
    {"finf encode <&-", 1, "finf: standard input: cannot read: Bad file descriptor\n"},
    {"finf recode a.xml", 2, "finf: there is no command recode; did you mean finf decode?\n"},
    {"finf sta", 2, "finf: there is no command sta; did you mean finf stats?\n"},
    {"finf missing.xml", 2, "finf: there is no command or file missing.xml; finf --help shows the usage\n"},
    {"finf a.xml", 2, "finf: a.xml is XML text; finf encode a.xml makes Fast Infoset of it\n"},
    {"finf good.finf", 2,
     "finf: good.finf is Fast Infoset; finf decode good.finf makes XML text of it, finf inspect good.finf "
     "shows it\n"},
    {"finf dir", 2, "finf: dir is a directory; finf encode -r dir converts the .xml files in it\n"},
    {"finf encode --forse a.xml", 2,
     "finf: The following argument was not expected: --forse; did you mean --force?\n"},
    {"finf encode a.xml tags.xml -o x", 2, "finf: --output takes one document; --output-directory takes*"},
    {"finf encode -r dir -o x", 2, "finf: --output takes one document; --output-directory takes*"},
    {"finf encode a.xml -o x --output-directory dir", 2, "finf: --output and --output-directory exclude*"},
    {"finf encode a.xml - --output-directory dir", 2, "finf: standard input is converted alone;*"},
    {"finf encode --output-directory dir <a.xml", 2, "finf: standard input has no name for*"},
    {"finf encode a.xml -o x --jobs 257", 2, "finf: --jobs: *"},
    {"finf encode -r dir", 1, "finf: dir: holds no .xml file\n"},
    {"finf decode good.finf --output-directory a.xml", 1, "finf: good.finf: cannot make directory a.xml: *"},
    {"finf inspect good.finf -o a.xml", 1, "finf: good.finf: a.xml exists already; --force overwrites it\n"},
    {"finf inspect good.finf -o good.finf --force", 1, "finf: good.finf: good.finf is the document itself\n"},
    {"finf inspect --html good.finf -o dir --force", 1,
     "finf: good.finf: cannot write dir: Is a directory\n"},
    {"finf inspect --html good.finf -o /dev/full", 1,
     "finf: good.finf: cannot write /dev/full: No space left on device\n"},
    {"finf inspect --html good.finf -o - >&-", 1,
     "finf: good.finf: cannot write to standard output: Bad file descriptor\n"},
    {"finf inspect --html none -o x", 1, "finf: none: cannot open: No such file or directory\n"},
    {"finf inspect --html dir -o x", 1, "finf: dir: cannot read: Is a directory\n"},
    {"finf inspect --html a.xml -o x", 1, "finf: a.xml: this is XML text; *"},
    {"finf inspect a.xml", 1, "finf: a.xml: this is XML text; *"},
    {"finf validate dir", 1, "finf: dir: is a directory; --recursive reads the .finf files in it\n"},
    {"finf stats -r dir", 1, "finf: dir: holds no .finf file\n"},
    {"finf diff a.xml none", 2, "finf: none: cannot open: No such file or directory\n"},
    {"finf diff good.finf short.finf", 2, "finf: short.finf: Unexpected end of *"},
    {"finf diff a.xml", 2, "finf: DOCUMENT: *"},
    {"finf diff - -", 2, "finf: standard input is one document; *"},
    {"finf inspect --json -o x </dev/null", 1, "finf: standard input: *"},
    {"finf inspect --html --json good.finf -o x", 2, "finf: --html excludes --json*"},
    {"finf encode a.xml --max-indexed-length many", 2, "finf: *"},
    {"finf decode good.finf --typed", 2, "finf: *"},
    {"finf decode good.finf --external-vocabulary urn:v=", 2, "finf: *"},
    {"finf decode good.finf --external-vocabulary urn:v=x --external-vocabulary urn:v=y", 2,
     "finf: --external-vocabulary names urn:v twice*"},
};

TEST_F(ContractTest, FailuresHaveOneLineAndAStatusAndLeaveNothingBehind) {
    for (const Failure& failure : FAILURES) {
        SCOPED_TRACE(failure.line);
        const Result result = run(failure.line);
        const std::string expected = failure.message;
        EXPECT_EQ(result.status, failure.status);
        EXPECT_EQ(result.output, "");
        if (expected.ends_with('*')) {
            EXPECT_EQ(result.errors.substr(0, expected.size() - 1) + '*', expected);
            EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
        } else {
            EXPECT_EQ(result.errors, expected);
        }
        EXPECT_EQ(files(), FILES);
        EXPECT_EQ(read("a.xml"), DOCUMENT);
    }
}

// Every sub-command that --help lists: what it says of bad inputs and of outputs that take nothing, its
// status, and what it leaves behind.
TEST_F(ContractTest, EverySubCommandOnEveryBadInput) {
    must("mv short.finf cut; rm bad.finf *.xml; echo words >text; echo '<a><b>' >half; : >empty; echo '<a/>' "
         ">a.xml");
    write("../bad", R"sh(
status() { echo $? $(cat ../err); [ "$(ls | tr '\n' ' ')" = "$files" ] || ls; }
files=$(ls | tr '\n' ' ')
for c in $(finf --help | sed -nE '/^Subcommands:/,/^$/ s/^  ([a-z]+) .*/\1/p'); do
    o='' input=good.finf
    case $c in
    encode) o='-o x' input=a.xml ;;
    decode | vocabulary) o='-o x' ;;
    diff) o=good.finf ;;
    bench) o='--rounds 1' ;;
    esac
    echo "$c:"
    for i in none dir empty text half cut; do finf $c $o $i >/dev/null 2>../err; status; done
    finf $c ${o/x/-} $input >/dev/full 2>../err; status
    # The pipe has no reader any more when the program writes.
    { { sleep 0.1; finf $c ${o/x/-} $input 2>../err; status >&3; } | true; } 3>&1
done
)sh");
    EXPECT_EQ(must("source ../bad"), must("cat " TAMO_EXPECTED "/bad-inputs.txt"));
}

TEST_F(ContractTest, NamesOutputAfterInputAndOverwritesByForceOnly) {
    must("finf encode a.xml");
    EXPECT_EQ(read("a.finf"), read("good.finf"));
    must("mv a.xml original; finf decode a.finf; finf encode original; rm original");
    EXPECT_EQ(read("original.finf"), read("good.finf"));
    EXPECT_EQ(read("a.xml"), must("finf decode <good.finf"));

    must("echo old >x; ln -s x link; finf encode a.xml -o link --force; test -L link");
    EXPECT_EQ(read("x"), read("good.finf"));
    must("finf encode - -o - --xml-declaration <a.xml >y");
    EXPECT_EQ(read("y"), "<?xml encoding='finf'?>" + read("good.finf"));
    must("umask 027; finf encode -o z <a.xml; test $(stat -c %a z) = 640");
}

TEST_F(ContractTest, HelpAndVersion) {
    EXPECT_EQ(must("finf --version; finf -V"), "finf " FINF_VERSION "\nfinf " FINF_VERSION "\n");
    EXPECT_EQ(must("finf"), must("finf --help"));
}

} // namespace
