#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
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
    return index < 0 || own >= _decodings.size() ? InvalidDecoding::decode(reader) : _decodings[own](reader);
}

} // namespace Tamo::FastInfoset
