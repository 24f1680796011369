#include "TypedText.h"
#include "NumericValues.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "Tamo/NumberFormatter.h"

namespace Tamo::FastInfoset {

namespace {

template<class E>
void joinCanonically(E& value) {
    std::string& text = value.content();
    text.clear();
    NumericValues::join(value.values(), text, [](std::string& joined, auto number) {
        NumberFormatter::appendCanonical(joined, number);
    });
}

} // namespace

void TypedText::createContent(Encoding& value) const {
    if (canonicalNumbers) {
        if (auto* const pFloats = dynamic_cast<FloatEncoding*>(&value)) {
            joinCanonically(*pFloats);
            return;
        }
        if (auto* const pDoubles = dynamic_cast<DoubleEncoding*>(&value)) {
            joinCanonically(*pDoubles);
            return;
        }
    }
    value.createContent();
    if (lowerCaseUUIDs && dynamic_cast<UUIDEncoding*>(&value)) {
        for (char& c : value.content()) {
            c = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
}

std::string TypedText::of(Encoding& value) const {
    if (value.type() == HexEncoding::TYPE || value.type() == DWordEncoding::TYPE) {
        return StringDecoder::textOf(value);
    }
    createContent(value);
    return static_cast<const Encoding&>(value).content();
}

} // namespace Tamo::FastInfoset
