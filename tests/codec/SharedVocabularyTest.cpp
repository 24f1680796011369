// Vocabularies that many documents share: the same documents as with copies, for nothing.
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "AllocationCount.h"
#include "DocumentTest.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetReader.h"
#include "Tamo/FastInfoset/SharedVocabularies.h"
#include "Tamo/NullStream.h"
#include "Tamo/StringSink.h"
#include <random>

namespace Tamo::FastInfoset::Test {
namespace {

using Pointer = std::shared_ptr<const SharedVocabulary>;

// Elements with names, namespaces, values and texts of so many kinds each.
std::string randomEvents(std::mt19937& random, int kinds) {
    const auto pick = [&](const char* stem) { return stem + std::to_string(random() % unsigned(kinds)); };
    std::string events = "^|+p=u|<{u}p:root";
    for (int i = 0; i < 12; ++i) {
        const std::string uri = pick("urn:");
        const bool isQualified = random() % 2 == 0;
        events += isQualified
                      ? "|+q=" + uri + "|<{" + uri + "}q:" + pick("n")
                      : "|<" + pick("n") + " " + pick("a") + "=\"" + (random() % 8 ? pick("v") : "") + "\"";
        events += "|'" + pick("text") + "|#" + pick("c") + (isQualified ? "|>|-q" : "|>");
    }
    return events + "|>|-p|$";
}

// The document of a writer that goes on to others.
std::string written(FastInfosetWriter& writer, const std::string& events) {
    std::string octets;
    StringSink sink(octets);
    writer.reset(sink);
    play(events, writer);
    return octets;
}

std::string read(FastInfosetParser& parser, const std::string& document) {
    TypedEventRecorder recorder;
    recorder.connectAll(parser);
    const std::string failure = failureOf([&] { parseMemory(parser, document); });
    parser.setDocumentHandler(nullptr);
    return recorder.events() + failure;
}

// One writer and one parser for all documents, with and without the vocabulary, write and read what others
// do that copy it.
TEST(SharedVocabularyTest, SameDocumentsAsWithCopies) {
    std::mt19937 random(5);
    for (const int entries : {1, 3, 40, 700}) {
        std::string all = "^|<r";
        for (int i = 0; i < entries; ++i) {
            const std::string n = std::to_string(i);
            all += "|+q=urn:" + n + "|<{urn:" + n + "}q:n" + n + "|>|-q|<n" + n + " a" + n + "=\"v" + n +
                   "\"|'text" + n + "|#c" + n + "|>";
        }
        DocumentVocabulary prepared = vocabularyOf(all + "|>|$", "urn:v");
        prepared.restrictedAlphabets().add("01");
        const Pointer shared = SharedVocabulary::of(prepared);
        for (const bool strict : {false, true}) {
            SCOPED_TRACE(std::to_string(entries) + (strict ? " strict" : ""));
            NullOutputStream null;
            FastInfosetWriter writer(null, false, DocumentVocabulary::VOC_MAP);
            writer.setStrict(strict);
            writer.useVocabulary(shared);
            GivenVocabulary loader(prepared);
            for (const auto impl : {DocumentVocabulary::VOC_VECTOR, DocumentVocabulary::VOC_MAP}) {
                FastInfosetParser parser(impl, nullptr);
                FastInfosetParser copying(impl, &loader);
                FastInfosetReader reader(nullptr);
                parser.setStrict(strict), copying.setStrict(strict), reader.setStrict(strict);
                parser.useVocabulary(shared), reader.useVocabulary(shared);
                for (int time = 0; time < 8; ++time) {
                    const std::string events = randomEvents(random, 2 * entries + 12);
                    std::ostringstream stream;
                    FastInfosetWriter other(stream, false, prepared);
                    other.setStrict(strict);
                    other.setExternalVocabulary("urn:v", prepared);
                    play(events, other);
                    const std::string document = written(writer, events);
                    ASSERT_EQ(hex(document), hex(stream.str())) << events;
                    const std::string expected = read(copying, document);
                    ASSERT_EQ(read(parser, document), expected);
                    reader.open(document);
                    std::string texts;
                    while (reader.next() != FastInfosetReader::END_DOCUMENT) {
                        texts += reader.event() == FastInfosetReader::TEXT ? reader.text() : "";
                    }
                    ASSERT_NE(texts, "");
                    if (impl == DocumentVocabulary::VOC_MAP) { // what a writer takes over
                        std::ostringstream again;
                        FastInfosetWriter rewriter(again, false, DocumentVocabulary::VOC_MAP);
                        rewriter.setStrict(strict);
                        parser.initialize(&rewriter);
                        parseMemory(parser, document);
                        ASSERT_EQ(hex(again.str()), hex(document)) << events;
                    }
                    // A document without vocabulary begins with nothing.
                    const std::string plain = FastInfoset::Test::document("00 3C 00 61 FF");
                    EXPECT_EQ(read(parser, plain), read(copying, plain));
                }
            }
        }
    }
}

TEST(SharedVocabularyTest, NamesOfPartsThatDocumentsAdd) {
    DocumentVocabulary prepared("urn:v", DocumentVocabulary::VOC_MAP);
    bool found = false;
    prepared.elementVocabulary().index(QualifiedNameEntry(0, 0, 2), found);
    add(prepared, DocumentVocabulary::LOCAL_NAME, {"a"});
    FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, nullptr);
    parser.useVocabulary(SharedVocabulary::of(prepared));
    // The element's own name is the second local name; before it there was none.
    EXPECT_EQ(read(parser, naming("urn:v", "3C 00 62 00 FF F0")),
              "none|external urn:v|vocabulary|^|<b|<b|>|>|$");
    EXPECT_EQ(read(parser, naming("urn:v", "00 FF")),
              "none|external urn:v|vocabulary|^out_of_range: index out of range");
}

TEST(SharedVocabularyTest, ContentURI) {
    DocumentVocabulary vocabulary =
        vocabularyOf(R"(^|+p=u|<{u}p:a b="c"|'text|#comment|?pi data|>|-p|$)", "");
    const std::string uri = SharedVocabulary::contentURI(vocabulary);
    EXPECT_EQ(uri, "urn:finf:2vnc6AEO0zyr96T-_DOuGA"); // for all versions and machines
    for (const auto impl : ALL_KINDS) {
        EXPECT_EQ(SharedVocabulary::contentURI(DocumentVocabulary(vocabulary, impl)), uri);
    }
    EXPECT_EQ(SharedVocabulary(vocabulary).uri(), uri);
    bool found = false;
    const std::function<void(DocumentVocabulary&)> changes[] = {
        [](auto& v) { add(v, DocumentVocabulary::PREFIX, {"x"}); },
        [](auto& v) { add(v, DocumentVocabulary::CONTENT_CHARACTER_CHUNK, {"x"}); },
        [&](auto& v) { v.elementVocabulary().index(QualifiedNameEntry(1, 1, 1), found); },
        [&](auto& v) { v.attributeVocabulary().index(QualifiedNameEntry(1, 1, 1), found); },
        [&](auto& v) { v.restrictedAlphabets().add("x"); },
        [&](auto& v) { v.algorithms().add("x"); },
        [&](auto& v) { v.algorithms().setFirstIndex(33); }};
    for (const auto& change : changes) {
        DocumentVocabulary changed(vocabulary);
        change(changed);
        EXPECT_NE(SharedVocabulary::contentURI(changed), uri);
        changed.setURI(uri);
        const std::string failure =
            "FISException: The external vocabulary has other entries than its URI says: " + uri;
        EXPECT_FAILURE(failure, SharedVocabulary{changed});
        GivenVocabulary loader(changed);
        EXPECT_FAILURE(failure, loader.vocabulary(uri));
    }
}

TEST(SharedVocabularyTest, LoaderYieldsEachOnce) {
    class Source : public ExternalVocabularyLoader {
    public:
        int loads = 0;
        DocumentVocabulary load(const std::string& uri) override {
            ++loads;
            if (uri == "urn:none") {
                throw FISException("none such", uri);
            }
            return vocabularyOf("^|<a|>|$", uri);
        }
    };
    Source source;
    SharedVocabularies vocabularies(&source);
    const Pointer added = SharedVocabulary::of(vocabularyOf("^|<b|>|$", ""));
    vocabularies.add(added);
    EXPECT_EQ(vocabularies.shared(added->uri()), added);
    const Pointer loaded = vocabularies.shared("urn:v");
    EXPECT_EQ(loaded->uri(), "urn:v");
    EXPECT_FAILURE("FISException: none such: urn:none", vocabularies.shared("urn:none"));
    FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, &vocabularies);
    const std::string document = naming("urn:v", "00 FF");
    EXPECT_EQ(read(parser, document) + read(parser, document),
              "none|external urn:v|vocabulary|^|<a|>|$none|external urn:v|vocabulary|^|<a|>|$");
    EXPECT_EQ(vocabularies.shared("urn:v"), loaded);
    EXPECT_EQ(source.loads, 2);
    parser.setExternalVocabularyLoader(&source); // anew for each document
    EXPECT_EQ(parser.getExternalVocabularyLoader(), &source);
    EXPECT_EQ(read(parser, document), read(parser, document));
    EXPECT_EQ(read(parser, naming("urn:none", "F0")), "noneFISException: none such: urn:none");
    EXPECT_EQ(source.loads, 5);
    EXPECT_FAILURE("FISException: Unknown external vocabulary: urn:v", SharedVocabularies().shared("urn:v"));
}

// What is left of a document stays when everything else has gone.
TEST(SharedVocabularyTest, TablesKeepWhatTheyAreLaidOn) {
    std::unique_ptr<Vocabulary<std::string>> pTable;
    std::unique_ptr<DocumentVocabulary> pCopy;
    {
        FastInfosetParser parser(DocumentVocabulary::VOC_MAP, nullptr);
        parser.useVocabulary(SharedVocabulary::of(vocabularyOf("^|<a|>|$", "urn:v")));
        read(parser, naming("urn:v", "3C 00 62 FF"));
        pTable.reset(parser.vocabulary().vocabulary(DocumentVocabulary::LOCAL_NAME).clone());
        pCopy = std::make_unique<DocumentVocabulary>(parser.vocabulary());
    }
    const Vocabulary<std::string>* const tables[] = {pTable.get(),
                                                     &pCopy->vocabulary(DocumentVocabulary::LOCAL_NAME)};
    for (const Vocabulary<std::string>* const p : tables) {
        EXPECT_EQ(p->size(), 3u);
        EXPECT_EQ(p->value(1), "a");
        bool found = false;
        EXPECT_EQ(p->exists("b", found), 2u);
        EXPECT_TRUE(found);
    }
    EXPECT_EQ(pCopy->elementVocabulary().size(), 3u);
}

// To begin a document with it allocates the same whatever it holds: nothing.
TEST(SharedVocabularyTest, CostsNothingForItsEntries) {
    for (const bool strict : {false, true}) {
        for (const int names : {20, 8000}) {
            DocumentVocabulary prepared("urn:v", DocumentVocabulary::VOC_MAP);
            for (int i = 0; i < names; ++i) {
                addElements(prepared, {"n" + std::to_string(i)});
            }
            const Pointer shared = SharedVocabulary::of(prepared);
            NullOutputStream null;
            FastInfosetWriter writer(null, false, DocumentVocabulary::VOC_MAP);
            writer.setStrict(strict);
            writer.useVocabulary(shared);
            FastInfosetParser parser(DocumentVocabulary::VOC_VECTOR, nullptr);
            parser.setStrict(strict);
            parser.useVocabulary(shared);
            const std::string document = written(writer, "^|<n19|>|$");
            parser.parseMemoryNP(document.data(), document.size());
            const AllocationCount allocations;
            parser.parseMemoryNP(document.data(), document.size());
            writer.reset(null);
            writer.startDocument();
            writer.emptyElement("", "n19", "");
            writer.endDocument();
            EXPECT_LE(allocations.octets(), strict ? 1000u : 0u) << names;
        }
    }
}

} // namespace
} // namespace Tamo::FastInfoset::Test
