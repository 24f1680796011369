#include "FinfError.h"
#include "Tamo/XML/SAXException.h"
#include <new>
#include <system_error>

namespace finf {

FinfError::FinfError(const std::string& what, int errorNumber)
    : std::runtime_error(what + ": " + std::generic_category().message(errorNumber)) {}

std::string FinfError::reason(const std::exception& exception) {
    if (const auto* pException = dynamic_cast<const Tamo::XML::SAXParseException*>(&exception)) {
        return "line " + std::to_string(pException->getLineNumber()) + ", column " +
               std::to_string(pException->getColumnNumber()) + ": " + pException->message();
    }
    if (const auto* pException = dynamic_cast<const Tamo::Exception*>(&exception)) {
        return pException->message().empty() ? pException->name() : pException->message();
    }
    if (dynamic_cast<const std::bad_alloc*>(&exception)) {
        return "out of memory";
    }
    return exception.what();
}

} // namespace finf
