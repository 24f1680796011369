#ifndef TAMO_FASTINFOSET_FISFILTER_H
#define TAMO_FASTINFOSET_FISFILTER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// A filter between a FastInfosetParser and what takes its events: derive, override what the filter is to
/// change, and hand it to FastInfosetParser::initialize. Everything is passed on, typed data as values.
///
/// Elements that drops() names go with all that is in them: attributes, text, typed data, comments,
/// instructions. By default typed values of one type on both sides of one become one array, in the strict
/// mode they stay apart. What overrides an event and passes it on calls that of this class. In the strict
/// mode typed data comes as a whole chunk first: a filter that is to see its values one by one overrides
/// startTypedChunk() to return false. Borrows what it passes on to; called on the thread that parses; throws
/// what that throws.
class TAMO_API FISFilter : public TypedChunkHandler,
                           public XML::LexicalHandler,
                           public XML::DTDHandler,
                           public DocumentPropertiesHandler {
public:
    /// In front of a handler of everything: a FastInfosetWriter, a FISDefaultHandler, another filter.
    template<class Handler>
    explicit FISFilter(Handler& next) : FISFilter(next, next, next, next) {}

    /// The same by its address, as it has to be for a filter of the very class: C++ takes a reference to one
    /// for a copy.
    template<class Handler>
    explicit FISFilter(Handler* pNext) : FISFilter(*pNext, *pNext, *pNext, *pNext) {}

    FISFilter(const FISFilter&) = delete;
    FISFilter& operator=(const FISFilter&) = delete;

    void setDocumentLocator(const XML::Locator* pLocator) override;
    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void skippedEntity(const std::string& name) override;

    void binaryData(const char* data, std::size_t length) override;
    void encodedData(Int16 value) override;
    void encodedData(Int32 value) override;
    void encodedData(Int64 value) override;
    void encodedData(bool value) override;
    void encodedData(float value) override;
    void encodedData(double value) override;
    void encodedData(const UUID& value) override;
    bool startTypedChunk(const TypedChunk& chunk) override;
    void endTypedChunk() override;

    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

    void setDocumentVocabulary(const DocumentVocabulary& vocabulary) override;
    DocumentVocabulary& getDocumentVocabulary() override;
    const DocumentVocabulary& getDocumentVocabulary() const override;
    void setWriteXMLDeclaration(bool flag) override;
    void setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) override;
    void additionalData(const std::string& id, std::span<const std::byte> data) override;
    void characterEncodingScheme(const std::string& scheme) override;
    void standalone(bool isStandalone) override;
    void version(const std::string& version) override;

protected:
    /// Whether an element goes, with all that is in it; none does at first. Asked for each element that is in
    /// none that goes. A root element that goes leaves no document behind.
    virtual bool drops(const std::string& uri, const std::string& localName,
                       const XML::Attributes& attributes);

    /// Whether an element that goes is open.
    bool isDropping() const noexcept { return _dropped != 0; }

private:
    FISFilter(TypedChunkHandler& content, XML::LexicalHandler& lexical, XML::DTDHandler& dtd,
              DocumentPropertiesHandler& document) noexcept
        : _content(content), _lexical(lexical), _dtd(dtd), _document(document) {}

    // A prefix and a namespace name, both in _strings.
    using Mapping = std::pair<const std::string&, const std::string&>;

    void forgetMappings() noexcept {
        _mappings.clear();
        _strings.clear();
    }

    // Hands an event on, unless it is in an element that goes.
    template<class Event>
    void pass(const Event& event) {
        if (_dropped == 0) {
            event();
        }
    }

    TypedChunkHandler& _content;
    XML::LexicalHandler& _lexical;
    XML::DTDHandler& _dtd;
    DocumentPropertiesHandler& _document;
    std::size_t _dropped = 0;       // how many open elements go
    std::vector<Mapping> _mappings; // of the next element, of which it is not known yet whether it goes
    std::set<std::string> _strings; // each once, which a document can have said as often as it likes
    bool _dropsEnds = false;        // of mappings, which those of an element that has gone are
};

} // namespace Tamo::FastInfoset

#endif
