#include "Tamo/FastInfoset/ShortEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"

namespace Tamo::FastInfoset {

namespace {

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
bool accept(std::string_view piece, std::vector<Int16>& values) {
    int value = 0;
    if (!NumberParser::tryParse(piece, value) || value < -32768 || value > 32767 ||
        NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(static_cast<Int16>(value));
    return true;
}

void appendText(std::string& text, Int16 value) {
    NumberFormatter::append(text, int{value});
}

} // namespace

ShortEncoding::ShortEncoding(Int16 value) : _values(1, value) {}

ShortEncoding::ShortEncoding(const std::vector<Int16>& values) : _values(values) {}

ShortEncoding::ShortEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for ShortEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for ShortEncoding");
    }
}

void ShortEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<ShortEncoding>(new ShortEncoding(text))->write(writer);
}

int ShortEncoding::check(const std::string& text) {
    std::vector<Int16> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(Int16));
}

AutoPtr<Encoding> ShortEncoding::decode(BitStreamReader& reader) {
    AutoPtr<ShortEncoding> pResult(new ShortEncoding(std::vector<Int16>()));
    decode(reader, pResult->_values);
    return pResult;
}

void ShortEncoding::decode(BitStreamReader& reader, std::vector<Int16>& values) {
    NumericValues::read(reader, values, "Illegal size entry for Tamo::Int16 value");
}

void ShortEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<Int16> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void ShortEncoding::parse(const std::string& text, std::vector<Int16>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

unsigned int ShortEncoding::type() const {
    return TYPE;
}

bool ShortEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const ShortEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void ShortEncoding::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

Encoding::DecodeMethod ShortEncoding::decodeMethod() const {
    return &ShortEncoding::decode;
}

Encoding::CheckMethod ShortEncoding::checkMethod() const {
    return &ShortEncoding::check;
}

Encoding::EncodeMethod ShortEncoding::encodeMethod() const {
    return &ShortEncoding::encode;
}

void ShortEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const Int16 value : _values) {
            handler->encodedData(value);
        }
    }
}

void ShortEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
