#ifndef TAMO_STRINGCONSTANT_H
#define TAMO_STRINGCONSTANT_H

#include "Tamo/Export.h"
#include <string>
#include <string_view>

namespace Tamo {

/// A text that is there before any code of the program runs: a constant of a class, which objects at
/// namespace scope may use in their constructors whatever the order of initialisation is.
///
/// Taken as a std::string_view, and where a std::string is asked for as one. Zero-terminated. A value that
/// refers to a literal; any number of threads may use it.
class TAMO_API StringConstant : public std::string_view {
public:
    /// The text of a literal.
    template<std::size_t SIZE>
    consteval StringConstant(const char (&literal)[SIZE]) noexcept
        : std::string_view(literal, SIZE - 1) {} // NOLINT(google-explicit-constructor)

    /// The text as a string of its own.
    operator std::string() const {
        return std::string(data(), size());
    } // NOLINT(google-explicit-constructor)

    /// The text with its terminating zero.
    constexpr const char* c_str() const noexcept { return data(); }
};

} // namespace Tamo

#endif
