#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"
#include "Tamo/HexBinary.h"

namespace Tamo::FastInfoset {

HexEncoding::HexEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Zero-length data for hex encoding");
    }
    if (!HexBinary::decode(text, _content)) {
        throw FISEncodingException("Invalid hex-encoded data");
    }
}

HexEncoding::HexEncoding(const char* data, std::size_t length) : OctetEncoding(data, length) {
    if (length == 0) {
        throw FISEncodingException("Zero-length data for hex encoding");
    }
}

void HexEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<HexEncoding>(new HexEncoding(text))->write(writer);
}

int HexEncoding::check(const std::string& text) {
    std::size_t size = 0;
    return !text.empty() && HexBinary::decodedSize(text, size) ? static_cast<int>(size) : -1;
}

AutoPtr<Encoding> HexEncoding::decode(BitStreamReader& reader) {
    AutoPtr<HexEncoding> pResult(new HexEncoding);
    PrimitiveDecoder::nonEmptyOctetString(reader, pResult->_content);
    return pResult;
}

void HexEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::string octets;
    PrimitiveDecoder::nonEmptyOctetString(reader, octets);
    decode(octets, text);
}

void HexEncoding::decode(const std::string& octets, std::string& text) {
    text.clear();
    HexBinary::encode(octets, text);
}

unsigned int HexEncoding::type() const {
    return TYPE;
}

Encoding::DecodeMethod HexEncoding::decodeMethod() const {
    return &HexEncoding::decode;
}

Encoding::CheckMethod HexEncoding::checkMethod() const {
    return &HexEncoding::check;
}

Encoding::EncodeMethod HexEncoding::encodeMethod() const {
    return &HexEncoding::encode;
}

void HexEncoding::handle(XML::ContentHandler* handler) const {
    if (handler) {
        std::string text;
        decode(content(), text);
        deliver(*handler, text);
    }
}

void HexEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        handler->binaryData(content().data(), content().size());
    }
}

} // namespace Tamo::FastInfoset
