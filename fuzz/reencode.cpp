// FastInfosetWriter fed by FastInfosetParser: the document that it writes has the events of the one read.
#include "EventRecorder.h"
#include "Failure.h"
#include "FuzzSupport.h"
#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include <array>
#include <cstring>
#include <sstream>

using namespace Tamo;
using namespace Tamo::FastInfoset;
using namespace Tamo::FastInfoset::Fuzz;

namespace {

// The events as far as a writer keeps them: no prefixes; text up to its first NUL; identifiers that are empty
// count as absent; octets that follow one another are one; CDATA borders are lost where the text is indexed.
class KeptEvents : public Test::TypedEventRecorder {
public:
    using Base = Test::TypedEventRecorder;

    bool typedBeforeDTD = false; ///< the writer defers typed values, and writes them into the declaration
    bool emptyName = false;      ///< by index 0; the writer takes the qualified name for the local name then

    void startDocument() override { Base::startDocument(); }
    void endDocument() override {
        flush();
        Base::endDocument();
    }
    void startElement(const std::string& uri, const std::string& localName, const std::string&,
                      const XML::Attributes& attributes) override {
        flush();
        emptyName = emptyName || localName.empty();
        Base::startElement(uri, localName, std::string(), attributes);
    }
    void endElement(const std::string& uri, const std::string& localName, const std::string&) override {
        flush();
        Base::endElement(uri, localName, std::string());
    }
    void characters(const char ch[], int start, int length) override {
        flush();
        Base::characters(ch, start,
                         static_cast<int>(::strnlen(ch + start, static_cast<std::size_t>(length))));
    }
    void processingInstruction(const std::string& target, const std::string& data) override {
        flush();
        Base::processingInstruction(target, data);
    }
    void comment(const char ch[], int start, int length) override {
        flush();
        Base::comment(ch, start, length);
    }
    void startDTD(const std::string& name, const std::string& publicId,
                  const std::string& systemId) override {
        typedBeforeDTD = typedBeforeDTD || _isTyped;
        flush();
        Base::startDTD(name, publicId, systemId);
    }
    void startPrefixMapping(const std::string&, const std::string&) override {}
    void endPrefixMapping(const std::string&) override {}
    void startCDATA() override {}
    void endCDATA() override {}
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override {
        Base::notationDecl(name, presentOrNull(publicId), presentOrNull(systemId));
    }
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override {
        Base::unparsedEntityDecl(name, presentOrNull(publicId), systemId, notationName);
    }
    void binaryData(const char* data, std::size_t length) override {
        _isTyped = true;
        _octets.append(data, length);
    }
    void encodedData(Int16 value) override { typed(value); }
    void encodedData(Int32 value) override { typed(value); }
    void encodedData(Int64 value) override { typed(value); }
    void encodedData(bool value) override { typed(value); }
    void encodedData(float value) override { typed(value); }
    void encodedData(double value) override { typed(value); }
    void encodedData(const UUID& value) override { typed(value); }

private:
    template<class T>
    void typed(const T& value) {
        flush();
        _isTyped = true;
        Base::encodedData(value);
    }

    void flush() {
        _isTyped = false;
        if (!_octets.empty()) {
            Base::binaryData(_octets.data(), _octets.size());
            _octets.clear();
        }
    }

    static const std::string* presentOrNull(const std::string* pIdentifier) {
        return pIdentifier && !pIdentifier->empty() ? pIdentifier : nullptr;
    }

    std::string _octets;
    bool _isTyped = false;
};

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
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    parser.setDocumentHandler(pHandler);
    events.connect(parser);
    const std::string failure =
        Test::failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    return {failure, events.events(), false, false};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    KeptEvents events;
    LargestTable largest;
    const Outcome expected = read(document, document, events, &largest);

    static constexpr std::array MAX_INDEXED{16, 0, -1};
    std::ostringstream out;
    std::ostringstream second;
    FastInfosetWriter writer(out);
    writer.setMaxIndexedStringLength(MAX_INDEXED[size % MAX_INDEXED.size()]);
    Loader loader(document);
    FastInfosetParser parser(DocumentVocabulary::VOC_MAP);
    parser.setLimits(limits());
    parser.setExternalVocabularyLoader(&loader);
    parser.initialize(&writer);
    const std::string failure =
        Test::failureOf([&] { parser.parseMemoryNP(document.data(), document.size()); });
    if (!failure.empty()) {
        return 0; // the document is broken, or holds what a writer refuses
    }
    require(!expected.failed(), "what is re-encoded can be read", expected.failure);
    if (events.typedBeforeDTD || events.emptyName || largest.size > 128) {
        return 0; // see docs/guide.md and docs/vocabularies.md
    }
    KeptEvents again;
    const Outcome actual = read(out.str(), document, again);
    require(!actual.failed(), "what is written can be read", actual.failure, expected.events);
    require(actual.events == expected.events, "the events are the same", expected.events, actual.events);

    // A writer that has written a document writes it as a new one does.
    writer.reset(second);
    FastInfosetParser fresh(DocumentVocabulary::VOC_MAP);
    fresh.setLimits(limits());
    fresh.setExternalVocabularyLoader(&loader);
    fresh.initialize(&writer);
    fresh.parseMemoryNP(document.data(), document.size());
    require(second.view() == out.view(), "the octets are the same after reset()");
    return 0;
}
