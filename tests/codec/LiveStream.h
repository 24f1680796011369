#ifndef TAMO_TESTS_LIVESTREAM_H
#define TAMO_TESTS_LIVESTREAM_H

#include <cstddef>
#include <istream>
#include <random>
#include <streambuf>
#include <string>

namespace Tamo::FastInfoset::Test {

/// An input stream that has so many octets: who waits for one more fails. Its buffer shows pieces of a random
/// size, at most most octets long, or, where that is 0, hands out octets without showing them.
class LiveStream : private std::streambuf, public std::istream {
public:
    LiveStream(const std::string& octets, std::size_t size, std::size_t most)
        : std::istream(this), _octets(octets.substr(0, size)), _most(most) {}

    /// The octets that have been taken.
    std::size_t taken() const { return _shown - static_cast<std::size_t>(egptr() - gptr()); }

    /// From now on the stream ends behind its octets.
    void endAtEnd() { _fails = false; }

private:
    int underflow() override;
    int uflow() override;

    std::string _octets;
    std::size_t _most;
    std::size_t _shown = 0;
    bool _fails = true;
    std::minstd_rand _random;
};

} // namespace Tamo::FastInfoset::Test

#endif
