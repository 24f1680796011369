#include "Tamo/FastInfoset/detail/ParsedAttributes.h"
#include "Tamo/Export.h"

namespace Tamo::FastInfoset {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

} // namespace

const std::string& ParsedAttributes::getQName(int i) const {
    at(i);
    return EMPTY;
}

const std::string& ParsedAttributes::getType(int i) const {
    at(i);
    return EMPTY;
}

void ParsedAttributes::add(const std::string& uri, const std::string& localName, const char* pValue,
                           std::size_t size) {
    Attribute& attribute = nextSlot();
    attribute.pUri = &uri;
    attribute.pLocalName = &localName;
    attribute.pValue = nullptr;
    attribute.ownValue.assign(pValue, size);
    ++_count;
}

int ParsedAttributes::getIndex(const std::string& uri, const std::string& localName) const {
    for (std::size_t i = 0; i < _count; ++i) {
        if (*_slots[i].pLocalName == localName && *_slots[i].pUri == uri) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

// Every qualified name is the empty one.
int ParsedAttributes::getIndex(const std::string& qname) const {
    return qname.empty() && _count != 0 ? 0 : -1;
}

} // namespace Tamo::FastInfoset
