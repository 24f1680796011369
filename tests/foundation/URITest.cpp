#include "Tamo/Exception.h"
#include "Tamo/Path.h"
#include "Tamo/URIStreamOpener.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace Tamo;

namespace {

// A directory of its own for one test, removed afterwards.
struct TemporaryDirectory {
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tamo-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() { std::filesystem::remove_all(path); }
    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(path + "/" + name, std::ios::binary) << content;
        return path + "/" + name;
    }
    std::string path;
};

std::string contentOf(const URIStreamOpener& opener, const std::string& pathOrURI) {
    const std::unique_ptr<std::istream> pStream(opener.open(pathOrURI));
    std::ostringstream content;
    content << pStream->rdbuf();
    return content.str();
}

template<class E>
void expectOpenError(const URIStreamOpener& opener, const std::string& pathOrURI, const std::string& named) {
    try {
        contentOf(opener, pathOrURI);
        ADD_FAILURE() << "opened " << pathOrURI;
    } catch (const Exception& e) {
        EXPECT_STREQ(e.className(), E(0).className()) << e.displayText();
        EXPECT_NE(e.message().find(named), std::string::npos) << e.displayText();
    }
}

} // namespace

TEST(URI, PartsAreTakenApartAndPutTogether) {
    const struct {
        const char* text;
        const char* scheme;
        const char* authority;
        const char* path;
        const char* query;
        const char* fragment;
    } rows[] = {
        {"", "", "", "", "", ""},
        {"a/b.xml", "", "", "a/b.xml", "", ""},
        {"/a/b.xml#f", "", "", "/a/b.xml", "", "f"},
        {"./a:b", "", "", "./a:b", "", ""},
        {"1a:b", "", "", "1a:b", "", ""},
        {":b", "", "", ":b", "", ""},
        {"a/b:c", "", "", "a/b:c", "", ""},
        {"//host/p", "", "host", "/p", "", ""},
        {"file:///a%20b%2Fc", "file", "", "/a b/c", "", ""},
        {"urn:a:b", "urn", "", "a:b", "", ""},
        {"x+y-1.z:?q?r#f?#g", "x+y-1.z", "", "", "q?r", "f?#g"},
        {"http://u@h:80?q", "http", "u@h:80", "", "q", ""},
        {"http://h/?#", "http", "h", "/", "", ""},
        {"http://h/%e4?%zz", "http", "h", "/\xE4", "%zz", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const URI uri(row.text);
        EXPECT_EQ(uri.getScheme(), row.scheme);
        EXPECT_EQ(uri.getAuthority(), row.authority);
        EXPECT_EQ(uri.getPath(), row.path);
        EXPECT_EQ(uri.getQuery(), row.query);
        EXPECT_EQ(uri.getFragment(), row.fragment);
        EXPECT_EQ(uri.isRelative(), *row.scheme == '\0');
        EXPECT_EQ(uri.toString(), row.text);
    }
    EXPECT_EQ(URI("HTTP://H/").toString(), "http://H/");
    for (const char* text : {"%", "a%2", "a%2x", "file:///%%20"}) {
        EXPECT_THROW(URI uri(text), SyntaxException) << text;
    }
}

TEST(URI, ReferencesResolveAsInRFC3986) {
    const URI base("http://a/b/c/d;p?q");
    const char* const rows[][2] = {{"g:h", "g:h"},
                                   {"g", "http://a/b/c/g"},
                                   {"g/", "http://a/b/c/g/"},
                                   {"/g", "http://a/g"},
                                   {"//g", "http://g"},
                                   {"?y", "http://a/b/c/d;p?y"},
                                   {"#s", "http://a/b/c/d;p?q#s"},
                                   {"", "http://a/b/c/d;p?q"},
                                   {".", "http://a/b/c/"},
                                   {"..", "http://a/b/"},
                                   {"../..", "http://a/"},
                                   {"../../../g", "http://a/g"},
                                   {"/../g", "http://a/g"},
                                   {"g.", "http://a/b/c/g."},
                                   {"..g", "http://a/b/c/..g"},
                                   {"./g/.", "http://a/b/c/g/"},
                                   {"g/../h", "http://a/b/c/h"},
                                   {"g?y/./x", "http://a/b/c/g?y/./x"}};
    for (const auto& row : rows) {
        EXPECT_EQ(base.resolve(URI(row[0])).toString(), row[1]) << row[0];
    }
    EXPECT_EQ(URI("dir/a.xml").resolve(URI("b.dtd")).toString(), "dir/b.dtd");
    EXPECT_EQ(URI("http://h").resolve(URI("b")).toString(), "http://h/b");
}

TEST(Path, NameAndExtensionAreOfTheLastSegment) {
    const char* const rows[][3] = {{"/a/b/c.xml", "c.xml", "xml"},
                                   {"c.tar.gz", "c.tar.gz", "gz"},
                                   {"/a.b/c", "c", ""},
                                   {"/a.b/", "", ""},
                                   {"a.", "a.", ""},
                                   {"", "", ""}};
    for (const auto& row : rows) {
        const Path path(row[0]);
        EXPECT_EQ(path.toString(), row[0]);
        EXPECT_EQ(path.getFileName(), row[1]) << row[0];
        EXPECT_EQ(path.getExtension(), row[2]) << row[0];
    }
}

TEST(URIStreamOpener, OpensFilesAndNamesWhatItCannotOpen) {
    const URIStreamOpener& opener = URIStreamOpener::defaultOpener();
    const TemporaryDirectory directory;
    const std::string plain = directory.file("a%20b #?.bin", std::string("\r\n\0x", 4));
    directory.file("a b", "decoded");
    EXPECT_EQ(contentOf(opener, plain), std::string("\r\n\0x", 4)) << "a path is taken literally";
    for (const char* prefix : {"file://", "file:", "FILE://localhost"}) {
        EXPECT_EQ(contentOf(opener, prefix + directory.path + "/a%20b"), "decoded") << prefix;
    }
    const std::string missing = directory.path + "/missing.xml";
    expectOpenError<FileNotFoundException>(opener, missing, missing);
    expectOpenError<FileNotFoundException>(opener, "file://" + missing, missing);
    expectOpenError<FileNotFoundException>(opener, "", "");
    expectOpenError<OpenFileException>(opener, directory.path, directory.path);
    expectOpenError<OpenFileException>(opener, plain + std::string("\0.txt", 5), plain);
    expectOpenError<OpenFileException>(opener, "file://elsewhere" + plain, "elsewhere");
    expectOpenError<UnknownURISchemeException>(opener, "Gopher://h/x", "gopher");
}

TEST(URIStreamOpener, ServesRegisteredSchemes) {
    URIStreamOpener opener;
    opener.registerScheme("Mem", [](const URI& uri) {
        return uri.getPath() == "none" ? nullptr : std::make_unique<std::istringstream>(uri.getPath());
    });
    EXPECT_EQ(contentOf(opener, "mem:text"), "text");
    EXPECT_TRUE(opener.supportsScheme("MEM") && opener.supportsScheme("file"));
    EXPECT_FALSE(opener.supportsScheme("http") || URIStreamOpener::defaultOpener().supportsScheme("mem"));
    expectOpenError<OpenFileException>(opener, "mem:none", "mem:none");
    const auto factory = [](const URI&) { return std::make_unique<std::istringstream>(); };
    EXPECT_THROW(opener.registerScheme("mem", factory), ExistsException);
    EXPECT_THROW(opener.registerScheme("file", factory), ExistsException);
    EXPECT_THROW(opener.registerScheme("no scheme", factory), InvalidArgumentException);
    EXPECT_THROW(opener.registerScheme("x", nullptr), NullPointerException);
    opener.unregisterScheme("meM");
    EXPECT_THROW(opener.unregisterScheme("mem"), NotFoundException);
    expectOpenError<UnknownURISchemeException>(opener, "mem:text", "mem");
}
