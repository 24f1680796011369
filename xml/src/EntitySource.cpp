#include "EntitySource.h"

namespace Tamo::XML {

EntitySource::EntitySource(EntityResolver* pResolver, const std::string* publicId,
                           const std::string& systemId)
    : _pResolver(pResolver) {
    if (_pResolver) {
        _pSource = _pResolver->resolveEntity(publicId, systemId);
        if (_pSource && streamOf(*_pSource)) {
            return;
        }
    }
    const std::string opened = _pSource ? _pSource->getSystemId() : systemId;
    release();
    _pResolver = &_default;
    _pSource = _default.resolveEntity(publicId, opened);
}

std::istream* EntitySource::streamOf(const InputSource& source) {
    return source.getByteStream() ? source.getByteStream() : source.getCharacterStream();
}

std::string EntitySource::encodingOf(const InputSource& source) {
    return source.getByteStream() || !source.getCharacterStream() ? source.getEncoding()
                                                                  : std::string("UTF-8");
}

void EntitySource::release() {
    if (_pSource) {
        _pResolver->releaseInputSource(_pSource);
        _pSource = nullptr;
    }
}

} // namespace Tamo::XML
