#include "Tamo/XML/AttributesImpl.h"
#include <algorithm>

namespace Tamo::XML {

AttributesImpl::AttributesImpl(const Attributes& attributes) {
    setAttributes(attributes);
}

AttributesImpl::AttributesImpl(const AttributesImpl& other)
    : DirectLookUps(other),
      _slots(other._slots.begin(), other._slots.begin() + static_cast<std::ptrdiff_t>(other._count)),
      _count(other._count) {}

AttributesImpl& AttributesImpl::operator=(const AttributesImpl& other) {
    if (this != &other) {
        if (_slots.size() < other._count) {
            _slots.resize(other._count);
        }
        std::copy_n(other._slots.begin(), other._count, _slots.begin());
        _count = other._count;
    }
    return *this;
}

int AttributesImpl::getIndex(const std::string& uri, const std::string& localName) const {
    for (std::size_t i = 0; i < _count; ++i) {
        if (_slots[i].localName == localName && _slots[i].namespaceURI == uri) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int AttributesImpl::getIndex(const std::string& qname) const {
    for (std::size_t i = 0; i < _count; ++i) {
        if (_slots[i].qname == qname) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void AttributesImpl::setAttributes(const Attributes& attributes) {
    if (&attributes == this) {
        return;
    }
    clear();
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        Attribute& attribute = nextSlot(); // each string before the next call, which may use it again
        attribute.namespaceURI = attributes.getURI(i);
        attribute.localName = attributes.getLocalName(i);
        attribute.qname = attributes.getQName(i);
        attribute.type = attributes.getType(i);
        attribute.value = attributes.getValue(i);
        ++_count;
    }
}

void AttributesImpl::setAttribute(int i, const std::string& namespaceURI, const std::string& localName,
                                  const std::string& qname, const std::string& type,
                                  const std::string& value) {
    at(i) = Attribute{namespaceURI, localName, qname, type, value};
}

void AttributesImpl::removeAttribute(int i) {
    at(i);
    const auto first = _slots.begin() + i;
    std::rotate(first, first + 1, _slots.begin() + static_cast<std::ptrdiff_t>(_count));
    --_count;
}

} // namespace Tamo::XML
