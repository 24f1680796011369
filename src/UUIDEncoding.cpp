#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/HexBinary.h"

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t WIDTH = 16;

// The canonical text in upper case: hexadecimal digits in groups of 4, 2, 2, 2 and 6 octets.
void appendText(std::string& text, const UUID& value) {
    const std::string_view octets(reinterpret_cast<const char*>(value.octets().data()), WIDTH);
    static constexpr std::size_t GROUPS[] = {4, 2, 2, 2, 6};
    std::size_t start = 0;
    for (const std::size_t group : GROUPS) {
        if (start != 0) {
            text.push_back('-');
        }
        HexBinary::encode(octets.substr(start, group), text);
        start += group;
    }
}

} // namespace

UUIDEncoding::UUIDEncoding(const UUID& value) : _values(1, value) {}

UUIDEncoding::UUIDEncoding(const std::vector<UUID>& values) : _values(values) {
    if (values.empty()) {
        throw FISEncodingException("Illegal (empty) data for UUIDEncoding");
    }
}

UUIDEncoding::UUIDEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for UUIDEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for UUIDEncoding");
    }
}

void UUIDEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<UUIDEncoding>(new UUIDEncoding(text))->write(writer);
}

int UUIDEncoding::check(const std::string& text) {
    std::vector<UUID> uuids;
    parse(text, uuids);
    return static_cast<int>(uuids.size() * WIDTH);
}

AutoPtr<Encoding> UUIDEncoding::decode(BitStreamReader& reader) {
    AutoPtr<UUIDEncoding> pResult(new UUIDEncoding);
    decode(reader, pResult->_values);
    return pResult;
}

void UUIDEncoding::decode(BitStreamReader& reader, std::vector<UUID>& values) {
    std::size_t length = 0;
    PrimitiveDecoder::nonEmptyStringLength(reader, length);
    if (length % WIDTH != 0) {
        throw FISEncodingException("Illegal size entry for Tamo::UUID value");
    }
    std::string octets;
    for (std::size_t done = 0; done < length; done += WIDTH) {
        reader.read(octets, WIDTH);
        values.push_back(UUID::fromOctets(reinterpret_cast<const unsigned char*>(octets.data())));
    }
}

void UUIDEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<UUID> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void UUIDEncoding::parse(const std::string& text, std::vector<UUID>& uuids) {
    NumericValues::split(text, uuids, [&](std::string_view piece) {
        UUID value;
        if (!value.tryParse(piece)) {
            return false;
        }
        uuids.push_back(value);
        return true;
    });
}

unsigned int UUIDEncoding::type() const {
    return TYPE;
}

bool UUIDEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const UUIDEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void UUIDEncoding::write(BitStreamWriter& writer) const {
    Encoder::nonEmptyStringLength(writer, _values.size() * WIDTH);
    for (const UUID& value : _values) {
        writer.write(reinterpret_cast<const char*>(value.octets().data()), WIDTH);
    }
}

Encoding::DecodeMethod UUIDEncoding::decodeMethod() const {
    return &UUIDEncoding::decode;
}

Encoding::CheckMethod UUIDEncoding::checkMethod() const {
    return &UUIDEncoding::check;
}

Encoding::EncodeMethod UUIDEncoding::encodeMethod() const {
    return &UUIDEncoding::encode;
}

void UUIDEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const UUID& value : _values) {
            handler->encodedData(value);
        }
    }
}

void UUIDEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
