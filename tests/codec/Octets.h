#ifndef TAMO_TESTS_OCTETS_H
#define TAMO_TESTS_OCTETS_H

#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Test {

/// The octets that pairs of hexadecimal digits stand for; spaces between pairs are ignored.
std::string octets(std::string_view hex);

/// The octets that binary digits stand for, the last one completed with zeros.
std::string octetsOfBits(std::string digits);

/// A literal identifying string at the first bit (ITU-T X.891 C.13, C.22).
std::string literal(std::string_view text);

/// Octets as pairs of upper-case hexadecimal digits with a space between them.
std::string hex(std::string_view octets);

} // namespace Tamo::FastInfoset::Test

#endif
