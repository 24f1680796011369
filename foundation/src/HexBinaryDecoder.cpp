#include "Tamo/HexBinaryDecoder.h"
#include "Tamo/HexBinary.h"

namespace Tamo {

bool HexBinaryDecoderBuf::decode(std::string_view text, std::string& octets) {
    return HexBinary::decodePiece(text, octets, _digit);
}

HexBinaryDecoder::HexBinaryDecoder(std::istream& source) : std::istream(nullptr), _buf(source) {
    std::ios::rdbuf(&_buf);
}

} // namespace Tamo
