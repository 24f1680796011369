#ifndef TAMO_EXPORT_H
#define TAMO_EXPORT_H

/// @file
/// What the shared libraries export.
///
/// They are compiled with hidden symbols; a class or function of the interface is marked with TAMO_API.
/// Exceptions and handler interfaces have to be, so that one type is the same type on both sides of a
/// library's border.

#if defined(_MSVC_LANG) ? _MSVC_LANG < 202002L : __cplusplus < 201709L // what GCC 10 calls C++20
#error Tamo Fast Infoset needs C++20: compile with -std=c++20 (or target_compile_features(... cxx_std_20)).
#endif

#if defined(__GNUC__)
/// Part of the interface of a shared library.
#define TAMO_API __attribute__((visibility("default")))
/// A function that its callers are built around: inline whatever the compiler's own measure says.
#define TAMO_ALWAYS_INLINE inline __attribute__((always_inline))
/// A function that is seldom called: its callers keep their registers for what is done often.
#define TAMO_COLD __attribute__((noinline, cold))
/// A function that is called rather often, and whose callers keep their registers all the same.
#define TAMO_APART __attribute__((noinline))
#else
#define TAMO_API
#define TAMO_ALWAYS_INLINE inline
#define TAMO_COLD
#define TAMO_APART
#endif

#if defined(__GNUC__) && !defined(__clang__)
/// A std::string, say, that needs no code to be initialised, so that it is there for what runs before main().
/// Only some pairs of compiler and standard library can tell that it does.
#define TAMO_CONSTINIT constinit
#else
#define TAMO_CONSTINIT
#endif

#endif
