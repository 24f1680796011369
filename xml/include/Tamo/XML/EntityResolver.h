#ifndef TAMO_XML_ENTITYRESOLVER_H
#define TAMO_XML_ENTITYRESOLVER_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

class InputSource;

/// Finds the input source of an external entity (SAX2).
///
/// A resolver is borrowed by the reader and called on the parsing thread. What it throws ends the parse and
/// reaches its caller.
class TAMO_API EntityResolver {
public:
    /// A source for the entity, or null to let the reader open the system identifier itself; throw to forbid
    /// it. The public identifier may be null. The source belongs to the resolver and lives until the reader
    /// gives it back by releaseInputSource.
    virtual InputSource* resolveEntity(const std::string* publicId, const std::string& systemId) = 0;

    /// Takes back a source that resolveEntity gave out.
    virtual void releaseInputSource(InputSource* pSource) = 0;

    virtual ~EntityResolver() = default;
};

} // namespace Tamo::XML

#endif
