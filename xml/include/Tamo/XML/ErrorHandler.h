#ifndef TAMO_XML_ERRORHANDLER_H
#define TAMO_XML_ERRORHANDLER_H

#include "Tamo/Export.h"

namespace Tamo::XML {

class SAXParseException;

/// Is told about errors (SAX2), before the reader throws them.
///
/// A handler is borrowed by the reader and called on the parsing thread; it may throw an exception of its
/// own.
class TAMO_API ErrorHandler {
public:
    /// Something worth knowing; the parse goes on.
    virtual void warning(const SAXParseException& exception) = 0;

    /// A recoverable error; the parse goes on.
    virtual void error(const SAXParseException& exception) = 0;

    /// The document is not well-formed; the reader throws the exception after this call.
    virtual void fatalError(const SAXParseException& exception) = 0;

    virtual ~ErrorHandler() = default;
};

} // namespace Tamo::XML

#endif
