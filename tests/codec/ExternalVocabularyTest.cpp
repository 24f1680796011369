// External vocabularies: given, loaded, announced, naming themselves.
#include "DocumentTest.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace Tamo::FastInfoset::Test {
namespace {

class ExternalVocabularyTest : public testing::Test {
protected:
    ExternalVocabularyTest() { std::filesystem::create_directories(_directory); }
    ~ExternalVocabularyTest() override { std::filesystem::remove_all(_directory); }

    std::string uriOf(const std::string& name) const { return "file:" + _directory + "/" + name; }

    std::string store(const std::string& name, const std::string& content) const {
        std::ofstream(_directory + "/" + name, std::ios::binary) << content;
        return uriOf(name);
    }

    // What a parser of this kind reports, the document handler's calls first.
    static std::string read(const std::string& document,
                            DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_VECTOR) {
        FastInfosetParser parser(impl);
        return read(parser, document);
    }

    static std::string read(FastInfosetParser& parser, const std::string& document) {
        EventRecorder recorder;
        recorder.connectAll(parser);
        const std::string failure = failureOf([&] { parseMemory(parser, document); });
        parser.setDocumentHandler(nullptr);
        return failure.empty() ? recorder.events() : failure;
    }

private:
    const std::string _directory =
        testing::TempDir() + "tamo-external-vocabulary-" + std::to_string(getpid());
};

TEST_F(ExternalVocabularyTest, GivenInAdvanceNothingIsLoaded) {
    const std::string uri = "urn:v";
    const DocumentVocabulary shared = vocabularyOf(R"(^|<a b="1"|'x|>|$)", uri, DocumentVocabulary::VOC_HASH);
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, shared);
    writer.setExternalVocabulary(uri, shared);
    play(R"(^|<a b="1"|'x|<c|>|<c|>|>|$)", writer);
    EXPECT_EQ(hex(stream.str()), hex(naming(uri, "40 00 80 F0 A0 3C 00 63 F0 01 FF F0")));
    for (const auto impl : ALL_KINDS) {
        FastInfosetParser parser(DocumentVocabulary(shared, impl));
        for (int i = 0; i < 2; ++i) { // nothing is reset either, and the same document means the same
            EXPECT_EQ(read(parser, stream.str()), R"(none|vocabulary|^|<a b="1"|'x|<c|>|<c|>|>|$)");
        }
    }
    // Without the URI the reader opens what the document names.
    EXPECT_EQ(read(stream.str()), "UnknownURISchemeException: urn");
}

TEST_F(ExternalVocabularyTest, AnnouncedWithTheDifference) {
    const DocumentVocabulary shared = vocabularyOf("^|<a|>|$", "urn:v");
    std::ostringstream stream;
    FastInfosetWriter writer(stream, false, shared);
    writer.setExternalVocabulary("urn:v", shared);
    add(writer.getDocumentVocabulary(), DocumentVocabulary::PREFIX, {"p"});
    add(writer.getDocumentVocabulary(), DocumentVocabulary::LOCAL_NAME, {"b"});
    play("^|+p=u|<a|<{u}p:b|>|>|-p|$", writer);
    EXPECT_EQ(hex(stream.str()), hex(document("20 12 80 04 75 72 6E 3A 76 00 00 70 00 00 62"
                                              "38 CF 81 00 75 F0 00 3F 81 81 81 FF F0")));
    FastInfosetParser parser(shared);
    EXPECT_EQ(read(parser, stream.str()), "none|vocabulary|^|+p=u|<a|<{u}p:b|>|>|$");
}

TEST_F(ExternalVocabularyTest, LoadedFromXMLAndFastInfoset) {
    const std::string xml =
        "<?xml version='1.0'?><!DOCTYPE a [<!NOTATION n SYSTEM 's'>]><a b='1'>x<?t d?></a>";
    const std::string fastInfoset = document([](auto& w) { play(R"(^|<a b="1"|'x|?t d|>|$)", w); });
    const std::string inner = store("inner.finf", fastInfoset);
    const std::string outer = store("outer", naming(inner, "3C 00 63 FF"));
    const std::string body = "40 00 80 F0 A0 E1 80 80 FF";
    const std::string bodyOfXML = "40 00 80 F0 A0 E1 81 80 FF"; // there the notation's name comes first
    const struct {
        std::string uri;
        std::string octets;
    } rows[] = {
        {store("v.xml", xml), bodyOfXML}, {store("w.XmL", xml), bodyOfXML}, {inner, body}, {outer, body}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.uri);
        const std::string document = naming(row.uri, row.octets);
        const std::string events = R"(^|<a b="1"|'x|?t d|>|$)";
        expectEvents(document, events); // without document handler, and twice by one parser
        for (const auto impl : ALL_KINDS) {
            EXPECT_EQ(read(document, impl), "none|external " + row.uri + "|vocabulary|" + events);
        }
    }
    // A vocabulary in hash tables can go on to a writer, one in vectors cannot.
    expectRewritten(naming(rows[0].uri, bodyOfXML));
    std::ostringstream stream;
    FastInfosetWriter writer(stream);
    FastInfosetParser parser;
    parser.initialize(&writer);
    EXPECT_FAILURE(
        "InvalidArgumentException: A DocumentVocabulary with VOC_VECTOR implementation cannot be used "
        "by FastInfosetWriter",
        parseMemory(parser, naming(inner, body)));
}

TEST_F(ExternalVocabularyTest, ResourcesThatCannotBeRead) {
    const std::string missing = uriOf("missing");
    EXPECT_EQ(read(naming(missing, "F0")), "FileNotFoundException: " + missing.substr(5));
    EXPECT_EQ(read(naming(store("text.finf", "no document"), "F0")),
              "FISException: Not a valid Fast Infoset document (invalid header)");
    EXPECT_EQ(read(naming(store("short.finf", document("00 3C")), "F0")),
              "FISParseException: Unexpected end of stream while parsing identifying string or index");
    const std::string bad = store("bad.xml", "<a>");
    EXPECT_TRUE(read(naming(bad, "F0")).starts_with("SAXParseException: "));
    for (const std::string& uri : {missing, bad, std::string("urn:v")}) { // one class for the cursor
        FastInfosetReader reader;
        const std::string document = naming(uri, "F0");
        reader.open(document);
        EXPECT_TRUE(failureOf([&] { reader.next(); })
                        .starts_with("FISException: Cannot open the external vocabulary that the document "
                                     "names: "))
            << uri;
    }
}

TEST_F(ExternalVocabularyTest, NamingItself) {
    const std::string self = store("self.finf", naming(uriOf("self.finf"), "F0"));
    const std::string one = store("one.finf", naming(uriOf("two.finf"), "F0"));
    store("two.finf", naming(one, "F0"));
    FastInfosetParser parser;
    EXPECT_EQ(read(parser, naming(self, "F0")), "FISException: An external vocabulary names itself: " + self);
    EXPECT_EQ(read(parser, naming(one, "F0")), "FISException: An external vocabulary names itself: " + one);
    EXPECT_EQ(read(parser, document("00 3C 00 61 FF")), "none|vocabulary|^|<a|>|$");
    // As many in a row as are allowed, and one more.
    for (int i = 1; i <= 9; ++i) {
        store(std::to_string(i),
              i == 1 ? document("00 3C 00 61 FF") : naming(uriOf(std::to_string(i - 1)), "F0"));
    }
    EXPECT_EQ(read(naming(uriOf("8"), "00 FF")), "none|external " + uriOf("8") + "|vocabulary|^|<a|>|$");
    EXPECT_EQ(read(naming(uriOf("9"), "00 FF")),
              "FISException: Too many external vocabularies name one another: " + uriOf("1"));
}

} // namespace
} // namespace Tamo::FastInfoset::Test
