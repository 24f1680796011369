#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/Base64.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"

namespace Tamo::FastInfoset {

DWordEncoding::DWordEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Zero-length data for dword encoding");
    }
    if (!Base64::decode(text, _content)) {
        throw FISEncodingException("Invalid base64-encoded data");
    }
}

DWordEncoding::DWordEncoding(const char* data, std::size_t length) : OctetEncoding(data, length) {
    if (length == 0) {
        throw FISEncodingException("Zero-length data for dword encoding");
    }
}

void DWordEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<DWordEncoding>(new DWordEncoding(text))->write(writer);
}

int DWordEncoding::check(const std::string& text) {
    std::size_t size = 0;
    return !text.empty() && Base64::decodedSize(text, size) ? static_cast<int>(size) : -1;
}

AutoPtr<Encoding> DWordEncoding::decode(BitStreamReader& reader) {
    AutoPtr<DWordEncoding> pResult(new DWordEncoding);
    PrimitiveDecoder::nonEmptyOctetString(reader, pResult->_content);
    return pResult;
}

void DWordEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::string octets;
    PrimitiveDecoder::nonEmptyOctetString(reader, octets);
    decode(octets, text);
}

void DWordEncoding::decode(const std::string& octets, std::string& text) {
    text.clear();
    Base64::encode(octets, text);
}

unsigned int DWordEncoding::type() const {
    return TYPE;
}

Encoding::DecodeMethod DWordEncoding::decodeMethod() const {
    return &DWordEncoding::decode;
}

Encoding::CheckMethod DWordEncoding::checkMethod() const {
    return &DWordEncoding::check;
}

Encoding::EncodeMethod DWordEncoding::encodeMethod() const {
    return &DWordEncoding::encode;
}

void DWordEncoding::handle(XML::ContentHandler* handler) const {
    if (handler) {
        std::string text;
        decode(content(), text);
        deliver(*handler, text);
    }
}

void DWordEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        handler->binaryData(content().data(), content().size());
    }
}

} // namespace Tamo::FastInfoset
