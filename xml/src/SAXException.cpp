#include "Tamo/XML/SAXException.h"
#include "Tamo/XML/Locator.h"

namespace Tamo::XML {

TAMO_IMPLEMENT_EXCEPTION(SAXException, XMLException, "Tamo::XML::", "SAX exception")
TAMO_IMPLEMENT_EXCEPTION(SAXNotRecognizedException, SAXException,
                         "Tamo::XML::", "SAX identifier not recognized")
TAMO_IMPLEMENT_EXCEPTION(SAXNotSupportedException, SAXException, "Tamo::XML::", "SAX value not supported")

SAXParseException::SAXParseException(const std::string& message, const Locator& locator)
    : SAXParseException(message, locator.getPublicId(), locator.getSystemId(), locator.getLineNumber(),
                        locator.getColumnNumber()) {}

SAXParseException::SAXParseException(const std::string& message, const Locator& locator,
                                     const Exception& cause)
    : SAXException(message, cause),
      _publicId(locator.getPublicId()),
      _systemId(locator.getSystemId()),
      _lineNumber(locator.getLineNumber()),
      _columnNumber(locator.getColumnNumber()) {}

SAXParseException::SAXParseException(const std::string& message, const std::string& publicId,
                                     const std::string& systemId, int lineNumber, int columnNumber)
    : SAXException(message),
      _publicId(publicId),
      _systemId(systemId),
      _lineNumber(lineNumber),
      _columnNumber(columnNumber) {}

const char* SAXParseException::name() const noexcept {
    return "SAX parse exception";
}

const char* SAXParseException::className() const noexcept {
    return "Tamo::XML::SAXParseException";
}

Exception* SAXParseException::clone() const {
    return new SAXParseException(*this);
}

void SAXParseException::rethrow() const {
    throw *this;
}

} // namespace Tamo::XML
