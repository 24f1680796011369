#ifndef TAMO_XML_ELEMENTATTRIBUTES_H
#define TAMO_XML_ELEMENTATTRIBUTES_H

#include "NameCache.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/XML/DirectLookUps.h"
#include "Tamo/XML/StableAttributes.h"
#include <cstddef>
#include <string>
#include <vector>

namespace Tamo::XML {

/// The attributes of the element that SAXParser reports: names and types are referred to, where the name
/// cache and the declarations have them; slots keep their values' capacity. Owned by one parse.
class ElementAttributes final : public DirectLookUps<ElementAttributes, StableAttributes> {
public:
    ElementAttributes() { _slots.reserve(8); }

    /// Removes all attributes and keeps their storage.
    void clear() { _count = 0; }

    /// Appends an attribute and returns the octets of its value.
    std::size_t add(const NameCache::QName& name, const std::string& type, const char* value) {
        if (_count == _slots.size()) {
            _slots.emplace_back();
        }
        Slot& slot = _slots[_count++];
        slot.pName = &name;
        slot.pType = &type;
        slot.value.assign(value);
        return slot.value.size();
    }

    using DirectLookUps::getType;
    using DirectLookUps::getValue;
    int getLength() const override { return static_cast<int>(_count); }
    const std::string& getURI(int i) const override { return at(i).pName->uri(); }
    const std::string& getLocalName(int i) const override { return at(i).pName->localName(); }
    const std::string& getQName(int i) const override { return at(i).pName->qname(); }
    const std::string& getType(int i) const override { return *at(i).pType; }
    const std::string& getValue(int i) const override { return at(i).value; }

    int getIndex(const std::string& uri, const std::string& localName) const override {
        for (std::size_t i = 0; i < _count; ++i) {
            if (_slots[i].pName->localName() == localName && _slots[i].pName->uri() == uri) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    int getIndex(const std::string& qname) const override {
        for (std::size_t i = 0; i < _count; ++i) {
            if (_slots[i].pName->qname() == qname) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

private:
    struct Slot {
        const NameCache::QName* pName = nullptr;
        const std::string* pType = nullptr;
        std::string value;
    };

    const Slot& at(int i) const {
        tamo_assert(i >= 0 && static_cast<std::size_t>(i) < _count);
        return _slots[static_cast<std::size_t>(i)];
    }

    std::vector<Slot> _slots;
    std::size_t _count = 0;
};

} // namespace Tamo::XML

#endif
