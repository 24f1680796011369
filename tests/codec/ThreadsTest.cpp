// Many threads at a time, each with objects of its own over one vocabulary that none changes. Run under the
// thread sanitizer by the preset "tsan".
#include "DocumentTest.h"
#include "Tamo/FastInfoset/Converter.h"
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

// A vocabulary that is copied, and one that all threads share, which outlives the one that has made it.
TEST(ThreadsTest, ObjectsOfEachThreadOverOneVocabulary) {
    DocumentVocabulary prepared("urn:v", DocumentVocabulary::VOC_MAP);
    addElements(prepared, {"d"});
    add(prepared, DocumentVocabulary::NAMESPACE_NAME, {"v"});
    prepared.restrictedAlphabets().add("0123456789ABCDEF");
    auto pShared = SharedVocabulary::of(prepared);
    const auto events = [](const auto& vocabulary, auto use) {
        const std::string octets = document(
            [&](FastInfosetWriter& writer) {
                writer.useVocabulary(vocabulary);
                play(EVERY_EVENT, writer);
            },
            DocumentVocabulary::VOC_MAP);
        FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
        TypedEventRecorder recorder;
        recorder.connectAll(parser);
        use(parser);
        parser.parseMemory(octets);
        return recorder.events();
    };
    const auto copying = [&events](const DocumentVocabulary& shared) {
        GivenVocabulary loader(shared);
        return events(shared, [&](auto& parser) { parser.setExternalVocabularyLoader(&loader); });
    };
    const auto sharing = [&events](const std::shared_ptr<const SharedVocabulary>& pVocabulary) {
        return events(pVocabulary, [&](auto& parser) { parser.useVocabulary(pVocabulary); });
    };
    const std::string expected = copying(prepared);
    std::vector<std::shared_ptr<const SharedVocabulary>> shares(THREADS, pShared);
    pShared.reset();
    inThreads([&](int thread) {
        ASSERT_EQ(copying(prepared), expected);
        ASSERT_EQ(sharing(shares[static_cast<std::size_t>(thread)]), expected);
    });
}

// A copy shares nothing with what it was copied from, the alphabets with their number included.
TEST(ThreadsTest, CopiesOfOneVocabularyAreChangedAtTheSameTime) {
    DocumentVocabulary prepared(DocumentVocabulary::VOC_HASH);
    prepared.restrictedAlphabets().add("abc");
    const DocumentVocabulary& shared = prepared;
    inThreads([&](int thread) {
        DocumentVocabulary copy(shared);
        for (int i = 0; i < 50; ++i) {
            copy.restrictedAlphabets().add("xyz");
            add(copy, DocumentVocabulary::PREFIX, {"p" + std::to_string(thread * 50 + i)});
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
