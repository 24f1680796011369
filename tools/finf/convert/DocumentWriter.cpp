#include "convert/DocumentWriter.h"
#include "Tamo/XML/Locator.h"
#include "Tamo/XML/SAXException.h"
#include "command/FinfError.h"

namespace finf {

void DocumentWriter::setDocumentLocator(const Tamo::XML::Locator* loc) {
    _pLocator = loc;
    FastInfosetWriter::setDocumentLocator(loc);
}

void DocumentWriter::skippedEntity(const std::string& name) {
    const std::string message =
        "entity " + name + " is declared outside the document, and nothing outside is read";
    if (_pLocator) {
        throw Tamo::XML::SAXParseException(message, *_pLocator);
    }
    throw FinfError(message);
}

} // namespace finf
