#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/InvalidEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include <limits>

namespace Tamo::FastInfoset {

EncodingAlgorithm::EncodingAlgorithm() {
    initializeEncodings();
}

void EncodingAlgorithm::initializeEncodings() {
    _encodings.reserve(USER_DEFINED);
    _checks.reserve(USER_DEFINED);
    add(&InvalidEncoding::encode, &InvalidEncoding::check);
    add(&HexEncoding::encode, &HexEncoding::check);
    add(&DWordEncoding::encode, &DWordEncoding::check);
    add(&ShortEncoding::encode, &ShortEncoding::check);
    add(&IntEncoding::encode, &IntEncoding::check);
    add(&LongEncoding::encode, &LongEncoding::check);
    add(&BoolEncoding::encode, &BoolEncoding::check);
    add(&FloatEncoding::encode, &FloatEncoding::check);
    add(&DoubleEncoding::encode, &DoubleEncoding::check);
    add(&UUIDEncoding::encode, &UUIDEncoding::check);
    add(&CDataEncoding::encode, &CDataEncoding::check);
    while (_encodings.size() < USER_DEFINED) {
        add(&InvalidEncoding::encode, &InvalidEncoding::check);
    }
    tamo_assert(_encodings.size() == USER_DEFINED);
    tamo_assert(_checks.size() == USER_DEFINED);
}

void EncodingAlgorithm::add(Encoding::EncodeMethod encodeMethod, Encoding::CheckMethod checkMethod) {
    _encodings.push_back(encodeMethod);
    _checks.push_back(checkMethod);
}

void EncodingAlgorithm::encode(unsigned int index, BitStreamWriter& writer, const std::string& text) const {
    if (index >= _encodings.size()) {
        InvalidEncoding::encode(writer, text);
    } else {
        _encodings[index](writer, text);
    }
}

unsigned int EncodingAlgorithm::findEncoding(const std::string& text) const {
    int best = std::numeric_limits<int>::max();
    unsigned int bestIndex = 0;
    for (unsigned int i = 0; i < _checks.size(); ++i) {
        const int score = _checks[i](text);
        if (score > 0 && score < best) {
            best = score;
            bestIndex = i;
        }
    }
    return bestIndex;
}

} // namespace Tamo::FastInfoset
