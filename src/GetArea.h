#ifndef TAMO_FASTINFOSET_GETAREA_H
#define TAMO_FASTINFOSET_GETAREA_H

#include <cstddef>
#include <limits>
#include <streambuf>

namespace Tamo::FastInfoset {

/// Access to the part of a stream buffer where std::streambuf::sbumpc takes octets as well: no buffer that
/// works can tell the difference. Only static operations, which any thread may use that may use the buffer.
class GetArea : std::streambuf {
public:
    GetArea() = delete;

    /// The next octet.
    static const char* next(const std::streambuf& buf) noexcept { return (buf.*&GetArea::gptr)(); }

    /// The octets that are there.
    static std::size_t left(const std::streambuf& buf) noexcept {
        return static_cast<std::size_t>((buf.*&GetArea::egptr)() - next(buf));
    }

    /// Takes size octets, at most left().
    static void advance(std::streambuf& buf, std::size_t size) noexcept {
        constexpr std::size_t MOST = std::numeric_limits<int>::max(); // gbump counts in int
        for (; size > MOST; size -= MOST) {
            (buf.*&GetArea::gbump)(static_cast<int>(MOST));
        }
        (buf.*&GetArea::gbump)(static_cast<int>(size));
    }
};

} // namespace Tamo::FastInfoset

#endif
