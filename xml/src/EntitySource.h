#ifndef TAMO_XML_ENTITYSOURCE_H
#define TAMO_XML_ENTITYSOURCE_H

#include "Tamo/XML/EntityResolverImpl.h"
#include "Tamo/XML/InputSource.h"
#include <istream>
#include <string>

namespace Tamo::XML {

/// An entity's source for as long as it is read: given back to the resolver that it is from. Owned by one
/// parse.
class EntitySource {
public:
    /// Asks the resolver, when there is one and it has an answer, else opens the identifier. The resolver is
    /// borrowed; without a public identifier publicId is null.
    EntitySource(EntityResolver* pResolver, const std::string* publicId, const std::string& systemId);

    EntitySource(const EntitySource&) = delete;
    EntitySource& operator=(const EntitySource&) = delete;
    ~EntitySource() { release(); }

    /// The source, or null when the identifier cannot be opened.
    const InputSource* get() const { return _pSource; }

    /// The stream to read a source from, or null.
    static std::istream* streamOf(const InputSource& source);

    /// The encoding that overrides what the document says; empty when there is none.
    static std::string encodingOf(const InputSource& source);

private:
    void release();

    EntityResolverImpl _default;
    EntityResolver* _pResolver;
    InputSource* _pSource = nullptr;
};

} // namespace Tamo::XML

#endif
