// Documents that come back with the same information: ours and those of others, judged by canonical XML.
#include "Finf.h"
#include <sstream>

namespace {

class RoundTripTest : public FinfTest {
protected:
    /// Converts the documents, named by a line of shell, with several settings.
    void allComeBack(const std::string& list, int atLeast) {
        std::istringstream paths(must(list));
        int count = 0;
        for (std::string path; std::getline(paths, path); ++count) {
            SCOPED_TRACE(path);
            must("cp '" + path + "' in.xml");
            const std::string expected = information("in.xml");
            for (const char* options : {"", "--typed --max-indexed-length 0", "--max-indexed-length -1"}) {
                SCOPED_TRACE(options);
                must("finf encode in.xml -f " + std::string(options) + "; finf decode in.finf -o out.xml -f");
                EXPECT_TRUE(information("out.xml") == expected);
            }
        }
        EXPECT_GE(count, atLeast);
    }

private:
    /// Canonical XML leaves the document type declaration out: its identifiers, notations and entities as
    /// well.
    std::string information(const std::string& name) {
        return canonical(name) +
               must("grep -oE '<!(NOTATION|ENTITY.*NDATA)[^>]*|<!DOCTYPE [^[>]*[^[> ]' " + name + " || true");
    }
};

TEST_F(RoundTripTest, OurDocuments) {
    allComeBack("ls " TAMO_SAMPLES "/*.* " TAMO_TEST_DATA "/roundtrip/*", 9);
}

// Documents that Debian packages ship (see scripts/bootstrap).
TEST_F(RoundTripTest, MimeTypesAndInterfaceDescriptions) {
    if (const std::string missing =
            lacking("/usr/share/mime/packages/freedesktop.org.xml /usr/share/gir-1.0/GObject-2.0.gir");
        !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    allComeBack(
        "ls /usr/share/mime/packages/freedesktop.org.xml /usr/share/gir-1.0/{GObject,GIRepository}-2.0.gir",
        3);
}

TEST_F(RoundTripTest, StyleSheets) {
    if (const std::string missing = lacking("/usr/share/xml/docbook/stylesheet/docbook-xsl");
        !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    // Some depend on entities of other files, which the tool does not read; some have a relative namespace
    // name, which has no canonical form.
    allComeBack("grep -LE '<!ENTITY %|=\"com\\.' /usr/share/xml/docbook/stylesheet/docbook-xsl/fo/*.xsl", 36);
}

TEST_F(RoundTripTest, CharacterEncodings) {
    const std::string text = "<a b='\u00E9\u00DF'>na\u00EFve \u00A3 \u00FC</a>";
    const std::string windows = "<a>\u20AC \u2013 \u201Equotes\u201C</a>";
    const struct {
        const char* encoding;
        std::string document;
    } rows[] = {{"UTF-16", text},
                {"UTF-16LE", "\uFEFF" + text},
                {"UTF-16BE", "\uFEFF" + text},
                {"ISO-8859-1", text},
                {"ISO-8859-15", text},
                {"WINDOWS-1252", windows},
                {"KOI8-R", "<a>\u041F\u0440\u0438\u0432\u0435\u0442</a>"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.encoding);
        const bool hasMark = row.document.starts_with("\uFEFF");
        write("utf8", (hasMark ? "" : "<?xml version='1.0' encoding='" + std::string(row.encoding) + "'?>") +
                          row.document);
        write("plain.xml", row.document);
        must("iconv -f UTF-8 -t " + std::string(row.encoding) +
             " utf8 >in.xml; finf encode in.xml -f;"
             "finf decode in.finf -o out.xml -f");
        EXPECT_EQ(canonical("out.xml"), canonical("plain.xml"));
    }
}

// Typed content is smaller and gives back the same text, octet for octet.
TEST_F(RoundTripTest, TypedContent) {
    for (const char* sample : {TAMO_SAMPLES "/track.xml", TAMO_SAMPLES "/sensors.xml"}) {
        SCOPED_TRACE(sample);
        must("for o in '' --typed; do finf encode " + std::string(sample) +
             " $o -o f$o -f; finf decode f$o -o x$o -f; done");
        EXPECT_LT(read("f--typed").size() * 100, read("f").size() * 90);
        EXPECT_EQ(read("x--typed"), read("x"));
    }
    const struct {
        const char* content;
        int saved; ///< octets that typing saves
    } rows[] = {{"1048576 -1048576 0", 18 - 12 - 1},
                {"-32768 32767 12 0", 17 - 8 - 1},
                {"1715418000000 1715418000001", 27 - 16 - 1},
                {"0.30000000000000004", 19 - 8 - 1},
                {"0.5 0.25 1.75 0.125", 19 - 16 - 1},
                {"true false true false", 21 - 1},
                {"00FF10A0B0C0D0E0F001", 20 - 10 - 1},
                {"8f0e2a10-5c3b-4e7d-9b61-2f6a0c9d1e44", 36 - 16 - 1},
                {"AAECAwQFBgcICQoLDA0ODw==", 24 - 16 - 1},
                {"1715418000000 1 2", 0}, // too many octets
                {"123456", 0},            // short enough to be indexed
                // Other spellings than what a reader would produce.
                {"00ff10a0b0c0d0e0f00", 0},
                {"007 0010 0000000000001", 0},
                {" 1048576 1048577 1", 0},
                {"8F0E2A10-5C3B-4E7D-9B61-2F6A0C9D1E44", 0},
                {"1.50 2.50 3.50 4.50", 0},
                // Not the whole text of the element, or more than text.
                {"1048576<b/>1048576111111", 0},
                {"<![CDATA[1048576 1048577]]>", 0},
                {"1048576 <!--x-->10485771111", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        write("in.xml", "<a>" + std::string(row.content) + "</a>");
        must("finf encode in.xml -o plain -f; finf encode in.xml -o typed --typed -f;"
             "finf decode typed -o out.xml -f");
        EXPECT_EQ(static_cast<int>(read("plain").size()) - static_cast<int>(read("typed").size()), row.saved);
        EXPECT_EQ(canonical("out.xml"), canonical("in.xml"));
        const std::string text(row.content);
        if (text.find('<') == std::string::npos) { // the same as an attribute
            // Up to two octets have a short length there and here, up to eight in an attribute.
            const int octets = static_cast<int>(text.size()) - row.saved - 1;
            const bool isShort = row.saved != 0 && octets > 2 && octets <= 8;
            write("in.xml", "<a u='b' v='" + text + "'/>");
            must("finf encode in.xml -o plain -f; finf encode in.xml -o typed --typed -f;"
                 "finf decode typed -o out.xml -f; finf validate -q typed");
            EXPECT_EQ(static_cast<int>(read("plain").size()) - static_cast<int>(read("typed").size()),
                      row.saved + (isShort ? 1 : 0));
            EXPECT_EQ(canonical("out.xml"), canonical("in.xml"));
        }
    }
}

// Numbers in the form in which the standard has them: every reader gives the text back.
TEST_F(RoundTripTest, CanonicalNumbers) {
    const struct {
        const char* content;
        int saved; ///< octets that typing saves
    } rows[] = {{"1.5E0 2.5E-1 -1.0E20 INF -INF NaN", 33 - 24 - 1},
                {"1.2345678901234567E300", 22 - 8 - 1},
                {"1048576 -1048576 0", 18 - 12 - 1},
                {"1.5 2.5 3.5 4.5 5.5 6.5", 0},
                {"1.5e0 2.5e0 3.5e0 4.5e0", 0},
                {"1.50E0 2.50E0 3.50E0 4.50E0", 0},
                {"1.5E0  2.5E0 3.5E0 4.5E0", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        write("in.xml", "<a>" + std::string(row.content) + "</a>");
        must("finf encode in.xml -o plain -f; finf encode in.xml -o typed --typed=canonical -f;"
             "finf decode typed -o out.xml --canonical-numbers -f");
        EXPECT_EQ(static_cast<int>(read("plain").size()) - static_cast<int>(read("typed").size()), row.saved);
        EXPECT_EQ(canonical("out.xml"), canonical("in.xml"));
    }
}

TEST_F(RoundTripTest, WhitespaceIsStrippedOnRequestOnly) {
    write("in.xml", "<a>\n <b> x </b>\n <c xml:space='preserve'> </c>\n</a>");
    must("finf encode in.xml --strip-whitespace; finf decode in.finf -o out.xml");
    EXPECT_EQ(canonical("out.xml"), "<a><b> x </b><c xml:space=\"preserve\"> </c></a>");
}

TEST_F(RoundTripTest, ExternalVocabulary) {
    must("cp " TAMO_SAMPLES "/order.xml in.xml; finf encode in.xml; finf encode in.xml -o vocabulary.finf");
    for (const char* file : {"in.xml", "vocabulary.finf"}) {
        SCOPED_TRACE(file);
        const std::string option = std::string("--external-vocabulary 'urn:v?a=b=") + file + "'";
        must("finf encode in.xml -o small -f " + option + "; finf decode small -o out.xml -f " + option);
        EXPECT_LT(read("small").size() * 4, read("in.finf").size() * 3);
        EXPECT_EQ(canonical("out.xml"), canonical("in.xml"));
    }
    const Result refused = run("finf decode small -o -");
    EXPECT_EQ(refused, (Result{1, "",
                               "finf: small: external vocabulary urn:v?a=b is needed; give it with "
                               "--external-vocabulary urn:v?a=b=FILE\n"}));
    // A document whose vocabulary is itself.
    EXPECT_EQ(run("finf decode small -o - --external-vocabulary 'urn:v?a=b=small'").errors,
              "finf: small: external vocabulary small: An external vocabulary names itself: urn:v?a=b\n");
}

} // namespace
