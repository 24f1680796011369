// `finf vocabulary`: what it chooses from samples, in which order, and that both directions can use it.
#include "Finf.h"

namespace {

class VocabularyTest : public FinfTest {};

TEST_F(VocabularyTest, HoldsWhatIsFrequentMostFrequentFirst) {
    write("a.xml",
          "<!DOCTYPE p:a PUBLIC '-//P//A' 'a.dtd'><p:a xmlns:p='urn:p' xmlns:q='urn:q' xmlns='urn:d'"
          " xml:lang='en' p:own='1'><?go a--b?>\n<b q:other='&lt;&quot;&#10;' id='1' xmlns:d='urn:d'"
          " d:same='yes'>x &amp; y</b><b id='yes'>x &amp; y</b><p xmlns=''>more than 16 octets</p>"
          "<p xmlns=''>more than 16 octets</p><p xmlns='' id='yes'/><!--note--><!--note--><?go a--b?>\n"
          "</p:a>");
    EXPECT_EQ(must("finf vocabulary a.xml -o v.xml"),
              "v.xml: 3 element names, 5 attribute names, 4 namespaces, 2 attribute values, 2 texts, "
              "2 other strings, 2 other names, 2 identifiers\nurn:finf:RIgRn4rEBHKMcBYtczVHaA\n"
              "         XML  Fast Infoset  with vocabulary     saved\n"
              "         361           214              157    26.6 %  a.xml\n");
    EXPECT_EQ(read("v.xml"),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- An external vocabulary: what occurs here is numbered in this order. -->
<!DOCTYPE p [
<!NOTATION go SYSTEM "-//P//A">
<!NOTATION n1 SYSTEM "a.dtd">
]>
<?go a--b?>
<!--note-->
<p
><p xmlns:d="urn:d"
/><p xmlns:p="urn:p"
/><p xmlns:q="urn:q"
/><b xmlns="urn:d"
/><p:a xmlns:p="urn:p"
/><p id=""
/><p xmlns:d="urn:d" d:same=""
/><p xmlns:p="urn:p" p:own=""
/><p xmlns:q="urn:q" q:other=""
/><p xml:lang=""
/><p id="yes"
/><p id="1"
/><p:a xmlns="urn:d" xmlns:p="urn:p"
/><p>&#10;</p
><p>x &amp; y</p
></p>
)");
    // The size is the one of the real conversion, and Fast Infoset samples count like XML.
    must("finf encode a.xml --external-vocabulary v.xml=v.xml; test $(stat -c %s a.finf) = 131\n"
         "finf decode a.finf -o b.xml --external-vocabulary v.xml=v.xml; finf encode a.xml -o plain.finf\n"
         "for s in a.finf plain.finf; do finf vocabulary $s -o - --external-vocabulary v.xml=v.xml | cmp - "
         "v.xml; done");
    EXPECT_EQ(canonical("b.xml"), canonical("a.xml"));
    // As Fast Infoset it has the same tables in the same order, and its element adds nothing to them.
    must("finf vocabulary a.xml -o v.finf >/dev/null; finf validate -q v.finf\n"
         "for v in v.xml v.finf; do finf encode a.xml -o with-$v --external-vocabulary u=$v; done\n"
         "cmp with-v.xml with-v.finf; finf vocabulary a.xml -o - --format finf | cmp - v.finf");
    // Either has the URI of its content, under which no other vocabulary is taken.
    must("finf encode a.xml -o named --external-vocabulary v.xml\n"
         "finf decode named -o b.xml -f --external-vocabulary a.xml --external-vocabulary v.finf");
    EXPECT_EQ(canonical("b.xml"), canonical("a.xml"));
    const std::string uri = "urn:finf:RIgRn4rEBHKMcBYtczVHaA";
    EXPECT_EQ(run("finf decode named -o c.xml --external-vocabulary a.xml").errors,
              "finf: named: external vocabulary " + uri + " is needed; give it with --external-vocabulary " +
                  uri + "=FILE\n");
    EXPECT_EQ(run("finf decode named -o c.xml --external-vocabulary " + uri + "=a.xml").errors,
              "finf: named: The external vocabulary has other entries than its URI says: " + uri + "\n");
}

TEST_F(VocabularyTest, SamplesOfAllKindsAndSizes) {
    // Each table gets more candidates than it takes; the documents get more entries than hash tables take.
    std::string big = "<r>";
    for (int i = 0; i < 11000; ++i) {
        const std::string n = std::to_string(i);
        big += "<e" + n + "><!--" + std::to_string(i % 40) + "--><p" + n + ":e xmlns:p" + n + "='urn:" + n +
               "' a" + n + "='" + n + "'>" + n + "</p" + n + ":e></e" + n + ">";
    }
    write("big.xml", big + "</r>");
    EXPECT_NE(must("finf vocabulary big.xml -o big.voc --min-count 1")
                  .find("5004 element names, 5004 attribute names, 126 namespaces, 11000 attribute values, "
                        "11000 texts, 9 other strings\n"),
              std::string::npos);
    must("cp " TAMO_SAMPLES "/*.* .; finf vocabulary " TAMO_SAMPLES "/*.* -o all.voc --uri urn:all");
    for (const char* row : {"big.xml big.voc", "order.xml all.voc", "drawing.svg all.voc"}) {
        SCOPED_TRACE(row);
        must("set -- " + std::string(row) +
             "; o=--external-vocabulary=u=$2; finf encode $1 -o in.finf -f $o\n"
             "finf decode in.finf -o out.xml -f $o; cp $1 in.xml; finf encode in.xml -o plain -f\n"
             "test $(($(stat -c %s in.finf) * 10)) -lt $(($(stat -c %s plain) * 9))");
        EXPECT_TRUE(canonical("out.xml") == canonical("in.xml"));
    }
}

} // namespace
