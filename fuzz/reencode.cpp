// FastInfosetWriter fed by FastInfosetParser, through filters, too: the document that it writes has the
// events of the one read.
#include "Failure.h"
#include "FuzzSupport.h"
#include "KeptEvents.h"
#include "Tamo/FastInfoset/FISFilter.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <array>
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// The largest table that the header announces beyond the built-in entries.
class LargestTable : public FISDocumentHandler {
public:
    std::size_t size = 0;

    void setDocumentVocabulary(const DocumentVocabulary& vocabulary) override {
        for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
            size = std::max(size, vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id)).size());
        }
    }
    DocumentVocabulary& getDocumentVocabulary() override {
        throw NotImplementedException("getDocumentVocabulary");
    }
    const DocumentVocabulary& getDocumentVocabulary() const override {
        throw NotImplementedException("getDocumentVocabulary");
    }
    void setWriteXMLDeclaration(bool) override {}
    void setExternalVocabulary(const std::string&, const DocumentVocabulary&) override {}
};

Outcome read(std::string_view document, std::string_view original, KeptEvents& events,
             FISDocumentHandler* pHandler = nullptr) {
    Loader loader(original);
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setStrict(isForStrictMode(original));
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    parser.setDocumentHandler(pHandler);
    events.connect(parser);
    const std::string failure =
        Test::failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    return {failure, events.events(), false, false, 0};
}

// Elements with names of odd length go.
class Dropping : public FISFilter {
public:
    using FISFilter::FISFilter;
    bool hasRoot = false;

protected:
    bool drops(const std::string&, const std::string& localName, const XML::Attributes&) override {
        const bool isDropped = localName.size() % 2 != 0;
        hasRoot = hasRoot || !isDropped;
        return isDropped;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    KeptEvents events;
    LargestTable largest;
    const Outcome expected = read(document, document, events, &largest);

    static constexpr std::array MAX_INDEXED{16, 0, -1};
    std::ostringstream out;
    std::ostringstream second;
    std::ostringstream rest;
    FastInfosetWriter writer(out);
    writer.setStrict(isForStrictMode(document));
    writer.setMaxIndexedStringLength(MAX_INDEXED[size % MAX_INDEXED.size()]);
    Loader loader(document);
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setStrict(isForStrictMode(document));
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&writer);
    const std::string failure =
        Test::failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    if (!failure.empty()) {
        return 0; // the document is broken, or holds what a writer refuses
    }
    require(!expected.failed(), "what is re-encoded can be read", expected.failure);
    if (events.typedBeforeDTD || events.emptyName || (largest.size > 128 && !isForStrictMode(document))) {
        return 0; // see docs/guide.md and docs/vocabularies.md
    }
    KeptEvents again;
    const Outcome actual = read(out.str(), document, again);
    require(!actual.failed(), "what is written can be read", actual.failure, expected.events);
    require(actual.events == expected.events, "the events are the same", expected.events, actual.events);

    // A writer that has written a document writes it as a new one does, behind a filter as without one.
    const auto filtered = [&](auto& filter, std::ostringstream& octets) {
        writer.reset(octets);
        FastInfosetParser fresh(DocumentVocabulary::VOC_MAP);
        fresh.setStrict(isForStrictMode(document));
        fresh.setLimits(limits());
        fresh.setExternalVocabularyLoader(&loader);
        fresh.initialize(&filter);
        fresh.parseMemoryNP(document.data(), document.size());
    };
    FISFilter passing(writer);
    filtered(passing, second);
    require(second.view() == out.view(), "the octets are the same after reset()");
    Dropping dropping(writer);
    const std::string refusal = Test::failureOf([&] { filtered(dropping, rest); });
    if (refusal.empty() && dropping.hasRoot) {
        const Outcome left = read(rest.str(), document, again);
        require(!left.failed(), "what a filter leaves can be read", left.failure, expected.events);
    }
    return 0;
}
