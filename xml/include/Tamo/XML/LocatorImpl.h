#ifndef TAMO_XML_LOCATORIMPL_H
#define TAMO_XML_LOCATORIMPL_H

#include "Tamo/Export.h"
#include "Tamo/XML/Locator.h"

namespace Tamo::XML {

/// A place that can be set, and kept after the parse that it was copied from.
///
/// A value; used by one thread at a time.
class TAMO_API LocatorImpl : public Locator {
public:
    /// An unknown place.
    LocatorImpl() = default;

    /// The place where the other locator stands now.
    explicit LocatorImpl(const Locator& locator)
        : _publicId(locator.getPublicId()),
          _systemId(locator.getSystemId()),
          _lineNumber(locator.getLineNumber()),
          _columnNumber(locator.getColumnNumber()) {}

    std::string getPublicId() const override { return _publicId; }
    std::string getSystemId() const override { return _systemId; }
    int getLineNumber() const override { return _lineNumber; }
    int getColumnNumber() const override { return _columnNumber; }

    /// Sets the public identifier.
    void setPublicId(const std::string& publicId) { _publicId = publicId; }
    /// Sets the system identifier.
    void setSystemId(const std::string& systemId) { _systemId = systemId; }
    /// Sets the line, the first being 1; -1 for unknown.
    void setLineNumber(int lineNumber) { _lineNumber = lineNumber; }
    /// Sets the column, the first being 1; -1 for unknown.
    void setColumnNumber(int columnNumber) { _columnNumber = columnNumber; }

private:
    std::string _publicId;
    std::string _systemId;
    int _lineNumber = -1;
    int _columnNumber = -1;
};

} // namespace Tamo::XML

#endif
