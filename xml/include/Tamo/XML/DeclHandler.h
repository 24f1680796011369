#ifndef TAMO_XML_DECLHANDLER_H
#define TAMO_XML_DECLHANDLER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Receives element, attribute and entity declarations (SAX2). The readers of this library keep it
/// (XMLReader::setDeclHandler) and report nothing to it: Fast Infoset has no such declarations, and SAXParser
/// passes none on. It is for readers of the application.
///
/// A handler is borrowed by the reader and called on the parsing thread. What it throws ends the parse and
/// reaches its caller.
class TAMO_API DeclHandler {
public:
    /// An element type declaration; white space is removed from the model.
    virtual void elementDecl(const std::string& name, const std::string& model) = 0;

    /// An attribute declaration; null where the mode ("#REQUIRED" and the like) or the default is absent.
    virtual void attributeDecl(const std::string& elementName, const std::string& attributeName,
                               const std::string& type, const std::string* mode,
                               const std::string* value) = 0;

    /// An internal entity; the name of a parameter entity begins with "%".
    virtual void internalEntityDecl(const std::string& name, const std::string& value) = 0;

    /// An external parsed entity; null where the public identifier is absent.
    virtual void externalEntityDecl(const std::string& name, const std::string* publicId,
                                    const std::string& systemId) = 0;

    virtual ~DeclHandler() = default;
};

} // namespace Tamo::XML

#endif
