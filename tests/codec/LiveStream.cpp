#include "LiveStream.h"
#include <algorithm>
#include <stdexcept>

namespace Tamo::FastInfoset::Test {

int LiveStream::underflow() {
    if (_shown == _octets.size()) {
        return _fails ? throw std::runtime_error("an octet that is not there was waited for") : EOF;
    }
    const std::size_t begin = _shown;
    if (_most > 0) {
        _shown += std::min<std::size_t>(_random() % _most + 1, _octets.size() - begin);
        setg(_octets.data() + begin, _octets.data() + begin, _octets.data() + _shown);
    }
    return static_cast<unsigned char>(_octets[begin]);
}

int LiveStream::uflow() {
    if (_most > 0) {
        return std::streambuf::uflow();
    }
    const int octet = underflow();
    _shown += octet != EOF;
    return octet;
}

} // namespace Tamo::FastInfoset::Test
