#ifndef TAMO_XML_ENTITYRESOLVERIMPL_H
#define TAMO_XML_ENTITYRESOLVERIMPL_H

#include "Tamo/Export.h"
#include "Tamo/XML/EntityResolver.h"

namespace Tamo::XML {

/// Opens entities through URIStreamOpener::defaultOpener().
///
/// Stateless and thread-safe, as far as the openers are that it asks; every source given out owns its stream
/// until it is given back.
class TAMO_API EntityResolverImpl : public EntityResolver {
public:
    /// A source with an open byte stream, or null when the identifier cannot be opened.
    InputSource* resolveEntity(const std::string* publicId, const std::string& systemId) override;

    /// Closes the stream and deletes the source.
    void releaseInputSource(InputSource* pSource) override;
};

} // namespace Tamo::XML

#endif
