#ifndef TAMO_FASTINFOSET_NAMEANDVALUE_H
#define TAMO_FASTINFOSET_NAMEANDVALUE_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/TypedInteger.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include <concepts>
#include <cstddef>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace Tamo::FastInfoset {

class TypedAttributes;

/// The name and the value of an attribute, as FastInfosetWriter::startElement and element() take them:
/// `{{"id", id}, {"unit", "kg"}, {"point", points}}`.
///
/// What is text becomes text, and octets, numbers, booleans, UUIDs and contiguous ranges of them
/// (std::vector, std::span, std::array) stay what they are: the type decides, and nothing is turned from one
/// into the other. Texts, UUIDs and ranges are views, which must last until the element is started.
class TAMO_API NameAndValue {
public:
    /// An attribute with a name as in XML text and a value.
    template<class T>
    NameAndValue(std::string_view name, const T& value) : _name(name), _value(viewOf(value)) {}

    std::string_view name() const noexcept { return _name; }

    /// The value if it is text, else null.
    const std::string_view* text() const noexcept { return std::get_if<std::string_view>(&_value); }

    /// Appends it to a list, by its name in parts.
    void addTo(TypedAttributes& list, const std::string& uri, const std::string& localName,
               const std::string& qname) const;

private:
    template<class T>
    using Values = std::span<const T>;
    using Value = std::variant<std::string_view, Values<std::byte>, bool, Int16, Int32, Int64, float, double,
                               Values<Int16>, Values<Int32>, Values<Int64>, Values<float>, Values<double>,
                               Values<UUID>, const std::vector<bool>*>;

    template<class T>
    static constexpr bool IS_NUMBER =
        std::same_as<T, bool> || std::same_as<T, Int16> || std::same_as<T, Int32> || std::same_as<T, Int64> ||
        std::same_as<T, float> || std::same_as<T, double>;

    template<class T>
    static Value viewOf(const T& value) {
        static_assert(!std::same_as<T, std::nullptr_t>, "A null pointer is no text");
        if constexpr (std::convertible_to<const T&, std::string_view>) {
            return std::string_view(value);
        } else if constexpr (std::convertible_to<const T&, Values<std::byte>>) {
            return Values<std::byte>(value);
        } else if constexpr (IS_NUMBER<T>) {
            return value;
        } else if constexpr (TypedInteger<T>) {
            return static_cast<NarrowestOf<T>>(value);
        } else if constexpr (std::same_as<T, UUID>) {
            return Values<UUID>(&value, 1);
        } else if constexpr (std::same_as<T, std::vector<bool>>) {
            return &value;
        } else {
            static_assert(std::ranges::contiguous_range<const T>,
                          "A value is text, octets, numbers, booleans or UUIDs, one or a contiguous range");
            return Values<std::ranges::range_value_t<const T>>(value);
        }
    }

    std::string_view _name;
    Value _value;
};

} // namespace Tamo::FastInfoset

#endif
