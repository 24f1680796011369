#ifndef TAMO_XML_DTDHANDLER_H
#define TAMO_XML_DTDHANDLER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Receives notations and unparsed entities (SAX2).
///
/// A handler is borrowed by the reader and called on the parsing thread. What it throws ends the parse and
/// reaches its caller.
class TAMO_API DTDHandler {
public:
    /// A notation declaration; absent identifiers are null pointers.
    virtual void notationDecl(const std::string& name, const std::string* publicId,
                              const std::string* systemId) = 0;

    /// The declaration of an unparsed entity; an absent public identifier is a null pointer.
    virtual void unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                    const std::string& systemId, const std::string& notationName) = 0;

    virtual ~DTDHandler() = default;
};

} // namespace Tamo::XML

#endif
