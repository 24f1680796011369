#ifndef TAMO_XML_CONTENTHANDLER_H
#define TAMO_XML_CONTENTHANDLER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

class Attributes;
class Locator;

/// Receives the content of a document (SAX2).
///
/// A handler is borrowed by the reader and called on the parsing thread, in document order. Arguments are
/// valid during the call only. Strings are UTF-8. What a handler throws ends the parse and reaches its
/// caller.
class TAMO_API ContentHandler {
public:
    /// The reader's locator, before every other event; valid until the parse ends.
    virtual void setDocumentLocator(const Locator* loc) = 0;

    /// The document begins.
    virtual void startDocument() = 0;

    /// The document ends; not called when the parse fails.
    virtual void endDocument() = 0;

    /// An element begins; an absent namespace name or qualified name is the empty string.
    virtual void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                              const Attributes& attributes) = 0;

    /// An element ends.
    virtual void endElement(const std::string& uri, const std::string& localName,
                            const std::string& qname) = 0;

    /// Character data: `length` octets from `ch + start`, not NUL-terminated.
    virtual void characters(const char ch[], int start, int length) = 0;

    /// White space in element content, told apart by readers that know the content model.
    virtual void ignorableWhitespace(const char ch[], int start, int length) = 0;

    /// A processing instruction; data is empty when it has none.
    virtual void processingInstruction(const std::string& target, const std::string& data) = 0;

    /// A namespace declaration of the next element; an empty URI undeclares.
    virtual void startPrefixMapping(const std::string& prefix, const std::string& uri) = 0;

    /// The end of a namespace declaration, after the element's endElement.
    virtual void endPrefixMapping(const std::string& prefix) = 0;

    /// A reference to an entity that the reader did not read.
    virtual void skippedEntity(const std::string& name) = 0;

    virtual ~ContentHandler() = default;
};

} // namespace Tamo::XML

#endif
