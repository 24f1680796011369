#ifndef TAMO_TYPES_H
#define TAMO_TYPES_H

/// @file
/// Integer types of fixed width.
///
/// The widest signed type that the platform calls `long` is used for 64 bits where it has 64 bits, so that
/// overloads on `short`, `int` and `long` are overloads on `Int16`, `Int32` and `Int64`.

#include <cstdint>
#include <type_traits>

namespace Tamo {

using Int8 = std::int8_t;
using UInt8 = std::uint8_t;
using Int16 = std::int16_t;
using UInt16 = std::uint16_t;
using Int32 = std::int32_t;
using UInt32 = std::uint32_t;
using Int64 = std::conditional_t<sizeof(long) == 8, long, long long>;
using UInt64 = std::conditional_t<sizeof(long) == 8, unsigned long, unsigned long long>;

} // namespace Tamo

#endif
