#ifndef TAMO_FASTINFOSET_FISDEFAULTHANDLER_H
#define TAMO_FASTINFOSET_FISDEFAULTHANDLER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"

namespace Tamo::FastInfoset {

/// All handlers that a FastInfosetParser knows, with operations that do nothing: derive, override what you
/// need and hand it to FastInfosetParser::initialize.
///
/// As the content handler it receives typed data as values. A handler that wants typed data as text derives
/// from XML::DefaultHandler instead. Called on the thread that parses; throws nothing.
class TAMO_API FISDefaultHandler : public TypedChunkHandler,
                                   public XML::LexicalHandler,
                                   public XML::DTDHandler,
                                   public DocumentPropertiesHandler {
public:
    void setDocumentLocator(const XML::Locator*) override {}
    void startDocument() override {}
    void endDocument() override {}
    void startElement(const std::string&, const std::string&, const std::string&,
                      const XML::Attributes&) override {}
    void endElement(const std::string&, const std::string&, const std::string&) override {}
    void characters(const char[], int, int) override {}
    void ignorableWhitespace(const char[], int, int) override {}
    void processingInstruction(const std::string&, const std::string&) override {}
    void startPrefixMapping(const std::string&, const std::string&) override {}
    void endPrefixMapping(const std::string&) override {}
    void skippedEntity(const std::string&) override {}

    void binaryData(const char*, std::size_t) override {}
    void encodedData(Int16) override {}
    void encodedData(Int32) override {}
    void encodedData(Int64) override {}
    void encodedData(bool) override {}
    void encodedData(float) override {}
    void encodedData(double) override {}
    void encodedData(const UUID&) override {}

    /// False: the values follow one by one.
    bool startTypedChunk(const TypedChunk&) override { return false; }
    void endTypedChunk() override {}

    void startDTD(const std::string&, const std::string&, const std::string&) override {}
    void endDTD() override {}
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override {}
    void endCDATA() override {}
    void comment(const char[], int, int) override {}

    void notationDecl(const std::string&, const std::string*, const std::string*) override {}
    void unparsedEntityDecl(const std::string&, const std::string*, const std::string&,
                            const std::string&) override {}

    void setDocumentVocabulary(const DocumentVocabulary&) override {}
    /// An empty vocabulary: a handler that only receives has none.
    DocumentVocabulary& getDocumentVocabulary() override { return _documentVocabulary; }
    const DocumentVocabulary& getDocumentVocabulary() const override { return _documentVocabulary; }
    void setWriteXMLDeclaration(bool) override {}
    void setExternalVocabulary(const std::string&, const DocumentVocabulary&) override {}
    void additionalData(const std::string&, std::span<const std::byte>) override {}
    void characterEncodingScheme(const std::string&) override {}
    void standalone(bool) override {}
    void version(const std::string&) override {}

private:
    DocumentVocabulary _documentVocabulary{DocumentVocabulary::VOC_MAP};
};

} // namespace Tamo::FastInfoset

#endif
