#ifndef TAMO_XML_DEFAULTHANDLER_H
#define TAMO_XML_DEFAULTHANDLER_H

#include "Tamo/Export.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/EntityResolver.h"
#include "Tamo/XML/ErrorHandler.h"
#include "Tamo/XML/LexicalHandler.h"

namespace Tamo::XML {

/// All handler interfaces with operations that do nothing: derive and override what you need.
///
/// Errors are thrown by the reader whether or not a handler is told about them. No state, so that threads may
/// share one; throws nothing.
class TAMO_API DefaultHandler : public EntityResolver,
                                public DTDHandler,
                                public ContentHandler,
                                public ErrorHandler,
                                public LexicalHandler {
public:
    /// Resolves nothing (null).
    InputSource* resolveEntity(const std::string*, const std::string&) override { return nullptr; }
    void releaseInputSource(InputSource*) override {}

    void notationDecl(const std::string&, const std::string*, const std::string*) override {}
    void unparsedEntityDecl(const std::string&, const std::string*, const std::string&,
                            const std::string&) override {}

    void setDocumentLocator(const Locator*) override {}
    void startDocument() override {}
    void endDocument() override {}
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes&) override {}
    void endElement(const std::string&, const std::string&, const std::string&) override {}
    void characters(const char[], int, int) override {}
    void ignorableWhitespace(const char[], int, int) override {}
    void processingInstruction(const std::string&, const std::string&) override {}
    void startPrefixMapping(const std::string&, const std::string&) override {}
    void endPrefixMapping(const std::string&) override {}
    void skippedEntity(const std::string&) override {}

    void warning(const SAXParseException&) override {}
    void error(const SAXParseException&) override {}
    void fatalError(const SAXParseException&) override {}

    void startDTD(const std::string&, const std::string&, const std::string&) override {}
    void endDTD() override {}
    void startEntity(const std::string&) override {}
    void endEntity(const std::string&) override {}
    void startCDATA() override {}
    void endCDATA() override {}
    void comment(const char[], int, int) override {}
};

} // namespace Tamo::XML

#endif
