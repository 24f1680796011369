#include "Tamo/Exception.h"

namespace Tamo {

Exception::Exception(const std::string& message, int code) : _message(message), _code(code) {}

Exception::Exception(const std::string& message, const std::string& argument, int code)
    : _message(message), _code(code) {
    if (!argument.empty()) {
        _message.append(": ").append(argument);
    }
}

Exception::Exception(const std::string& message, const Exception& nested, int code)
    : _message(message), _pNested(nested.clone()), _code(code) {}

Exception::Exception(int code) : _code(code) {}

Exception::Exception(const Exception& other)
    : std::exception(other),
      _message(other._message),
      _pNested(other._pNested ? other._pNested->clone() : nullptr),
      _code(other._code) {}

Exception& Exception::operator=(const Exception& other) {
    if (this != &other) {
        std::unique_ptr<Exception> pNested(other._pNested ? other._pNested->clone() : nullptr);
        _message = other._message;
        _pNested = std::move(pNested);
        _code = other._code;
        forgetText();
    }
    return *this;
}

Exception::~Exception() {
    delete _pText.load();
}

const char* Exception::name() const noexcept {
    return "Exception";
}

const char* Exception::className() const noexcept {
    return "Tamo::Exception";
}

// Made when it is first asked for, because the text is that of the whole object; threads that ask at the same
// time see the same text.
const char* Exception::what() const noexcept {
    const std::string* pText = _pText.load();
    if (!pText) {
        try {
            auto pNew = std::make_unique<const std::string>(fullText());
            if (_pText.compare_exchange_strong(pText, pNew.get())) {
                pText = pNew.release();
            }
        } catch (...) {
            return _message.empty() ? name() : _message.c_str();
        }
    }
    return pText->c_str();
}

std::string Exception::displayText() const {
    std::string text(name());
    if (_message.starts_with(text + ": ")) {
        return _message;
    }
    if (!_message.empty()) {
        text.append(": ").append(_message);
    }
    return text;
}

Exception* Exception::clone() const {
    return new Exception(*this);
}

void Exception::rethrow() const {
    throw *this;
}

TAMO_IMPLEMENT_EXCEPTION(LogicException, Exception, "Tamo::", "Logic exception")
TAMO_IMPLEMENT_EXCEPTION(AssertionViolationException, LogicException, "Tamo::", "Assertion violation")
TAMO_IMPLEMENT_EXCEPTION(NullPointerException, LogicException, "Tamo::", "Null pointer")
TAMO_IMPLEMENT_EXCEPTION(InvalidArgumentException, LogicException, "Tamo::", "Invalid argument")
TAMO_IMPLEMENT_EXCEPTION(InvalidAccessException, LogicException, "Tamo::", "Invalid access")
TAMO_IMPLEMENT_EXCEPTION(NotImplementedException, LogicException, "Tamo::", "Not implemented")
TAMO_IMPLEMENT_EXCEPTION(RuntimeException, Exception, "Tamo::", "Runtime exception")
TAMO_IMPLEMENT_EXCEPTION(NotFoundException, RuntimeException, "Tamo::", "Not found")
TAMO_IMPLEMENT_EXCEPTION(UnknownURISchemeException, RuntimeException, "Tamo::", "Unknown URI scheme")
TAMO_IMPLEMENT_EXCEPTION(ExistsException, RuntimeException, "Tamo::", "Exists already")
TAMO_IMPLEMENT_EXCEPTION(PoolOverflowException, RuntimeException, "Tamo::", "Pool overflow")
TAMO_IMPLEMENT_EXCEPTION(DataException, RuntimeException, "Tamo::", "Data error")
TAMO_IMPLEMENT_EXCEPTION(SyntaxException, DataException, "Tamo::", "Syntax error")
TAMO_IMPLEMENT_EXCEPTION(IOException, RuntimeException, "Tamo::", "I/O error")
TAMO_IMPLEMENT_EXCEPTION(FileNotFoundException, IOException, "Tamo::", "File not found")
TAMO_IMPLEMENT_EXCEPTION(OpenFileException, IOException, "Tamo::", "Cannot open file")

} // namespace Tamo
