#include "Tamo/XML/EntityResolverImpl.h"
#include "Tamo/Exception.h"
#include "Tamo/URIStreamOpener.h"
#include "Tamo/XML/InputSource.h"
#include <memory>

namespace Tamo::XML {

InputSource* EntityResolverImpl::resolveEntity(const std::string* publicId, const std::string& systemId) {
    try {
        std::unique_ptr<std::istream> pStream(URIStreamOpener::defaultOpener().open(systemId));
        if (!pStream) {
            return nullptr;
        }
        auto pSource = std::make_unique<InputSource>(systemId);
        if (publicId) {
            pSource->setPublicId(*publicId);
        }
        pSource->setByteStream(*pStream.release());
        return pSource.release();
    } catch (const Exception&) {
        return nullptr; // the caller says what could not be resolved
    }
}

void EntityResolverImpl::releaseInputSource(InputSource* pSource) {
    if (pSource) {
        delete pSource->getByteStream();
        delete pSource;
    }
}

} // namespace Tamo::XML
