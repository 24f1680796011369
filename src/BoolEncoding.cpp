#include "Tamo/FastInfoset/BoolEncoding.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/FISContentHandler.h"

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t HEADER_BITS = 4;

void appendText(std::string& text, bool value) {
    text.append(value ? "true" : "false");
}

} // namespace

BoolEncoding::BoolEncoding(bool value) : _values(1, value) {}

BoolEncoding::BoolEncoding(const std::vector<bool>& values) : _values(values) {}

BoolEncoding::BoolEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException("Illegal (empty) data for BoolEncoding");
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException("Illegal value string for BoolEncoding");
    }
}

BoolEncoding::BoolEncoding(const char* text) : BoolEncoding(std::string(text)) {}

void BoolEncoding::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<BoolEncoding>(new BoolEncoding(text))->write(writer);
}

int BoolEncoding::check(const std::string& text) {
    std::vector<bool> values;
    parse(text, values);
    // Deliberate: the four bits in front are not counted; the choice of an algorithm relies on this score.
    return static_cast<int>((values.size() + 7) / 8);
}

AutoPtr<Encoding> BoolEncoding::decode(BitStreamReader& reader) {
    AutoPtr<BoolEncoding> pResult(new BoolEncoding(std::vector<bool>()));
    decode(reader, pResult->_values);
    return pResult;
}

void BoolEncoding::decode(BitStreamReader& reader, std::vector<bool>& values) {
    std::size_t length = 0;
    PrimitiveDecoder::nonEmptyStringLength(reader, length);
    std::string octets;
    std::size_t bit = HEADER_BITS; // the next bit, counted within octets
    std::size_t unused = 0;
    for (std::size_t done = 0; done < length;) {
        constexpr std::size_t BLOCK = 4096;
        const std::size_t count = std::min(length - done, BLOCK);
        reader.read(octets, count);
        if (done == 0) {
            unused = static_cast<unsigned char>(octets[0]) >> HEADER_BITS;
            if (unused > length * 8 - HEADER_BITS) {
                throw FISEncodingException("Illegal size entry for bool value");
            }
        }
        done += count;
        // The unused bits can reach back by more than one octet: the end is that of the whole array.
        const std::size_t beyond = (length - done) * 8;
        const std::size_t end = count * 8 - std::min(unused - std::min(unused, beyond), count * 8);
        for (; bit < end; ++bit) {
            values.push_back(
                (static_cast<unsigned char>(octets[bit / 8]) & BitMasks::revertedPow2[bit % 8]) != 0);
        }
        bit = 0;
    }
}

void BoolEncoding::decode(BitStreamReader& reader, std::string& text) {
    std::vector<bool> values;
    decode(reader, values);
    text.clear();
    NumericValues::join(values, text, appendText);
}

void BoolEncoding::parse(const std::string& text, std::vector<bool>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) {
        if (piece != "true" && piece != "false") {
            return false;
        }
        values.push_back(piece == "true");
        return true;
    });
}

unsigned int BoolEncoding::type() const {
    return TYPE;
}

bool BoolEncoding::merge(const Encoding& other) {
    const auto* pOther = other.type() == TYPE ? dynamic_cast<const BoolEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

void BoolEncoding::write(BitStreamWriter& writer) const {
    const std::size_t length = (_values.size() + HEADER_BITS + 7) / 8;
    Encoder::nonEmptyStringLength(writer, length);
    std::string octets(length, '\0');
    const std::size_t unused = length * 8 - HEADER_BITS - _values.size();
    octets[0] = static_cast<char>(unused << HEADER_BITS);
    std::size_t bit = HEADER_BITS;
    for (const bool value : _values) {
        if (value) {
            octets[bit / 8] = static_cast<char>(octets[bit / 8] | BitMasks::revertedPow2[bit % 8]);
        }
        ++bit;
    }
    writer.write(octets);
}

Encoding::DecodeMethod BoolEncoding::decodeMethod() const {
    return &BoolEncoding::decode;
}

Encoding::CheckMethod BoolEncoding::checkMethod() const {
    return &BoolEncoding::check;
}

Encoding::EncodeMethod BoolEncoding::encodeMethod() const {
    return &BoolEncoding::encode;
}

void BoolEncoding::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const bool value : _values) {
            handler->encodedData(value);
        }
    }
}

void BoolEncoding::createContent() {
    _content.clear();
    NumericValues::join(_values, _content, appendText);
}

} // namespace Tamo::FastInfoset
