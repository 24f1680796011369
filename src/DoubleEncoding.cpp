#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"

namespace Tamo::FastInfoset {

namespace {

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
bool accept(std::string_view piece, std::vector<double>& values) {
    double value = 0;
    if (!NumberParser::tryParseFloat(piece, value) || NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(value);
    return true;
}

void appendText(std::string& text, double value) {
    NumberFormatter::append(text, value);
}

} // namespace

DoubleEncoding::DoubleEncoding(double value) : _values(1, value) {}

DoubleEncoding::DoubleEncoding(const std::vector<double>& values) : _values(values) {}

DoubleEncoding::DoubleEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for DoubleEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for DoubleEncoding");
    }
}

void DoubleEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<DoubleEncoding>(new DoubleEncoding(text))->write(writer);
}

int DoubleEncoding::check(const std::string& text) {
    std::vector<double> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(double));
}

AutoPtr<Encoding> DoubleEncoding::decode(BitStreamReader& reader) {
    AutoPtr<DoubleEncoding> pResult(new DoubleEncoding(std::vector<double>()));
    decode(reader, pResult->_values);
    return pResult;
}

void DoubleEncoding::decode(BitStreamReader& reader, std::vector<double>& values) {
    NumericValues::read(reader, values, "Illegal size entry for double value");
}

void DoubleEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<double> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void DoubleEncoding::parse(const std::string& text, std::vector<double>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

unsigned int DoubleEncoding::type() const {
    return TYPE;
}

bool DoubleEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const DoubleEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void DoubleEncoding::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

Encoding::DecodeMethod DoubleEncoding::decodeMethod() const {
    return &DoubleEncoding::decode;
}

Encoding::CheckMethod DoubleEncoding::checkMethod() const {
    return &DoubleEncoding::check;
}

Encoding::EncodeMethod DoubleEncoding::encodeMethod() const {
    return &DoubleEncoding::encode;
}

void DoubleEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const double value : _values) {
            handler->encodedData(value);
        }
    }
}

void DoubleEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
