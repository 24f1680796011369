#ifndef TAMO_XML_SAXEXCEPTION_H
#define TAMO_XML_SAXEXCEPTION_H

/// @file
/// The four exception classes of SAX2. Values like every Tamo::Exception; not thread-bound.

#include "Tamo/Export.h"
#include "Tamo/XML/XMLException.h"
#include <string>

namespace Tamo::XML {

class Locator;

/// Base of the SAX exceptions.
TAMO_DECLARE_EXCEPTION(SAXException, XMLException)
/// A reader does not know the feature or property that the message names.
TAMO_DECLARE_EXCEPTION(SAXNotRecognizedException, SAXException)
/// A reader knows the feature or property but cannot take the value.
TAMO_DECLARE_EXCEPTION(SAXNotSupportedException, SAXException)

/// XML text is not well-formed, or an entity cannot be read; knows the place. Several threads may read one
/// object.
class TAMO_API SAXParseException : public SAXException {
public:
    /// An exception at the place where the locator stands now.
    SAXParseException(const std::string& message, const Locator& locator);

    /// An exception at the place where the locator stands now, with a copy of its cause.
    SAXParseException(const std::string& message, const Locator& locator, const Exception& cause);

    /// An exception at an explicit place; line and column start at 1, -1 stands for unknown.
    SAXParseException(const std::string& message, const std::string& publicId, const std::string& systemId,
                      int lineNumber, int columnNumber);

    /// The public identifier of the entity that holds the place; empty when unknown.
    const std::string& getPublicId() const noexcept { return _publicId; }

    /// The system identifier of the entity that holds the place; empty when unknown.
    const std::string& getSystemId() const noexcept { return _systemId; }

    /// The line of the place, the first being 1; -1 when unknown.
    int getLineNumber() const noexcept { return _lineNumber; }

    /// The column of the place, the first being 1; -1 when unknown.
    int getColumnNumber() const noexcept { return _columnNumber; }

    const char* name() const noexcept override;
    const char* className() const noexcept override;
    Exception* clone() const override;
    [[noreturn]] void rethrow() const override;

private:
    std::string _publicId;
    std::string _systemId;
    int _lineNumber;
    int _columnNumber;
};

} // namespace Tamo::XML

#endif
