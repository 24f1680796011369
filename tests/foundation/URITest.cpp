#include "Tamo/Exception.h"
#include "Tamo/Path.h"
#include "Tamo/StringTokenizer.h"
#include "Tamo/URIStreamOpener.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace Tamo;

namespace {

// A directory of its own for one test, removed afterwards.
struct TemporaryDirectory {
    TemporaryDirectory() { path = ::mkdtemp(path.data()); }
    ~TemporaryDirectory() { std::filesystem::remove_all(path); }
    std::string path = (std::filesystem::temp_directory_path() / "tamo-XXXXXX").string();
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
    // The text, then scheme, authority, path, query and fragment.
    for (const char* row :
         {"|||||", "a/b.xml|||a/b.xml||", "/a/b.xml#f|||/a/b.xml||f", "./a:b|||./a:b||", "1a:b|||1a:b||",
          ":b|||:b||", "a/b:c|||a/b:c||", "//host/p||host|/p||", "file:///a%2Bb%2F|file||/a+b/||",
          "urn:a:b|urn||a:b||", "http://h/?#|http|h|/||", "x+y-1.z:?q?r#f?#g|x+y-1.z|||q?r|f?#g",
          "http://u@h:80?q|http|u@h:80||q|", "http://h/%e4?%zz|http|h|/\xE4|%zz|"}) {
        const URI uri(StringTokenizer(row, "|")[0]);
        EXPECT_EQ(uri.toString() + "|" + uri.getScheme() + "|" + uri.getAuthority() + "|" + uri.getPath() +
                      "|" + uri.getQuery() + "|" + uri.getFragment(),
                  row);
    }
    EXPECT_EQ(URI("HTTP://H/").toString(), "http://H/");
    EXPECT_THROW(URI uri("a%2"), SyntaxException);
}

TEST(URI, ReferencesResolveAsInRFC3986) {
    for (const char* row :
         {"g:h > g:h", "g > http://a/b/c/g", "g/ > http://a/b/c/g/", "/g > http://a/g", "//g > http://g",
          "?y > http://a/b/c/d;p?y", "#s > http://a/b/c/d;p?q#s", " > http://a/b/c/d;p?q",
          ". > http://a/b/c/", "../.. > http://a/", "../../../g > http://a/g", "/../g > http://a/g",
          "..g. > http://a/b/c/..g.", "./g/. > http://a/b/c/g/", "g/../h?y/./x > http://a/b/c/h?y/./x"}) {
        const StringTokenizer parts(row, ">", StringTokenizer::TOK_TRIM);
        EXPECT_EQ(URI("http://a/b/c/d;p?q").resolve(URI(parts[0])).toString(), parts[1]) << row;
    }
    EXPECT_EQ(URI("dir/a").resolve(URI("b")).toString(), "dir/b");
}

TEST(Path, NameAndExtensionAreOfTheLastSegment) {
    for (const char* row :
         {"/a/b/c.xml c.xml xml", "c.tar.gz c.tar.gz gz", "/a.b/c c ", "/a.b/  ", "a. a. ", "  "}) {
        const StringTokenizer parts(row, " ");
        EXPECT_EQ(Path(parts[0]).getFileName(), parts[1]) << row;
        EXPECT_EQ(Path(parts[0]).getExtension(), parts[2]) << row;
    }
}

TEST(URIStreamOpener, OpensFilesAndNamesWhatItCannotOpen) {
    const URIStreamOpener& opener = URIStreamOpener::defaultOpener();
    const TemporaryDirectory directory;
    const std::string plain = directory.path + "/a%20b";
    std::ofstream(plain) << "literal\r\n";
    std::ofstream(directory.path + "/a b") << "decoded";
    EXPECT_EQ(contentOf(opener, plain), "literal\r\n");
    for (const char* prefix : {"file://", "file:", "FILE://localhost"}) {
        EXPECT_EQ(contentOf(opener, prefix + plain), "decoded") << prefix;
    }
    const std::string missing = directory.path + "/missing.xml";
    expectOpenError<FileNotFoundException>(opener, missing, missing);
    expectOpenError<FileNotFoundException>(opener, "file://" + missing, missing);
    expectOpenError<OpenFileException>(opener, directory.path, directory.path);
    expectOpenError<OpenFileException>(opener, plain + std::string("\0.txt", 5), plain);
    expectOpenError<OpenFileException>(opener, "file://elsewhere" + plain, "elsewhere");
    expectOpenError<UnknownURISchemeException>(opener, "Gopher://h/x", "gopher");
}

TEST(URIStreamOpener, ServesRegisteredSchemes) {
    URIStreamOpener opener;
    const auto factory = [](const URI& uri) {
        return uri.getPath() == "none" ? nullptr : std::make_unique<std::istringstream>(uri.getPath());
    };
    opener.registerScheme("Mem", factory);
    EXPECT_EQ(contentOf(opener, "mem:text"), "text");
    EXPECT_TRUE(opener.supportsScheme("MEM") && opener.supportsScheme("file"));
    EXPECT_FALSE(URIStreamOpener::defaultOpener().supportsScheme("mem"));
    expectOpenError<OpenFileException>(opener, "mem:none", "mem:none");
    EXPECT_THROW(opener.registerScheme("file", factory), ExistsException);
    opener.unregisterScheme("meM");
    EXPECT_THROW(opener.unregisterScheme("mem"), NotFoundException);
    expectOpenError<UnknownURISchemeException>(opener, "mem:text", "mem");
}
