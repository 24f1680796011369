#ifndef TAMO_FASTINFOSET_DETAIL_PARSEDATTRIBUTES_H
#define TAMO_FASTINFOSET_DETAIL_PARSEDATTRIBUTES_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include "Tamo/XML/DirectLookUps.h"
#include "Tamo/XML/StableAttributes.h"
#include <cstddef>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// The attribute list that FastInfosetParser hands to startElement: references to the strings of the
/// vocabulary's tables, so that nothing is copied but values that belong to no table.
///
/// Attributes have no type, and qualified names in the strict mode alone. Reused from element to element: a
/// list that has grown once allocates nothing more. An index outside 0 ... getLength() - 1 throws
/// AssertionViolationException. To keep attributes beyond the call, copy them into an XML::AttributesImpl.
/// Used by one thread at a time.
class TAMO_API ParsedAttributes final : public XML::DirectLookUps<ParsedAttributes, XML::StableAttributes> {
public:
    int getLength() const override { return static_cast<int>(_count); }
    const std::string& getURI(int i) const override { return *at(i).pUri; }
    const std::string& getLocalName(int i) const override { return *at(i).pLocalName; }
    const std::string& getQName(int i) const override;
    const std::string& getType(int i) const override;
    const std::string& getValue(int i) const override {
        const Attribute& attribute = at(i);
        return attribute.pValue ? *attribute.pValue : attribute.ownValue;
    }
    using DirectLookUps::getType;
    using DirectLookUps::getValue;
    int getIndex(const std::string& uri, const std::string& localName) const override;
    int getIndex(const std::string& qname) const override;

    /// Whether attributes have qualified names; each of them is given its prefix by qualify() then.
    void setQualified(bool flag) noexcept { _isQualified = flag; }

    /// The prefix, which may be empty, of the attribute that was added last; it is referred to.
    void qualify(const std::string& prefix) noexcept { _slots[_count - 1].pPrefix = &prefix; }

    /// Removes all attributes and keeps their storage.
    void clear() noexcept { _count = 0; }

    /// Appends an attribute. The strings must outlive the list's use: they are referred to.
    void add(const std::string& uri, const std::string& localName, const std::string& value) {
        Attribute& attribute = nextSlot();
        attribute.pUri = &uri;
        attribute.pLocalName = &localName;
        attribute.pValue = &value;
        ++_count;
    }

    /// Appends an attribute with a copy of the octets at pValue as its value.
    void add(const std::string& uri, const std::string& localName, const char* pValue, std::size_t size);

private:
    struct Attribute {
        const std::string* pUri = nullptr;
        const std::string* pLocalName = nullptr;
        const std::string* pValue = nullptr; // null: the value is ownValue
        std::string ownValue;
        const std::string* pPrefix = nullptr;
        mutable std::string ownQName; // of one with a prefix, made when it is asked for
    };

    const Attribute& at(int i) const {
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
    bool _isQualified = false;
};

} // namespace Tamo::FastInfoset

#endif
