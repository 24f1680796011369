#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"

namespace Tamo::FastInfoset {

namespace {

template<class E>
auto valuesOf(const Encoding& encoding) noexcept {
    const E* const pArray = encoding.type() == E::TYPE ? dynamic_cast<const E*>(&encoding) : nullptr;
    return pArray ? std::span(pArray->values()) : decltype(std::span(pArray->values()))();
}

} // namespace

std::span<const std::byte> TypedChunk::octets() const noexcept {
    const Encoding& encoding = *_pEncoding;
    if (encoding.type() != HexEncoding::TYPE && encoding.type() != DWordEncoding::TYPE) {
        return {};
    }
    return std::as_bytes(std::span(encoding.content().data(), encoding.content().size()));
}

std::span<const Int16> TypedChunk::int16Values() const noexcept {
    return valuesOf<ShortEncoding>(*_pEncoding);
}

std::span<const Int32> TypedChunk::int32Values() const noexcept {
    return valuesOf<IntEncoding>(*_pEncoding);
}

std::span<const Int64> TypedChunk::int64Values() const noexcept {
    return valuesOf<LongEncoding>(*_pEncoding);
}

std::span<const float> TypedChunk::floatValues() const noexcept {
    return valuesOf<FloatEncoding>(*_pEncoding);
}

std::span<const double> TypedChunk::doubleValues() const noexcept {
    return valuesOf<DoubleEncoding>(*_pEncoding);
}

std::span<const UUID> TypedChunk::uuidValues() const noexcept {
    return valuesOf<UUIDEncoding>(*_pEncoding);
}

const std::vector<bool>& TypedChunk::boolValues() const noexcept {
    static const std::vector<bool> NONE;
    const Encoding& encoding = *_pEncoding;
    const auto* const pArray =
        encoding.type() == BoolEncoding::TYPE ? dynamic_cast<const BoolEncoding*>(&encoding) : nullptr;
    return pArray ? pArray->values() : NONE;
}

} // namespace Tamo::FastInfoset
