#include "Tamo/BlockSink.h"
#include <cstring>

namespace Tamo {

void BlockSink::deliver() {
    if (const auto size = static_cast<std::size_t>(pptr() - pbase())) {
        append(_block, size);
        clear();
    }
}

BlockSink::int_type BlockSink::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) {
        deliver();
    } else {
        const char octet = traits_type::to_char_type(c);
        xsputn(&octet, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize BlockSink::xsputn(const char* data, std::streamsize count) {
    const auto size = static_cast<std::size_t>(count);
    if (size > static_cast<std::size_t>(epptr() - pptr())) {
        deliver();
        if (size >= CAPACITY) {
            append(data, size);
            return count;
        }
    }
    if (size != 0) {
        std::memcpy(pptr(), data, size);
        pbump(static_cast<int>(size)); // less than CAPACITY, or as much as fits
    }
    return count;
}

} // namespace Tamo
