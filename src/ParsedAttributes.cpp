#include "Tamo/FastInfoset/detail/ParsedAttributes.h"
#include "Tamo/Export.h"

namespace Tamo::FastInfoset {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

} // namespace

const std::string& ParsedAttributes::getQName(int i) const {
    const Attribute& attribute = at(i);
    if (!_isQualified) {
        return EMPTY;
    }
    if (attribute.pPrefix->empty()) {
        return *attribute.pLocalName;
    }
    attribute.ownQName.assign(*attribute.pPrefix).append(1, ':').append(*attribute.pLocalName);
    return attribute.ownQName;
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

// Without qualified names every one is the empty one.
int ParsedAttributes::getIndex(const std::string& qname) const {
    if (_isQualified) {
        for (std::size_t i = 0; i < _count; ++i) {
            if (getQName(static_cast<int>(i)) == qname) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }
    return qname.empty() && _count != 0 ? 0 : -1;
}

} // namespace Tamo::FastInfoset
