#include "Tamo/FastInfoset/Notation.h"

namespace Tamo::FastInfoset {

Notation::Notation(const std::string& name, const std::string& publicId, const std::string& systemId)
    : _name(name), _publicId(publicId), _systemId(systemId) {}

} // namespace Tamo::FastInfoset
