#ifndef TAMO_TESTS_DRIBBLINGSTREAM_H
#define TAMO_TESTS_DRIBBLINGSTREAM_H

#include <cstddef>
#include <istream>
#include <streambuf>
#include <string>

namespace Tamo::FastInfoset::Test {

/// An input stream whose buffer hands out one octet at a time and throws behind octet number failAfter.
class DribblingStream : private std::streambuf, public std::istream {
public:
    explicit DribblingStream(const std::string& octets, std::size_t failAfter = std::string::npos)
        : std::istream(this), _octets(octets), _failAfter(failAfter) {}

private:
    int underflow() override;

    std::string _octets;
    std::size_t _failAfter;
    std::size_t _position = 0;
    char _octet = 0;
};

} // namespace Tamo::FastInfoset::Test

#endif
