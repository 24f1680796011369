#ifndef TAMO_FASTINFOSET_PUTAREA_H
#define TAMO_FASTINFOSET_PUTAREA_H

#include "Tamo/Export.h"
#include <cstddef>
#include <limits>
#include <streambuf>

namespace Tamo::FastInfoset {

/// Access to the part of a stream buffer where std::streambuf::sputc puts octets as well: no buffer that
/// works can tell the difference. Only static operations, which any thread may use that may use the buffer.
class PutArea : std::streambuf {
public:
    PutArea() = delete;

    /// Where the next octet goes.
    static char* next(const std::streambuf& buf) noexcept { return (buf.*&PutArea::pptr)(); }

    /// Behind the last place.
    static char* end(const std::streambuf& buf) noexcept { return (buf.*&PutArea::epptr)(); }

    /// The places that are left, in octets.
    static std::size_t left(const std::streambuf& buf) noexcept {
        return static_cast<std::size_t>(end(buf) - next(buf));
    }

    /// Passes over size octets, which stand there, at most left().
    static void advance(std::streambuf& buf, std::size_t size) noexcept {
        constexpr std::size_t MOST = std::numeric_limits<int>::max(); // pbump counts in int
        for (; size > MOST; size -= MOST) {
            (buf.*&PutArea::pbump)(static_cast<int>(MOST));
        }
        (buf.*&PutArea::pbump)(static_cast<int>(size));
    }

    /// Lets compose(p) put a few octets, at most left(), at p, the next place, and passes over them to what
    /// it returns.
    template<class Compose>
    static TAMO_ALWAYS_INLINE void put(std::streambuf& buf, const Compose& compose) {
        char* const pBegin = next(buf);
        (buf.*&PutArea::pbump)(static_cast<int>(compose(pBegin) - pBegin));
    }

    /// A function that synchronises a buffer.
    using Sync = int (*)(std::streambuf*);

    /// That of a buffer, or null where the compiler cannot say which it is.
    static Sync syncOf(std::streambuf& buf) noexcept;

    /// That of std::streambuf, which does nothing, so that it need not be called; never null.
    static Sync defaultSync() noexcept;
};

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpmf-conversions"
#pragma GCC diagnostic ignored "-Wpedantic"
TAMO_ALWAYS_INLINE PutArea::Sync PutArea::syncOf(std::streambuf& buf) noexcept {
    return reinterpret_cast<Sync>(buf.*&PutArea::sync); // an extension of GNU C++
}
#pragma GCC diagnostic pop
#else
inline PutArea::Sync PutArea::syncOf(std::streambuf&) noexcept {
    return nullptr;
}
#endif

} // namespace Tamo::FastInfoset

#endif
