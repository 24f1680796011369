#ifndef TAMO_FASTINFOSET_TYPEDINTEGER_H
#define TAMO_FASTINFOSET_TYPEDINTEGER_H

#include "Tamo/Types.h"
#include <concepts>
#include <limits>
#include <type_traits>

namespace Tamo::FastInfoset {

/// The narrowest type of FISContentHandler's integers that holds all values of the integer type T.
template<class T>
using NarrowestOf = std::conditional_t<
    std::numeric_limits<T>::digits <= std::numeric_limits<Int16>::digits, Int16,
    std::conditional_t<std::numeric_limits<T>::digits <= std::numeric_limits<Int32>::digits, Int32, Int64>>;

/// The integer types beside FISContentHandler's own whose values one of these can hold: no characters, no
/// bool.
template<class T>
concept TypedInteger = (std::same_as<T, signed char> || std::same_as<T, unsigned char> ||
                        std::same_as<T, unsigned short> || std::same_as<T, unsigned int> ||
                        std::same_as<T, long> ||
                        std::same_as<T, long long>)&&!std::same_as<T, NarrowestOf<T>>;

} // namespace Tamo::FastInfoset

#endif
