#include "Tamo/XML/AttributesSnapshot.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/StableAttributes.h"

namespace Tamo::XML {

AttributesSnapshot::AttributesSnapshot() noexcept = default;

AttributesSnapshot::~AttributesSnapshot() = default;

const Attributes& AttributesSnapshot::look(const Attributes& attributes) {
    const std::type_info& type = typeid(attributes);
    // A class derived from AttributesImpl may yield what it likes.
    if (type == typeid(AttributesImpl) || dynamic_cast<const StableAttributes*>(&attributes)) {
        _pStable = &type;
        return attributes;
    }
    if (!_pCopy) {
        _pCopy = std::make_unique<AttributesImpl>();
    }
    _pCopy->setAttributes(attributes);
    return *_pCopy;
}

} // namespace Tamo::XML
