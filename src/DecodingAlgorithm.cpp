#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/InvalidDecoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
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
    _decodings.push_back(decodeMethod);
}

AutoPtr<Encoding> DecodingAlgorithm::read(int index, BitStreamReader& reader) const {
    if (index >= 0 && static_cast<std::size_t>(index) < BUILT_IN.size()) {
        return BUILT_IN[static_cast<std::size_t>(index)](reader);
    }
    const std::size_t own = static_cast<std::size_t>(index) - BUILT_IN.size();
    if (index < 0 || own >= _decodings.size()) {
        return InvalidDecoding::decode(reader);
    }
    try {
        return _decodings[own](reader);
    } catch (const AssertionViolationException&) {
        // A reader asserts that a memory block holds what is asked for; no document ends with a value.
        if (!reader.hasOctet()) {
            throw FISParseException("Unexpected end of stream while reading the value of an algorithm");
        }
        throw;
    }
}

} // namespace Tamo::FastInfoset
