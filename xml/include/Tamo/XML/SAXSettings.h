#ifndef TAMO_XML_SAXSETTINGS_H
#define TAMO_XML_SAXSETTINGS_H

#include "Tamo/Export.h"
#include "Tamo/XML/DeliveryLimits.h"

namespace Tamo::XML {

class ContentHandler;
class DTDHandler;
class EntityResolver;
class ErrorHandler;
class LexicalHandler;

/// What a SAXParser is set to: who is told, what is read, and how much. Handlers are borrowed, null where
/// there is none. A plain value: one thread at a time changes it.
struct TAMO_API SAXSettings {
    EntityResolver* pEntityResolver = nullptr;
    DTDHandler* pDTDHandler = nullptr;
    ContentHandler* pContentHandler = nullptr;
    ErrorHandler* pErrorHandler = nullptr;
    LexicalHandler* pLexicalHandler = nullptr;
    void* pDeclarationHandler = nullptr;
    DeliveryLimits limits;
    bool namespaces = true;
    bool namespacePrefixes = false;
    bool externalGeneralEntities = false;
    bool externalParameterEntities = false;
    bool declarationsFirst = false;
};

} // namespace Tamo::XML

#endif
