#include "DribblingStream.h"
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

int DribblingStream::underflow() {
    if (_position >= _failAfter) {
        throw std::runtime_error("the device is gone");
    }
    if (_position >= _octets.size()) {
        return EOF;
    }
    _octet = _octets[_position++];
    setg(&_octet, &_octet, &_octet + 1);
    return static_cast<unsigned char>(_octet);
}

} // namespace Tamo::FastInfoset::Test
