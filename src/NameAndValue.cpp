#include "Tamo/FastInfoset/NameAndValue.h"
#include "Tamo/FastInfoset/TypedAttributes.h"

namespace Tamo::FastInfoset {

void NameAndValue::addTo(TypedAttributes& list, const std::string& uri, const std::string& localName,
                         const std::string& qname) const {
    std::visit(
        [&]<class T>(const T& value) {
            if constexpr (std::same_as<T, bool>) {
                list.addAttribute(uri, localName, qname, std::vector<bool>{value});
            } else if constexpr (IS_NUMBER<T>) {
                list.addAttribute(uri, localName, qname, Values<T>(&value, 1));
            } else if constexpr (std::is_pointer_v<T>) {
                list.addAttribute(uri, localName, qname, *value);
            } else {
                list.addAttribute(uri, localName, qname, value);
            }
        },
        _value);
}

} // namespace Tamo::FastInfoset
