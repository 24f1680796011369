// Several documents in one input, inputs that grow, and inputs that break off.
#include "Finf.h"

namespace {

class LogTest : public FinfTest {
protected:
    LogTest() {
        write("a.xml", "<a b='1'>x</a>");
        must("finf encode <a.xml >a; printf '<c/>' | finf encode >c; cat a c a >log; (cat log; echo) >tail; "
             "rm "
             "a.xml");
    }
};

struct Case {
    const char* line;
    int status;
    const char* output;
    const char* errors = "";
    const char* files = ""; ///< that are new
};

#define DECLARATION "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
#define A "<a b=\"1\">x</a>"
#define BEHIND ": octets that begin no document (X.891, 12), at octet 43\n"

// The documents begin at octets 0, 17 and 26.
const Case CASES[] = {
    {"finf decode -c log", 0, DECLARATION A DECLARATION "<c/>" DECLARATION A},
    {"cat log | finf decode", 0, DECLARATION A DECLARATION "<c/>" DECLARATION A},
    {"gzip <log | finf decode --lenient", 0, DECLARATION A DECLARATION "<c/>" DECLARATION A},
    {"finf decode -c log --separator", 0, A "\n<c/>\n" A "\n"},
    {"finf decode -c log --separator='\\0\\-\\\\' | tr '\\0' 0", 0, A "0\\-\\<c/>0\\-\\" A "0\\-\\"},
    {"cat tail | finf decode --first", 0, DECLARATION A},
    {"finf decode -v log -o x.y.xml", 0, "", "log: 43 -> 149 octets (346.5 %), x.y-1.xml to x.y-3.xml\n",
     "x.y-1.xml x.y-2.xml x.y-3.xml"},
    {"finf decode log --compress gzip && gzip -dc log-2.xml.gz", 0, DECLARATION "<c/>", "",
     "log-1.xml.gz log-2.xml.gz log-3.xml.gz"},
    {"finf decode log -o x.xml --first && cat x.xml", 0, DECLARATION A, "", "x.xml"},
    {"finf decode log -o x --separator=, && cat x", 0, A ",<c/>," A ",", "", "x"},
    {"touch x-2.xml; finf decode log -o x.xml", 1, "",
     "finf: log: x-2.xml exists already; --force overwrites it\n", "x-1.xml x-2.xml"},
    {"finf decode log log-1 -f", 1, "",
     "finf: log: log-1.xml is the output of log-1 already\nfinf: log-1: cannot open: No such file or "
     "directory\nfinf: 2 of 2 inputs not converted\n"},
    {"cp log x; finf decode --in-place x || cmp x log", 0, "",
     "finf: x: more stands behind the document, which alone --in-place would leave\n", "x"},
    {"cp tail x; finf decode --in-place --recover x || cmp x tail", 0, "",
     "finf: x: more stands behind the document, which alone --in-place would leave\n", "x"},
    {"(cat a; echo) | finf decode -o x.xml || cat x.xml", 0, DECLARATION A,
     "finf: standard input: octets that begin no document (X.891, 12), at octet 17\n", "x.xml"},
    {"finf decode tail --separator -c", 1, A "\n<c/>\n" A "\n", "finf: tail" BEHIND},
    {"finf decode tail --separator -c --recover", 4, A "\n<c/>\n" A "\n", "finf: tail" BEHIND},
    {"head -c 38 log | finf decode --separator", 1, A "\n<c/>\n",
     "finf: standard input: document at octet 26: Unexpected end of stream while parsing octet string\n"},
    {"head -c 40 log | finf decode --separator --recover", 4, A "\n<c/>\n<a b=\"1\"/>\n",
     "finf: standard input: ended at octet 40: document at octet 26: Unexpected end of stream while parsing "
     "element children\n"},
    {"gzip <log | head -c 35 | finf decode -o x --recover --separator; echo $?; head -n 1 x", 0, "4\n" A "\n",
     "finf: standard input: ended at octet *", "x"},
    {"head -c 20 log >half; finf decode half -o x.xml --recover; echo $?; cat x-1.xml", 0,
     "4\n" DECLARATION A,
     "finf: half: ended at octet 20: document at octet 17: Unexpected end of stream while parsing document "
     "header\n",
     "half x-1.xml"},
    {"finf decode --recover log half -c", 2, "", "finf: --output takes one document*"},
    {"finf decode --recover -c log", 0, DECLARATION A DECLARATION "<c/>" DECLARATION A},
    {"finf decode --recover </dev/null", 1, "", "finf: standard input: is empty\n"},
    {"echo '<a/>' | finf decode --recover", 1, "", "finf: standard input: this is XML text; *"},
    {"printf '<a><![CDATA[0123456789]]></a>' | finf encode | finf decode --separator --recover --max-output "
     "34",
     4, "<a><![CDATA[]]></a>\n", "finf: standard input: ended at octet *"},
    {"finf decode --follow log a", 2, "", "finf: --follow takes one INPUT and writes to*"},
    {"finf decode --follow log -o x", 2, "", "finf: --follow takes one INPUT and writes to*"},
    {"finf validate log; cat log | finf validate", 0, "log: clean\nstandard input: clean\n"},
    {"finf validate tail", 1, "",
     "finf: tail: offset 0x2b, in trailing octets: 1 that begin no document (X.891, 12)\n"},
    // The first document departs, the second one is in order: each is looked at by itself.
    {"printf '\\xE0\\0\\0\\1\\x80\\x3C\\0a\\xFF' >odd; cat odd a | finf validate", 3,
     "standard input: offset 0x4, in optional components: padding 1 where X.891 has 0 (X.891, 12.8)\n", "",
     "odd"},
    {"head -c 20 log | finf validate", 1, "",
     "finf: standard input: offset 0x13, in version number: Unexpected end of the document\n"},
    {"cat log | finf inspect | cut -c 3-27,38- | grep -A 1 -B 1 identi", 0,
     "fset      octets         construct\n"
     "000000    e0 00          identification\n000002    00 01          version number: 1\n--\n\n"
     "000011    e0 00          identification\n000013    00 01          version number: 1\n--\n\n"
     "00001a    e0 00          identification\n00001c    00 01          version number: 1\n"},
    {"finf inspect log --offset 0x19 --limit 4 | cut -c 1-8,38-", 0,
     "offset  construct\n          qualified name \"c\"  + ELEMENT NAME 1\n00000019end of element \"c\"\n"
     "00000019end of document\n\n0000001aidentification\n... more\n"},
    {"finf inspect log --json | tr -d '\\n' | sed 's/}{/}\\n{/g' | grep -c '\"offset\": .*document.*}]}$'", 0,
     "3\n"},
    {"finf inspect tail --json | tail -n 1", 0,
     "\"fault\": {\"offset\": 43, \"bit\": 0, \"construct\": \"trailing octets\", \"reason\": \"1 that begin "
     "no "
     "document (X.891, 12)\"}}\n",
     "finf: tail: offset 0x2b, in trailing octets: 1 that begin no document (X.891, 12)\n"},
    {"finf inspect tail --first | grep -c end.of.doc", 0, "1\n"},
    {"finf inspect log --html | tail -n 1", 0, "</html>\n",
     "finf: log: more documents stand behind the one that the page shows; --first takes it alone\n"},
    {"finf inspect log --html --first | cmp - <(finf inspect --html log --first)", 0, ""},
    {"finf diff a log", 2, "", "finf: log: more stands behind the document\n"},
    {"finf stats log --json | grep -oE '\"(elements|fastInfoset|xml)\": [0-9]+'", 0,
     "\"elements\": 3\n\"xml\": 149\n\"fastInfoset\": 43\n"},
};

TEST_F(LogTest, AllDocumentsOfAnInput) {
    const std::string before = files();
    for (const Case& each : CASES) {
        SCOPED_TRACE(each.line);
        const Result result = run(each.line);
        const std::string errors = each.errors;
        EXPECT_EQ(result.status, each.status);
        EXPECT_EQ(result.output, each.output);
        if (errors.ends_with('*')) {
            EXPECT_EQ(result.errors.substr(0, errors.size() - 1) + '*', errors);
        } else {
            EXPECT_EQ(result.errors, errors);
        }
        must("mkdir ../new; for f in *; do case $f in a|c|log|tail) ;; *) mv $f ../new ;; esac; done");
        EXPECT_EQ(must("ls -A ../new | paste -sd ' '; rm -r ../new"), std::string(each.files) + '\n');
        EXPECT_EQ(files(), before);
    }
}

// Wherever a document breaks off, what is written of it is XML with what it has said before.
TEST_F(LogTest, RecoversWhatIsWholeOfEveryBeginning) {
    write("deep.xml",
          "<!DOCTYPE a [<!NOTATION n PUBLIC 'n'>]><?p q?><a xmlns='urn:a' b='c'><!--d--><e><f "
          "xmlns:g='urn:g' g:h='i'><g:j>12 34 56 78 90 12 34</g:j><![CDATA[<k>]]></f>text &amp; more"
          "<l/>that</e></a>");
    must("finf encode --typed deep.xml -o deep");
    write("../all", R"sh(
size=$(stat -c %s deep) before=0
for ((n = 1; n < size; ++n)); do
    head -c $n deep | finf decode --recover >torn.xml 2>said
    status=$?
    [ $status = 4 ] || echo "$n: status $status"
    grep -q "^finf: standard input: ended at octet $n: " said || cat said
    [ $(wc -l <said) = 1 ] || cat said
    if [ -s torn.xml ]; then
        xmllint --noout torn.xml || echo "$n: no XML"
        now=$(xmllint --xpath 'count(//node() | //@*)' torn.xml)
        [ $now -ge $before ] || echo "$n: less than before"
        before=$now
    elif [ $before != 0 ]; then
        echo "$n: nothing"
    fi
done
finf decode --recover deep -c | finf diff - deep.xml
echo $before of $(xmllint --xpath 'count(//node() | //@*)' deep.xml)
)sh");
    EXPECT_EQ(must("source ../all"), "13 of 13\n");
}

// Each event is to be seen while the writer waits for it, and a signal closes what is open.
TEST_F(LogTest, FollowsWhatGrows) {
    write("b.xml", "<b><d>one</d><d>two</d><d>three</d></b>");
    must("finf encode b.xml -o b; rm b.xml");
    write("../grow", R"sh(
await() { for ((i = 0; i < 500; ++i)); do [ "$(cat out)" != "$1" ] || return 0; sleep 0.01; done; cat out; return 1; }
cat a >grows; : >out
finf decode --follow --separator grows >out 2>err & reader=$!
await '<a b="1">x</a>' || exit 1
for n in $(seq $(stat -c %s b)); do head -c $n b | tail -c 1 >>grows
    case $n in
    16) await $'<a b="1">x</a>\n<b><d>one' ;;
    32) await $'<a b="1">x</a>\n<b><d>one</d><d>two</d><d>three' ;;
    esac || exit 2
done
await $'<a b="1">x</a>\n<b><d>one</d><d>two</d><d>three</d></b>' || exit 3
head -c 26 b >>grows
await $'<a b="1">x</a>\n<b><d>one</d><d>two</d><d>three</d></b>\n<b><d>one</d><d>two</d><d' || exit 4
kill -TERM $reader; wait $reader; echo $? $(tail -n 1 out; cat err)
cp log whole
for change in ': >log' 'cp log new; mv new log' 'rm log'; do
    cp whole log
    : >out
    finf decode --follow --separator log >out 2>err & reader=$!
    await $'<a b="1">x</a>\n<c/>\n<a b="1">x</a>' || exit 5
    eval "$change"
    wait $reader; echo $? $(cat err)
done
)sh");
    EXPECT_EQ(must("source ../grow"), "0 <b><d>one</d><d>two</d><d/></b>\n"
                                      "1 finf: log: has been cut to 0 octets, of which 43 were read\n"
                                      "1 finf: log: has been replaced by another file\n"
                                      "1 finf: log: has been removed\n");
    EXPECT_EQ(must("cat a c >log; finf decode --follow --first log"), DECLARATION A);
    // The end of a pipe ends it, too.
    EXPECT_EQ(
        run("(cat a; sleep 0.1; cat c; head -c 6 a) | finf decode --follow --separator --recover"),
        (Result{4, A "\n<c/>\n",
                "finf: standard input: ended at octet 32: document at octet 26: Unexpected end of stream "
                "while parsing identifying string or index\n"}));
}

} // namespace
