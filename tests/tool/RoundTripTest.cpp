// Documents that come back with the same information: ours and those of others, judged by canonical XML.
#include "Finf.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> documents(const fs::path& directory, const std::string& extensions) {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        if (entry.is_regular_file() &&
            std::regex_match(entry.path().extension().string(), std::regex(extensions))) {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

class RoundTripTest : public FinfTest {
protected:
    void allComeBack(const std::vector<fs::path>& paths, std::size_t atLeast) {
        EXPECT_GE(paths.size(), atLeast);
        for (const fs::path& path : paths) {
            comesBack(path);
        }
    }

private:
    void comesBack(const fs::path& path) {
        SCOPED_TRACE(path);
        must("cp '" + path.string() + "' in.xml");
        const std::string expected = canonical("in.xml");
        for (const char* options : {"", "--typed --max-indexed-length 0", "--max-indexed-length -1"}) {
            SCOPED_TRACE(options);
            must(std::string("finf encode in.xml --force ") + options +
                 "; finf decode in.finf -o out.xml --force");
            EXPECT_TRUE(canonical("out.xml") == expected);
        }
    }
};

TEST_F(RoundTripTest, OurDocuments) {
    allComeBack(documents(TAMO_SAMPLES, "\\.(xml|svg)"), 6);
    allComeBack(documents(TAMO_TEST_DATA "/roundtrip", "\\.xml"), 3);
}

// Documents that Debian packages ship (see scripts/bootstrap).
TEST_F(RoundTripTest, MimeTypes) {
    allComeBack({"/usr/share/mime/packages/freedesktop.org.xml"}, 1);
}

TEST_F(RoundTripTest, InterfaceDescriptions) {
    allComeBack({"/usr/share/gir-1.0/GObject-2.0.gir", "/usr/share/gir-1.0/GIRepository-2.0.gir"}, 2);
}

TEST_F(RoundTripTest, StyleSheets) {
    std::vector<fs::path> paths = documents("/usr/share/xml/docbook/stylesheet/docbook-xsl/fo", "\\.xsl");
    // Some depend on entities of other files, which the tool does not read; some have a relative namespace
    // name, which has no canonical form.
    std::erase_if(paths, [](const fs::path& path) {
        std::ifstream stream(path);
        const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        return text.find("<!ENTITY %") != std::string::npos || text.find("=\"com.") != std::string::npos;
    });
    allComeBack(paths, 36);
}

TEST_F(RoundTripTest, CharacterEncodings) {
    const std::string text = "<a b='\u00E9\u00DF'>na\u00EFve \u00A3 \u00FC</a>";
    const std::string windows = "<a>\u20AC \u2013 \u201Equotes\u201C</a>";
    const struct {
        const char* encoding; ///< as iconv calls it
        const char* declared; ///< as XML does
        std::string document;
    } rows[] = {{"UTF-16", "UTF-16", text},
                {"UTF-16LE", nullptr, "\uFEFF" + text},
                {"UTF-16BE", nullptr, "\uFEFF" + text},
                {"ISO-8859-1", "ISO-8859-1", text},
                {"WINDOWS-1252", "windows-1252", windows},
                {"ISO-8859-15", "ISO-8859-15", text},
                {"KOI8-R", "KOI8-R", "<a>\u041F\u0440\u0438\u0432\u0435\u0442</a>"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.encoding);
        const std::string declaration =
            row.declared ? "<?xml version='1.0' encoding='" + std::string(row.declared) + "'?>" : "";
        write("utf8", declaration + row.document);
        must(std::string("iconv -f UTF-8 -t ") + row.encoding + " utf8 >in.xml");
        write("plain.xml", row.document);
        must("finf encode in.xml --force; finf decode in.finf -o out.xml --force");
        EXPECT_EQ(canonical("out.xml"), canonical("plain.xml"));
    }
}

// Typed content is smaller and gives back the same text, octet for octet.
TEST_F(RoundTripTest, TypedContent) {
    for (const char* sample : {"track.xml", "sensors.xml"}) {
        SCOPED_TRACE(sample);
        must("cp " TAMO_SAMPLES "/" + std::string(sample) +
             " in.xml; finf encode in.xml -o plain --force;"
             "finf encode in.xml -o typed --typed --force; finf decode plain -o plain.xml --force;"
             "finf decode typed -o typed.xml --force");
        EXPECT_LT(read("typed").size() * 100, read("plain").size() * 90);
        EXPECT_EQ(read("typed.xml"), read("plain.xml"));
    }
    const struct {
        const char* content;
        int saved; ///< octets that typing saves
    } rows[] = {
        {"1048576 -1048576 0", 18 - 12 - 1},
        {"-32768 32767 12 0", 17 - 8 - 1},
        {"1715418000000 1 2", 0},
        {"1715418000000 1715418000001", 27 - 16 - 1},
        {"0.30000000000000004", 19 - 8 - 1},
        {"0.5 0.25 1.75 0.125", 19 - 16 - 1},
        {"true false true false", 21 - 1},
        {"00FF10A0B0C0D0E0F001", 20 - 10 - 1},
        {"8F0E2A10-5C3B-4E7D-9B61-2F6A0C9D1E44", 36 - 16 - 1},
        {"AAECAwQFBgcICQoLDA0ODw==", 24 - 16 - 1},
        {"00ff10a0b0c0d0e0f00", 0},
        {"007 0010 0000000000001", 0},
        {" 1048576 1048577 1", 0},
        {"8f0e2a10-5c3b-4e7d-9b61-2f6a0c9d1e44", 0},
        {"1.50 2.50 3.50 4.50", 0},
        {"1048576<b/>1048576111111", 0},
        {"<![CDATA[1048576 1048577]]>", 0},
        {"1048576 <!--x-->10485771111", 0},
        {"prose, which stays what it is", 0},
        {"123456", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        write("in.xml", "<a>" + std::string(row.content) + "</a>");
        must("finf encode in.xml -o plain --force; finf encode in.xml -o typed --typed --force;"
             "finf decode typed -o out.xml --force");
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
        must("finf encode in.xml -o small --force " + option + "; finf decode small -o out.xml --force " +
             option);
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
