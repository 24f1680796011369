#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Refusal.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DocumentAlgorithms.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/InvalidDecoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/PrimitiveDecoder.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include <array>

namespace Tamo::FastInfoset {

namespace {

// In the order of their numbers; the reserved ones are invalid too.
constexpr std::array<Encoding::DecodeMethod, EncodingAlgorithm::USER_DEFINED> BUILT_IN = [] {
    std::array<Encoding::DecodeMethod, EncodingAlgorithm::USER_DEFINED> methods{};
    methods.fill(&InvalidDecoding::decode);
    methods[HexEncoding::TYPE] = &HexEncoding::decode;
    methods[DWordEncoding::TYPE] = &DWordEncoding::decode;
    methods[ShortEncoding::TYPE] = &ShortEncoding::decode;
    methods[IntEncoding::TYPE] = &IntEncoding::decode;
    methods[LongEncoding::TYPE] = &LongEncoding::decode;
    methods[BoolEncoding::TYPE] = &BoolEncoding::decode;
    methods[FloatEncoding::TYPE] = &FloatEncoding::decode;
    methods[DoubleEncoding::TYPE] = &DoubleEncoding::decode;
    methods[UUIDEncoding::TYPE] = &UUIDEncoding::decode;
    methods[CDataEncoding::TYPE] = &CDataEncoding::decode;
    return methods;
}();

} // namespace

DecodingAlgorithm::DecodingAlgorithm() = default;

void DecodingAlgorithm::add(Encoding::DecodeMethod decodeMethod) {
    add(std::string(), decodeMethod);
}

void DecodingAlgorithm::add(const std::string& uri, Encoding::DecodeMethod decodeMethod) {
    _decodings.push_back(decodeMethod);
    _uris.push_back(uri);
}

AutoPtr<Encoding> DecodingAlgorithm::read(int index, BitStreamReader& reader) const {
    if (index >= 0 && static_cast<std::size_t>(index) < BUILT_IN.size()) {
        return BUILT_IN[static_cast<std::size_t>(index)](reader);
    }
    const std::size_t own = static_cast<std::size_t>(index) - BUILT_IN.size();
    if (index < 0 || own >= _decodings.size()) {
        return InvalidDecoding::decode(reader);
    }
    return read(_decodings[own], reader);
}

AutoPtr<Encoding> DecodingAlgorithm::read(unsigned int index, BitStreamReader& reader,
                                          const DocumentAlgorithms& algorithms) const {
    if (index < BUILT_IN.size() && BUILT_IN[index] != &InvalidDecoding::decode) {
        return BUILT_IN[index](reader);
    }
    static const std::string NONE;
    const std::string* const pURI = algorithms.find(index);
    const std::string& uri = pURI ? *pURI : NONE;
    for (std::size_t i = uri.empty() ? 0 : _uris.size(); i-- > 0;) {
        if (_uris[i] == uri) {
            return read(_decodings[i], reader);
        }
    }
    AutoPtr<Encoding> pValue;
    if (_fallback) {
        std::string octets;
        PrimitiveDecoder::nonEmptyOctetString(reader, octets);
        pValue = _fallback(uri, index, octets);
    }
    if (!pValue) {
        Refusal::at(reader,
                    "encoding algorithm " + std::to_string(index) +
                        (uri.empty() ? ", for which the document declares no URI"
                                     : ", " + uri + ", for which no decoding is registered"),
                    "8.3");
    }
    return pValue;
}

AutoPtr<Encoding> DecodingAlgorithm::read(Encoding::DecodeMethod decodeMethod,
                                          BitStreamReader& reader) const {
    try {
        return decodeMethod(reader);
    } catch (const AssertionViolationException&) {
        // A reader asserts that a memory block holds what is asked for; no document ends with a value.
        if (reader.isExhausted()) {
            throw FISParseException("Unexpected end of stream while reading the value of an algorithm");
        }
        throw;
    }
}

} // namespace Tamo::FastInfoset
