#ifndef TAMO_XML_LOCATOR_H
#define TAMO_XML_LOCATOR_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Where a reader stands in its input.
///
/// A reader hands its locator to ContentHandler::setDocumentLocator and keeps owning it; what it says is
/// valid only inside handler calls, on the thread that parses. Implementations do not throw.
class TAMO_API Locator {
public:
    /// The public identifier of the entity being read; empty when unknown.
    virtual std::string getPublicId() const = 0;

    /// The system identifier of the entity being read; empty when unknown.
    virtual std::string getSystemId() const = 0;

    /// The line where the current event begins, the first being 1; -1 when unknown.
    virtual int getLineNumber() const = 0;

    /// The column where the current event begins, the first being 1; -1 when unknown.
    virtual int getColumnNumber() const = 0;

    virtual ~Locator() = default;
};

} // namespace Tamo::XML

#endif
