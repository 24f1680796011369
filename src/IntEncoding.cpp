#include "Tamo/FastInfoset/IntEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"

namespace Tamo::FastInfoset {

namespace {

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
bool accept(std::string_view piece, std::vector<Int32>& values) {
    Int64 value = 0;
    if (!NumberParser::tryParse64(piece, value) || value < -2147483648L || value > 2147483647L ||
        NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(static_cast<Int32>(value));
    return true;
}

void appendText(std::string& text, Int32 value) {
    NumberFormatter::append(text, value);
}

} // namespace

IntEncoding::IntEncoding(Int32 value) : _values(1, value) {}

IntEncoding::IntEncoding(const std::vector<Int32>& values) : _values(values) {}

IntEncoding::IntEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for IntEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for IntEncoding");
    }
}

void IntEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<IntEncoding>(new IntEncoding(text))->write(writer);
}

int IntEncoding::check(const std::string& text) {
    std::vector<Int32> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(Int32));
}

AutoPtr<Encoding> IntEncoding::decode(BitStreamReader& reader) {
    AutoPtr<IntEncoding> pResult(new IntEncoding(std::vector<Int32>()));
    decode(reader, pResult->_values);
    return pResult;
}

void IntEncoding::decode(BitStreamReader& reader, std::vector<Int32>& values) {
    NumericValues::read(reader, values, "Illegal size entry for Tamo::Int32 value");
}

void IntEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<Int32> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void IntEncoding::parse(const std::string& text, std::vector<Int32>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

unsigned int IntEncoding::type() const {
    return TYPE;
}

bool IntEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const IntEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void IntEncoding::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

Encoding::DecodeMethod IntEncoding::decodeMethod() const {
    return &IntEncoding::decode;
}

Encoding::CheckMethod IntEncoding::checkMethod() const {
    return &IntEncoding::check;
}

Encoding::EncodeMethod IntEncoding::encodeMethod() const {
    return &IntEncoding::encode;
}

void IntEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const Int32 value : _values) {
            handler->encodedData(value);
        }
    }
}

void IntEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
