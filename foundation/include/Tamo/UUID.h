#ifndef TAMO_UUID_H
#define TAMO_UUID_H

#include "Tamo/Export.h"
#include <array>
#include <compare>
#include <string>
#include <string_view>

namespace Tamo {

/// A universally unique identifier: 16 octets, in the order in which the text form shows them.
///
/// The text form is the canonical one, 8-4-4-4-12 hexadecimal digits joined by hyphens. A value, ordered by
/// its octets; used by one thread at a time when it is changed.
class TAMO_API UUID {
public:
    using Octets = std::array<unsigned char, 16>;

    /// The nil UUID, all octets zero.
    UUID() noexcept = default;

    /// The UUID of a canonical text in either case; any other text throws SyntaxException that names it.
    explicit UUID(const std::string& text);

    /// The UUID of the 16 octets at octets.
    static UUID fromOctets(const unsigned char* octets) noexcept;

    /// Takes the value of a canonical text in either case; returns false, and keeps the value, otherwise.
    bool tryParse(std::string_view text) noexcept;

    /// The canonical text in lower case.
    std::string toString() const;

    /// The 16 octets.
    const Octets& octets() const noexcept { return _octets; }

    /// True for the nil UUID.
    bool isNil() const noexcept { return *this == UUID(); }

    bool operator==(const UUID& other) const noexcept = default;
    std::strong_ordering operator<=>(const UUID& other) const noexcept = default;

private:
    Octets _octets{};
};

} // namespace Tamo

#endif
