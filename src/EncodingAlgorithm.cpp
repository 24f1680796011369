#include "Tamo/FastInfoset/EncodingAlgorithm.h"
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
#include <array>
#include <limits>

namespace Tamo::FastInfoset {

namespace {

// In the order of their numbers; the reserved ones are invalid too.
constexpr std::array<Encoding::EncodeMethod, EncodingAlgorithm::USER_DEFINED> ENCODINGS = [] {
    std::array<Encoding::EncodeMethod, EncodingAlgorithm::USER_DEFINED> methods{};
    methods.fill(&InvalidEncoding::encode);
    methods[HexEncoding::TYPE] = &HexEncoding::encode;
    methods[DWordEncoding::TYPE] = &DWordEncoding::encode;
    methods[ShortEncoding::TYPE] = &ShortEncoding::encode;
    methods[IntEncoding::TYPE] = &IntEncoding::encode;
    methods[LongEncoding::TYPE] = &LongEncoding::encode;
    methods[BoolEncoding::TYPE] = &BoolEncoding::encode;
    methods[FloatEncoding::TYPE] = &FloatEncoding::encode;
    methods[DoubleEncoding::TYPE] = &DoubleEncoding::encode;
    methods[UUIDEncoding::TYPE] = &UUIDEncoding::encode;
    methods[CDataEncoding::TYPE] = &CDataEncoding::encode;
    return methods;
}();

constexpr std::array<Encoding::CheckMethod, EncodingAlgorithm::USER_DEFINED> CHECKS = [] {
    std::array<Encoding::CheckMethod, EncodingAlgorithm::USER_DEFINED> methods{};
    methods.fill(&InvalidEncoding::check);
    methods[HexEncoding::TYPE] = &HexEncoding::check;
    methods[DWordEncoding::TYPE] = &DWordEncoding::check;
    methods[ShortEncoding::TYPE] = &ShortEncoding::check;
    methods[IntEncoding::TYPE] = &IntEncoding::check;
    methods[LongEncoding::TYPE] = &LongEncoding::check;
    methods[BoolEncoding::TYPE] = &BoolEncoding::check;
    methods[FloatEncoding::TYPE] = &FloatEncoding::check;
    methods[DoubleEncoding::TYPE] = &DoubleEncoding::check;
    methods[UUIDEncoding::TYPE] = &UUIDEncoding::check;
    methods[CDataEncoding::TYPE] = &CDataEncoding::check;
    return methods;
}();

} // namespace

EncodingAlgorithm::EncodingAlgorithm() = default;

void EncodingAlgorithm::add(Encoding::EncodeMethod encodeMethod, Encoding::CheckMethod checkMethod) {
    add(std::string(), encodeMethod, checkMethod);
}

void EncodingAlgorithm::add(const std::string& uri, Encoding::EncodeMethod encodeMethod,
                            Encoding::CheckMethod checkMethod) {
    _encodings.push_back(encodeMethod);
    _checks.push_back(checkMethod);
    _uris.push_back(uri);
}

void EncodingAlgorithm::encode(unsigned int index, BitStreamWriter& writer, const std::string& text) const {
    if (index < USER_DEFINED) {
        ENCODINGS[index](writer, text);
    } else if (index - USER_DEFINED < _encodings.size()) {
        _encodings[index - USER_DEFINED](writer, text);
    } else {
        InvalidEncoding::encode(writer, text);
    }
}

int EncodingAlgorithm::check(unsigned int index, const std::string& text) const {
    if (index < USER_DEFINED) {
        return CHECKS[index](text);
    }
    return index - USER_DEFINED < _checks.size() ? _checks[index - USER_DEFINED](text)
                                                 : InvalidEncoding::check(text);
}

unsigned int EncodingAlgorithm::findEncoding(const std::string& text) const {
    int best = std::numeric_limits<int>::max();
    unsigned int bestIndex = 0;
    for (unsigned int i = 0; i < USER_DEFINED + _checks.size(); ++i) {
        const int score = check(i, text);
        if (score > 0 && score < best) {
            best = score;
            bestIndex = i;
        }
    }
    return bestIndex;
}

} // namespace Tamo::FastInfoset
