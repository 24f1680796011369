#include "files/TeeBuf.h"

namespace finf {

std::streamsize TeeBuf::xsgetn(char* data, std::streamsize size) {
    const std::streamsize count = _source.sgetn(data, size);
    for (std::streambuf* pOther : _others) {
        pOther->sputn(data, count);
    }
    return count;
}

TeeBuf::int_type TeeBuf::underflow() {
    return _source.sgetc();
}

TeeBuf::int_type TeeBuf::uflow() {
    char octet = 0;
    return xsgetn(&octet, 1) == 1 ? traits_type::to_int_type(octet) : traits_type::eof();
}

} // namespace finf
