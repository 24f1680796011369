#include "Tamo/Base64Encoder.h"
#include "Tamo/Base64.h"

namespace Tamo {

void Base64EncoderBuf::encode(std::string_view octets, std::string& text) const {
    Base64::encode(octets, text);
}

Base64Encoder::Base64Encoder(std::ostream& target) : std::ostream(nullptr), _buf(target) {
    std::ios::rdbuf(&_buf);
}

Base64Encoder::~Base64Encoder() {
    try {
        _buf.close();
    } catch (...) {
        // Whoever wants to see errors calls close().
    }
}

void Base64Encoder::close() {
    if (!_buf.close()) {
        setstate(std::ios::badbit);
    }
}

} // namespace Tamo
