#ifndef TAMO_XML_LEXICALHANDLER_H
#define TAMO_XML_LEXICALHANDLER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Receives comments, CDATA sections and the document type declaration (SAX2).
///
/// A handler is borrowed by the reader, which gets it by XMLReader::setLexicalHandler() or as the property
/// XMLReader::PROPERTY_LEXICAL_HANDLER, and called on the parsing thread. What it throws ends the parse and
/// reaches its caller.
class TAMO_API LexicalHandler {
public:
    /// The document type declaration begins; absent identifiers are empty strings.
    virtual void startDTD(const std::string& name, const std::string& publicId,
                          const std::string& systemId) = 0;

    /// The document type declaration ends.
    virtual void endDTD() = 0;

    /// An entity begins.
    virtual void startEntity(const std::string& name) = 0;

    /// An entity ends.
    virtual void endEntity(const std::string& name) = 0;

    /// A CDATA section begins; its text arrives through ContentHandler::characters.
    virtual void startCDATA() = 0;

    /// A CDATA section ends.
    virtual void endCDATA() = 0;

    /// A comment: `length` octets from `ch + start`, not NUL-terminated.
    virtual void comment(const char ch[], int start, int length) = 0;

    virtual ~LexicalHandler() = default;
};

} // namespace Tamo::XML

#endif
