// Many threads at a time, each with objects of its own over one vocabulary that none changes. Run under the
// thread sanitizer by the preset "tsan".
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/MemoryStream.h"
#include <thread>
#include <utility>

namespace Tamo::FastInfoset::Test {
namespace {

constexpr int THREADS = 6;
constexpr int TIMES = 20;

// Runs use in many threads, which each call it again and again.
void inThreads(const std::function<void(int thread)>& use) {
    std::vector<std::thread> threads;
    std::vector<std::string> failures(THREADS);
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&use, &failures, i] {
            for (int time = 0; time < TIMES && failures[static_cast<std::size_t>(i)].empty(); ++time) {
                failures[static_cast<std::size_t>(i)] = failureOf([&] { use(i); });
            }
        });
    }
    for (int i = 0; i < THREADS; ++i) {
        threads[static_cast<std::size_t>(i)].join();
        EXPECT_EQ(failures[static_cast<std::size_t>(i)], "");
    }
}

class SharedLoader : public ExternalVocabularyLoader {
public:
    explicit SharedLoader(const DocumentVocabulary& vocabulary) : _vocabulary(vocabulary) {}
    DocumentVocabulary load(const std::string&) override { return _vocabulary; }

private:
    const DocumentVocabulary& _vocabulary;
};

TEST(ThreadsTest, ObjectsOfEachThreadOverOneVocabulary) {
    DocumentVocabulary prepared(DocumentVocabulary::VOC_MAP);
    bool found = false;
    prepared.index(DocumentVocabulary::LOCAL_NAME, "d", found);
    prepared.index(DocumentVocabulary::NAMESPACE_NAME, "v", found);
    prepared.restrictedAlphabets().add("0123456789ABCDEF");
    const DocumentVocabulary& shared = prepared;
    const auto written = [&shared] {
        std::ostringstream out;
        FastInfosetWriter writer(out, false, shared);
        writer.setExternalVocabulary("urn:shared", shared);
        play(EVERY_EVENT, writer);
        return out.str();
    };
    const auto events = [&shared](const std::string& document) {
        SharedLoader loader(shared);
        FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
        parser.setExternalVocabularyLoader(&loader);
        TypedEventRecorder recorder;
        recorder.connectAll(parser);
        parser.parseMemoryNP(document.data(), document.size());
        return recorder.events();
    };
    const std::string document = written();
    const std::string expected = events(document);
    inThreads([&](int) {
        ASSERT_TRUE(written() == document);
        ASSERT_EQ(events(document), expected);
    });
}

// What documents share is used by all threads at once, and outlives the one that has made it.
TEST(ThreadsTest, OneSharedVocabulary) {
    DocumentVocabulary prepared("urn:v", DocumentVocabulary::VOC_MAP);
    bool found = false;
    const unsigned int name = prepared.index(DocumentVocabulary::LOCAL_NAME, "d", found);
    prepared.elementVocabulary().index(QualifiedNameEntry(0, 0, name), found);
    prepared.restrictedAlphabets().add("0123456789ABCDEF");
    auto pShared = SharedVocabulary::of(prepared);
    const auto events = [](const std::shared_ptr<const SharedVocabulary>& pVocabulary) {
        std::ostringstream out;
        FastInfosetWriter writer(out, false, DocumentVocabulary::VOC_MAP);
        writer.useVocabulary(pVocabulary);
        play(EVERY_EVENT, writer);
        const std::string document = out.str();
        FastInfosetParser parser(DocumentVocabulary::VOC_MAP, nullptr);
        parser.useVocabulary(pVocabulary);
        TypedEventRecorder recorder;
        recorder.connectAll(parser);
        parser.parseMemoryNP(document.data(), document.size());
        return recorder.events();
    };
    const std::string expected = events(pShared);
    std::vector<std::shared_ptr<const SharedVocabulary>> shares(THREADS, pShared);
    pShared.reset();
    inThreads([&](int thread) { ASSERT_EQ(events(shares[static_cast<std::size_t>(thread)]), expected); });
}

// A copy shares nothing with what it was copied from, the alphabets with their number included.
TEST(ThreadsTest, CopiesOfOneVocabularyAreChangedAtTheSameTime) {
    DocumentVocabulary prepared(DocumentVocabulary::VOC_HASH);
    prepared.restrictedAlphabets().add("abc");
    const DocumentVocabulary& shared = prepared;
    inThreads([&](int thread) {
        DocumentVocabulary copy(shared);
        bool found = false;
        for (int i = 0; i < 50; ++i) {
            copy.restrictedAlphabets().add("xyz");
            copy.index(DocumentVocabulary::PREFIX, "p" + std::to_string(thread * 50 + i), found);
        }
        copy.restrictedAlphabets().alphabet(16) = RestrictedAlphabet("de");
        ASSERT_EQ(copy.restrictedAlphabets().alphabets().size(), 66u);
        ASSERT_EQ(std::as_const(copy).restrictedAlphabets().alphabet(16).characters(), "de");
        ASSERT_EQ(shared.restrictedAlphabets().alphabet(16).characters(), "abc");
        const DocumentVocabulary announced = copy - shared;
        ASSERT_EQ(announced.restrictedAlphabets().alphabets().size(), 50u);
    });
}

TEST(ThreadsTest, Conversions) {
    const std::string xml =
        "<!DOCTYPE r [<!ENTITY e 'text'>]><r xmlns='u' xmlns:p='v'><p:a p:b='1'>&e;</p:a></r>";
    const auto converted = [&xml] {
        MemoryInputStream in(xml.data(), xml.size());
        std::stringstream document;
        std::ostringstream out;
        Converter::convertToFIS(in, document, 16, 0);
        Converter::convertToXML(document, out, 0);
        return out.str();
    };
    const std::string expected = converted();
    inThreads([&](int) { ASSERT_EQ(converted(), expected); });
}

} // namespace
} // namespace Tamo::FastInfoset::Test
