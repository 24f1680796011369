#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"

namespace Tamo::FastInfoset {

NullEncoding::NullEncoding() {
    _content.reserve(1024);
}

NullEncoding::NullEncoding(const std::string& text) : OctetEncoding(text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal empty string for NullEncoding");
    }
}

NullEncoding::NullEncoding(const char* data, int length)
    : NullEncoding(std::string(data, static_cast<std::size_t>(length))) {}

void NullEncoding::encode(BitStreamWriter& writer, const std::string& str) {
    tamo_assert(!str.empty());
    Encoder::nonEmptyOctetString(writer, str);
}

int NullEncoding::check(const std::string& text) {
    return static_cast<int>(text.size());
}

AutoPtr<Encoding> NullEncoding::decode(BitStreamReader& reader) {
    AutoPtr<NullEncoding> pResult(new NullEncoding);
    decode(reader, pResult->_content);
    return pResult;
}

void NullEncoding::decode(BitStreamReader& reader, std::string& text) {
    PrimitiveDecoder::nonEmptyOctetString(reader, text);
}

unsigned int NullEncoding::type() const {
    return TYPE;
}

Encoding::DecodeMethod NullEncoding::decodeMethod() const {
    return &NullEncoding::decode;
}

Encoding::CheckMethod NullEncoding::checkMethod() const {
    return &NullEncoding::check;
}

Encoding::EncodeMethod NullEncoding::encodeMethod() const {
    return &NullEncoding::encode;
}

} // namespace Tamo::FastInfoset
