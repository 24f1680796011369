#ifndef TAMO_VERSION_H
#define TAMO_VERSION_H

/// @file
/// The version of the three libraries, for the preprocessor and at run time. Versions follow Semantic
/// Versioning.

#include "Tamo/Export.h"

/// The version that a program is compiled against.
#define TAMO_VERSION_MAJOR 0
#define TAMO_VERSION_MINOR 2
#define TAMO_VERSION_PATCH 0
#define TAMO_VERSION_STRING "0.2.0"

/// The version as one number that grows with it: TAMO_VERSION >= TAMO_VERSION_NUMBER(1, 2, 0).
#define TAMO_VERSION_NUMBER(major, minor, patch) ((major)*10000 + (minor)*100 + (patch))
#define TAMO_VERSION TAMO_VERSION_NUMBER(TAMO_VERSION_MAJOR, TAMO_VERSION_MINOR, TAMO_VERSION_PATCH)

namespace Tamo {

/// The version of the library that a program runs with, as "0.2.0".
TAMO_API const char* version() noexcept;

} // namespace Tamo

#endif
