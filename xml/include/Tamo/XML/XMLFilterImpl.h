#ifndef TAMO_XML_XMLFILTERIMPL_H
#define TAMO_XML_XMLFILTERIMPL_H

#include "Tamo/Export.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/EntityResolver.h"
#include "Tamo/XML/ErrorHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/XMLFilter.h"

namespace Tamo::XML {

/// A filter that passes everything on: derive and override what the filter is to change.
///
/// `parse` puts the filter in place of the parent's handlers and gives the parent its own handlers back when
/// it is done, also when it throws. Features and properties other than the lexical handler are the parent's.
/// Without a parent, features and properties are not recognised and `parse` throws NullPointerException.
/// Parent and handlers are borrowed. One thread at a time.
class TAMO_API XMLFilterImpl : public XMLFilter,
                               public EntityResolver,
                               public DTDHandler,
                               public ContentHandler,
                               public ErrorHandler,
                               public LexicalHandler {
public:
    /// A filter over the parent, which may be null and set later.
    explicit XMLFilterImpl(XMLReader* pParent = nullptr) : _pParent(pParent) {}

    XMLReader* getParent() const override { return _pParent; }
    void setParent(XMLReader* pParent) override { _pParent = pParent; }

    void setEntityResolver(EntityResolver* pResolver) override { _pEntityResolver = pResolver; }
    EntityResolver* getEntityResolver() const override { return _pEntityResolver; }
    void setDTDHandler(DTDHandler* pDTDHandler) override { _pDTDHandler = pDTDHandler; }
    DTDHandler* getDTDHandler() const override { return _pDTDHandler; }
    void setContentHandler(ContentHandler* pContentHandler) override { _pContentHandler = pContentHandler; }
    ContentHandler* getContentHandler() const override { return _pContentHandler; }
    void setErrorHandler(ErrorHandler* pErrorHandler) override { _pErrorHandler = pErrorHandler; }
    ErrorHandler* getErrorHandler() const override { return _pErrorHandler; }
    /// The filter's own, not its parent's.
    LexicalHandler* getLexicalHandler() const { return _pLexicalHandler; }
    void setFeature(const std::string& name, bool value) override;
    bool getFeature(const std::string& name) const override;
    void setProperty(const std::string& name, const std::string& value) override;
    void setProperty(const std::string& name, void* value) override;
    void* getProperty(const std::string& name) const override;
    using XMLFilter::parse;
    void parse(InputSource* pSource) override;
    void parse(const std::string& systemId) override;
    void parseMemoryNP(const char* xml, std::size_t size) override;

    InputSource* resolveEntity(const std::string* publicId, const std::string& systemId) override;
    void releaseInputSource(InputSource* pSource) override;

    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

    void setDocumentLocator(const Locator* loc) override;
    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Attributes& attributes) override;
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    void skippedEntity(const std::string& name) override;

    void warning(const SAXParseException& exception) override;
    void error(const SAXParseException& exception) override;
    void fatalError(const SAXParseException& exception) override;

    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

private:
    class Connection;

    XMLReader* _pParent;
    EntityResolver* _pEntityResolver = nullptr;
    DTDHandler* _pDTDHandler = nullptr;
    ContentHandler* _pContentHandler = nullptr;
    ErrorHandler* _pErrorHandler = nullptr;
    LexicalHandler* _pLexicalHandler = nullptr;
};

} // namespace Tamo::XML

#endif
