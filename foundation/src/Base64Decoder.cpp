#include "Tamo/Base64Decoder.h"
#include "Tamo/Base64.h"

namespace Tamo {

bool Base64DecoderBuf::decode(std::string_view text, std::string& octets) {
    return Base64::decodePiece(text, octets, _state);
}

Base64Decoder::Base64Decoder(std::istream& source) : std::istream(nullptr), _buf(source) {
    std::ios::rdbuf(&_buf);
}

} // namespace Tamo
