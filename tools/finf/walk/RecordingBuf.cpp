#include "walk/RecordingBuf.h"
#include <algorithm>

namespace finf {

std::string_view RecordingBuf::octets(Tamo::UInt64 first, Tamo::UInt64 last) const {
    first = std::max(first, _start);
    last = std::min(last, size());
    return first < last ? std::string_view(_octets).substr(first - _start, last - first) : std::string_view();
}

void RecordingBuf::forget(Tamo::UInt64 first) {
    // In large steps, so that an octet is not moved again and again.
    constexpr std::size_t STEP = 65536;
    const std::size_t count = std::min(first - _start, Tamo::UInt64{_octets.size()});
    if (count >= std::max(STEP, _octets.size() / 2)) {
        _octets.erase(0, count);
        _start += count;
    }
}

void RecordingBuf::skipRest() {
    char block[4096];
    while (xsgetn(block, sizeof block) > 0) {
        _start += _octets.size();
        _octets.clear();
    }
}

std::streamsize RecordingBuf::xsgetn(char* data, std::streamsize size) {
    const std::streamsize count = _source.rdbuf()->sgetn(data, size);
    if (count > 0) {
        _octets.append(data, static_cast<std::size_t>(count));
    }
    return count;
}

RecordingBuf::int_type RecordingBuf::underflow() {
    return _source.rdbuf()->sgetc();
}

RecordingBuf::int_type RecordingBuf::uflow() {
    char octet = 0;
    return xsgetn(&octet, 1) == 1 ? traits_type::to_int_type(octet) : traits_type::eof();
}

} // namespace finf
