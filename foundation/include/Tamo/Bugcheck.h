#ifndef TAMO_BUGCHECK_H
#define TAMO_BUGCHECK_H

/// @file
/// Assertions, active in every build.
///
/// Use an assertion for what only a wrong program can cause; use an exception of the RuntimeException tree
/// for what a wrong document, stream or environment can cause. A few conditions of the Fast Infoset format
/// are assertions by long-standing interface although a document can break them; they throw like the others
/// and never end the process.
///
/// A failed assertion throws, with the message
/// `Assertion violation: CONDITION [in file "FILE", line N]`. All operations are thread-safe.

#include "Tamo/Exception.h"
#include "Tamo/Export.h"

namespace Tamo {

/// The operations behind the assertion macros; thread-safe.
class TAMO_API Bugcheck {
public:
    /// Reports a failed condition: throws AssertionViolationException.
    [[noreturn]] static void assertion(const char* condition, const char* file, int line);

    /// Reports a null pointer: throws NullPointerException that names it.
    [[noreturn]] static void nullPointer(const char* pointer, const char* file, int line);

    /// Reports a place that must not be reached: throws AssertionViolationException.
    [[noreturn]] static void unexpected(const char* file, int line);
};

} // namespace Tamo

/// Throws AssertionViolationException when the condition does not hold.
#define tamo_assert(cond)                                                                                    \
    do {                                                                                                     \
        if (!(cond)) [[unlikely]]                                                                            \
            ::Tamo::Bugcheck::assertion(#cond, __FILE__, __LINE__);                                          \
    } while (false)

/// Throws NullPointerException when the pointer is null.
#define tamo_check_ptr(ptr)                                                                                  \
    do {                                                                                                     \
        if (!(ptr)) [[unlikely]]                                                                             \
            ::Tamo::Bugcheck::nullPointer(#ptr, __FILE__, __LINE__);                                         \
    } while (false)

/// Throws AssertionViolationException: control must not come here.
#define tamo_unexpected() ::Tamo::Bugcheck::unexpected(__FILE__, __LINE__)

#endif
