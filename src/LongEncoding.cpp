#include "Tamo/FastInfoset/LongEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"

namespace Tamo::FastInfoset {

namespace {

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
bool accept(std::string_view piece, std::vector<Int64>& values) {
    Int64 value = 0;
    if (!NumberParser::tryParse64(piece, value) || NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(value);
    return true;
}

void appendText(std::string& text, Int64 value) {
    NumberFormatter::append(text, value);
}

} // namespace

LongEncoding::LongEncoding(Int64 value) : _values(1, value) {}

LongEncoding::LongEncoding(const std::vector<Int64>& values) : _values(values) {}

LongEncoding::LongEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for LongEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for LongEncoding");
    }
}

void LongEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<LongEncoding>(new LongEncoding(text))->write(writer);
}

int LongEncoding::check(const std::string& text) {
    std::vector<Int64> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(Int64));
}

AutoPtr<Encoding> LongEncoding::decode(BitStreamReader& reader) {
    AutoPtr<LongEncoding> pResult(new LongEncoding(std::vector<Int64>()));
    decode(reader, pResult->_values);
    return pResult;
}

void LongEncoding::decode(BitStreamReader& reader, std::vector<Int64>& values) {
    NumericValues::read(reader, values, "Illegal size entry for Tamo::Int64 value");
}

void LongEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<Int64> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void LongEncoding::parse(const std::string& text, std::vector<Int64>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

unsigned int LongEncoding::type() const {
    return TYPE;
}

bool LongEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const LongEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void LongEncoding::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

Encoding::DecodeMethod LongEncoding::decodeMethod() const {
    return &LongEncoding::decode;
}

Encoding::CheckMethod LongEncoding::checkMethod() const {
    return &LongEncoding::check;
}

Encoding::EncodeMethod LongEncoding::encodeMethod() const {
    return &LongEncoding::encode;
}

void LongEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const Int64 value : _values) {
            handler->encodedData(value);
        }
    }
}

void LongEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
