#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"

namespace Tamo::FastInfoset {

CDataEncoding::CDataEncoding(const std::string& text) : OctetEncoding(text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal empty string for CDataEncoding");
    }
}

CDataEncoding::CDataEncoding(const char* data, int length)
    : CDataEncoding(std::string(data, static_cast<std::size_t>(length))) {}

void CDataEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<CDataEncoding>(new CDataEncoding(text))->write(writer);
}

int CDataEncoding::check(const std::string& text) {
    return static_cast<int>(text.size());
}

AutoPtr<Encoding> CDataEncoding::decode(BitStreamReader& reader) {
    std::string text;
    decode(reader, text);
    return new CDataEncoding(text);
}

void CDataEncoding::decode(BitStreamReader& reader, std::string& text) {
    PrimitiveDecoder::nonEmptyOctetString(reader, text);
}

unsigned int CDataEncoding::type() const {
    return TYPE;
}

Encoding::DecodeMethod CDataEncoding::decodeMethod() const {
    return &CDataEncoding::decode;
}

Encoding::CheckMethod CDataEncoding::checkMethod() const {
    return &CDataEncoding::check;
}

Encoding::EncodeMethod CDataEncoding::encodeMethod() const {
    return &CDataEncoding::encode;
}

} // namespace Tamo::FastInfoset
