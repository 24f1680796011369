#include "Tamo/FastInfoset/DecodingAlgorithm.h"
#include "Tamo/Bugcheck.h"
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

namespace Tamo::FastInfoset {

DecodingAlgorithm::DecodingAlgorithm() {
    initializeDecodings();
}

void DecodingAlgorithm::initializeDecodings() {
    _decodings.reserve(EncodingAlgorithm::USER_DEFINED);
    add(&InvalidDecoding::decode);
    add(&HexEncoding::decode);
    add(&DWordEncoding::decode);
    add(&ShortEncoding::decode);
    add(&IntEncoding::decode);
    add(&LongEncoding::decode);
    add(&BoolEncoding::decode);
    add(&FloatEncoding::decode);
    add(&DoubleEncoding::decode);
    add(&UUIDEncoding::decode);
    add(&CDataEncoding::decode);
    while (_decodings.size() < EncodingAlgorithm::USER_DEFINED) {
        add(&InvalidDecoding::decode);
    }
    tamo_assert(_decodings.size() == EncodingAlgorithm::USER_DEFINED);
}

void DecodingAlgorithm::add(Encoding::DecodeMethod decodeMethod) {
    _decodings.push_back(decodeMethod);
}

AutoPtr<Encoding> DecodingAlgorithm::read(int index, BitStreamReader& reader) const {
    if (index < 0 || static_cast<std::size_t>(index) >= _decodings.size()) {
        return InvalidDecoding::decode(reader);
    }
    return _decodings[static_cast<std::size_t>(index)](reader);
}

} // namespace Tamo::FastInfoset
