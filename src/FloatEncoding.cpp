#include "Tamo/FastInfoset/FloatEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"

namespace Tamo::FastInfoset {

namespace {

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
bool accept(std::string_view piece, std::vector<float>& values) {
    double value = 0;
    if (!NumberParser::tryParseFloat(piece, value) || !(value >= 1.1754943508222875e-38) ||
        !(value <= 3.4028234663852886e+38) || NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(static_cast<float>(value));
    return true;
}

void appendText(std::string& text, float value) {
    NumberFormatter::append(text, double{value});
}

} // namespace

FloatEncoding::FloatEncoding(float value) : _values(1, value) {}

FloatEncoding::FloatEncoding(const std::vector<float>& values) : _values(values) {}

FloatEncoding::FloatEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for FloatEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for FloatEncoding");
    }
}

void FloatEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<FloatEncoding>(new FloatEncoding(text))->write(writer);
}

int FloatEncoding::check(const std::string& text) {
    std::vector<float> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(float));
}

AutoPtr<Encoding> FloatEncoding::decode(BitStreamReader& reader) {
    AutoPtr<FloatEncoding> pResult(new FloatEncoding(std::vector<float>()));
    decode(reader, pResult->_values);
    return pResult;
}

void FloatEncoding::decode(BitStreamReader& reader, std::vector<float>& values) {
    NumericValues::read(reader, values, "Illegal size entry for float value");
}

void FloatEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<float> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void FloatEncoding::parse(const std::string& text, std::vector<float>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

unsigned int FloatEncoding::type() const {
    return TYPE;
}

bool FloatEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const FloatEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void FloatEncoding::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

Encoding::DecodeMethod FloatEncoding::decodeMethod() const {
    return &FloatEncoding::decode;
}

Encoding::CheckMethod FloatEncoding::checkMethod() const {
    return &FloatEncoding::check;
}

Encoding::EncodeMethod FloatEncoding::encodeMethod() const {
    return &FloatEncoding::encode;
}

void FloatEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const float value : _values) {
            handler->encodedData(value);
        }
    }
}

void FloatEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
