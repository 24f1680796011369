#include "command/FinfError.h"
#include "Tamo/XML/SAXException.h"
#include <algorithm>
#include <cerrno>
#include <iostream>
#include <new>
#include <system_error>

namespace finf {

FinfError::FinfError(const std::string& what, int errorNumber)
    : std::runtime_error(what + ": " + std::generic_category().message(errorNumber)),
      _errorNumber(errorNumber) {}

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

void FinfError::report(const std::string& subject, const std::exception& exception) {
    const auto* pError = dynamic_cast<const FinfError*>(&exception);
    if (!pError || pError->errorNumber() != EPIPE) {
        std::cerr << oneLine("finf: " + subject + ": " + reason(exception)) + '\n';
    }
}

std::string FinfError::oneLine(std::string message) {
    std::replace_if(
        message.begin(), message.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return message;
}

void FinfError::explainDamage(const std::function<void()>& work) {
    const auto damaged = [](const std::exception& e) {
        return FinfError("damaged Fast Infoset document (" + reason(e) + ")");
    };
    try {
        work();
    } catch (const Tamo::LogicException& e) {
        throw damaged(e);
    } catch (const std::out_of_range& e) {
        throw damaged(e);
    }
}

} // namespace finf
