#include "Tamo/HexBinaryEncoder.h"
#include "Tamo/HexBinary.h"

namespace Tamo {

void HexBinaryEncoderBuf::encode(std::string_view octets, std::string& text) const {
    HexBinary::encode(octets, text,
                      _uppercase ? HexBinary::Digits::UPPER_CASE : HexBinary::Digits::LOWER_CASE);
}

HexBinaryEncoder::HexBinaryEncoder(std::ostream& target) : std::ostream(nullptr), _buf(target) {
    std::ios::rdbuf(&_buf);
}

HexBinaryEncoder::~HexBinaryEncoder() {
    try {
        _buf.close();
    } catch (...) {
        // Whoever wants to see errors calls close().
    }
}

void HexBinaryEncoder::close() {
    if (!_buf.close()) {
        setstate(std::ios::badbit);
    }
}

} // namespace Tamo
