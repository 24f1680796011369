#include "Tamo/SpanSink.h"
#include "Tamo/Exception.h"
#include <cstring>
#include <string>

namespace Tamo {

SpanSink::SpanSink(std::span<std::byte> octets) noexcept : _octets(octets) {
    char* const pBegin = reinterpret_cast<char*>(octets.data());
    setp(pBegin, pBegin + octets.size());
}

std::span<std::byte> SpanSink::written() const noexcept {
    return _octets.first(_octets.size() - static_cast<std::size_t>(epptr() - pptr()));
}

void SpanSink::deliver() {}

SpanSink::int_type SpanSink::overflow(int_type c) {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        const char octet = traits_type::to_char_type(c);
        xsputn(&octet, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize SpanSink::xsputn(const char* data, std::streamsize count) {
    const auto size = static_cast<std::size_t>(count);
    if (size > static_cast<std::size_t>(epptr() - pptr())) {
        throwFull();
    }
    if (size != 0) {
        std::memcpy(pptr(), data, size);
        setp(pptr() + size, epptr()); // pbump counts in int
    }
    return count;
}

void SpanSink::throwFull() const {
    throw IOException("no place left in the span of " + std::to_string(_octets.size()) + " octets");
}

} // namespace Tamo
