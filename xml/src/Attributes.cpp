#include "Tamo/XML/Attributes.h"
#include "Tamo/Export.h"

namespace Tamo::XML {

TAMO_CONSTINIT const std::string Attributes::NONE;

int Attributes::getIndex(const std::string& uri, const std::string& localName) const {
    const int count = getLength();
    for (int i = 0; i < count; ++i) {
        if (getLocalName(i) == localName && getURI(i) == uri) {
            return i;
        }
    }
    return -1;
}

int Attributes::getIndex(const std::string& qname) const {
    const int count = getLength();
    for (int i = 0; i < count; ++i) {
        if (getQName(i) == qname) {
            return i;
        }
    }
    return -1;
}

std::optional<std::string_view> Attributes::find(std::string_view localName, std::string_view uri) const {
    const int count = getLength();
    for (int i = 0; i < count; ++i) {
        if (getLocalName(i) == localName && getURI(i) == uri) {
            return getValue(i);
        }
    }
    return std::nullopt;
}

const std::string& Attributes::getType(const std::string& uri, const std::string& localName) const {
    const int i = getIndex(uri, localName);
    return i < 0 ? NONE : getType(i);
}

const std::string& Attributes::getType(const std::string& qname) const {
    const int i = getIndex(qname);
    return i < 0 ? NONE : getType(i);
}

const std::string& Attributes::getValue(const std::string& uri, const std::string& localName) const {
    const int i = getIndex(uri, localName);
    return i < 0 ? NONE : getValue(i);
}

const std::string& Attributes::getValue(const std::string& qname) const {
    const int i = getIndex(qname);
    return i < 0 ? NONE : getValue(i);
}

} // namespace Tamo::XML
