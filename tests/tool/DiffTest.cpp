// `finf diff`: the same information is the same, and of a difference the first place is named.
#include "Finf.h"

namespace {

class DiffTest : public FinfTest {};

TEST_F(DiffTest, ConversionsSayTheSame) {
    must("for f in " TAMO_SAMPLES "/*.* " TAMO_TEST_DATA "/roundtrip/*; do\n"
         "  for o in '' --typed --max-indexed-length=-1; do\n"
         "    finf encode -c $o $f | finf diff $f - || echo $f $o; finf encode -c $o $f >x; finf decode -c x "
         "| finf diff - "
         "x\n"
         "  done\n"
         "done");
}

TEST_F(DiffTest, NamesTheFirstDifference) {
    write("a.xml",
          "<!DOCTYPE o SYSTEM 'o.dtd'><o xmlns='u'><i n='1' m='2'>one</i><i>two<!--c--></i><?p q?></o>");
    const struct {
        const char* from;
        const char* to;
        const char* difference; ///< without the names of the documents; empty when there is none
    } CASES[] = {
        {"n='1' m='2'", "m='2'   n=\"1\"", ""},
        {"one", "<![CDATA[on]]>&#101;", ""},
        {"<i>", "<i\n>", ""},
        {"n='1'", "n='7'", "/o/i[1]/@n: \"1\" / \"7\""},
        {" m='2'", "", "/o/i[1]/@m: \"2\" / nothing"},
        {" m='2'", " m='2' z='3'", "/o/i[1]/@z: nothing / \"3\""},
        {"two", "too", "/o/i[2]/text(): \"two\" / \"too\""},
        {"two", "<b/>two", "/o/i[2]: text \"two\" / element b of namespace u"},
        {"<!--c-->", "<!--d-->", "/o/i[2]/comment(): \"c\" / \"d\""},
        {"<?p q?>", "<?p r?>", "/o/processing-instruction(): \"q\" / \"r\""},
        {"<?p q?>", "", "/o: processing instruction p / the end of the element"},
        {"xmlns='u'", "xmlns='v'", "/: element o of namespace u / element o of namespace v"},
        {"xmlns='u'", "xmlns='u' xmlns:p='w'", "/o/@xmlns:p: nothing / \"w\""},
        {"o.dtd", "p.dtd", "/document type, system identifier: \"o.dtd\" / \"p.dtd\""},
        {"one", "1234567890123456789012345678901234567890123456789012345678901234567890",
         "/o/i[1]/text(): \"one\" / \"123456789012345678901234567890123456789012345678901234567890\"... (70 "
         "octets)"},
    };
    for (const auto& each : CASES) {
        SCOPED_TRACE(each.to);
        std::string text = read("a.xml");
        text.replace(text.find(each.from), std::string(each.from).size(), each.to);
        write("b.xml", text);
        std::string expected = each.difference;
        const Result result = run("finf diff a.xml b.xml");
        EXPECT_EQ(result.status, expected.empty() ? 0 : 1);
        EXPECT_EQ(result.errors, "");
        if (!expected.empty()) {
            expected.replace(expected.find(" / "), 3, " in a.xml, ");
            expected += " in b.xml\n";
        }
        EXPECT_EQ(result.output, expected);
    }
    EXPECT_EQ(run("finf diff -q a.xml b.xml"), (Result{1, "", ""}));
}

} // namespace
