#ifndef TAMO_XML_ATTRIBUTESIMPL_H
#define TAMO_XML_ATTRIBUTESIMPL_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/XML/Attributes.h"
#include "Tamo/XML/DirectLookUps.h"
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Tamo::XML {

/// An attribute list that can be filled and reused.
///
/// A value, used by one thread at a time. `clear` keeps the slots and the capacity of their strings, so that
/// a list reused for every element soon stops allocating. References to attributes stay valid until the list
/// is changed. An index outside 0 ... getLength() - 1 throws AssertionViolationException.
class TAMO_API AttributesImpl : public DirectLookUps<AttributesImpl, Attributes> {
public:
    /// One attribute.
    struct Attribute {
        std::string namespaceURI;
        std::string localName;
        std::string qname;
        std::string type;
        std::string value;
    };

    /// An empty list.
    AttributesImpl() = default;

    /// A copy of another list.
    explicit AttributesImpl(const Attributes& attributes);

    AttributesImpl(const AttributesImpl& other);
    AttributesImpl(AttributesImpl&& other) noexcept
        : _slots(std::move(other._slots)), _count(std::exchange(other._count, 0)) {}
    AttributesImpl& operator=(const AttributesImpl& other);
    AttributesImpl& operator=(AttributesImpl&& other) noexcept {
        _slots.swap(other._slots);
        std::swap(_count, other._count);
        return *this;
    }

    int getLength() const override { return static_cast<int>(_count); }
    const std::string& getURI(int i) const override { return at(i).namespaceURI; }
    const std::string& getLocalName(int i) const override { return at(i).localName; }
    const std::string& getQName(int i) const override { return at(i).qname; }
    const std::string& getType(int i) const override { return at(i).type; }
    const std::string& getValue(int i) const override { return at(i).value; }
    using DirectLookUps::getType;
    using DirectLookUps::getValue;
    int getIndex(const std::string& uri, const std::string& localName) const override;
    int getIndex(const std::string& qname) const override;

    /// Removes all attributes and keeps their storage.
    void clear() noexcept { _count = 0; }

    /// Appends an attribute; duplicates are not looked for.
    void addAttribute(const std::string& namespaceURI, const std::string& localName, const std::string& qname,
                      const std::string& type, const std::string& value) {
        Attribute& attribute = nextSlot();
        attribute.namespaceURI = namespaceURI;
        attribute.localName = localName;
        attribute.qname = qname;
        attribute.type = type;
        attribute.value = value;
        ++_count;
    }

    /// Replaces the contents by a copy of another list.
    void setAttributes(const Attributes& attributes);

    /// Replaces attribute i.
    void setAttribute(int i, const std::string& namespaceURI, const std::string& localName,
                      const std::string& qname, const std::string& type, const std::string& value);

    /// Removes attribute i; later ones move down by one.
    void removeAttribute(int i);

    /// Sets the namespace name of attribute i.
    void setURI(int i, const std::string& uri) { at(i).namespaceURI = uri; }
    /// Sets the local name of attribute i.
    void setLocalName(int i, const std::string& localName) { at(i).localName = localName; }
    /// Sets the qualified name of attribute i.
    void setQName(int i, const std::string& qname) { at(i).qname = qname; }
    /// Sets the type of attribute i.
    void setType(int i, const std::string& type) { at(i).type = type; }
    /// Sets the value of attribute i.
    void setValue(int i, const std::string& value) { at(i).value = value; }

private:
    const Attribute& at(int i) const {
        tamo_assert(i >= 0 && static_cast<std::size_t>(i) < _count);
        return _slots[static_cast<std::size_t>(i)];
    }

    Attribute& at(int i) {
        tamo_assert(i >= 0 && static_cast<std::size_t>(i) < _count);
        return _slots[static_cast<std::size_t>(i)];
    }

    Attribute& nextSlot() {
        if (_count == _slots.size()) [[unlikely]] {
            _slots.emplace_back();
        }
        return _slots[_count];
    }

    std::vector<Attribute> _slots;
    std::size_t _count = 0;
};

} // namespace Tamo::XML

#endif
