#include "NumericValues.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/NumberEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/NumberFormatter.h"
#include "Tamo/NumberParser.h"
#include <limits>
#include <type_traits>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

/// What the encodings call themselves and their values in messages.
template<class Value>
struct Names;

template<>
struct Names<Int16> {
    static constexpr const char* ENCODING = "ShortEncoding";
    static constexpr const char* VALUE = "Tamo::Int16";
};

template<>
struct Names<Int32> {
    static constexpr const char* ENCODING = "IntEncoding";
    static constexpr const char* VALUE = "Tamo::Int32";
};

template<>
struct Names<Int64> {
    static constexpr const char* ENCODING = "LongEncoding";
    static constexpr const char* VALUE = "Tamo::Int64";
};

template<>
struct Names<float> {
    static constexpr const char* ENCODING = "FloatEncoding";
    static constexpr const char* VALUE = "float";
};

template<>
struct Names<double> {
    static constexpr const char* ENCODING = "DoubleEncoding";
    static constexpr const char* VALUE = "double";
};

/// The type that a value is spelled and read as.
template<class Value>
using Wide = std::conditional_t<std::is_integral_v<Value>, Int64, double>;

bool tryParse(std::string_view piece, Int64& value) {
    return NumberParser::tryParse64(piece, value);
}

bool tryParse(std::string_view piece, double& value) {
    return NumberParser::tryParseFloat(piece, value);
}

/// Whether the text of a value may stand for this one.
template<class Value>
bool isAllowed(Wide<Value> value) {
    if constexpr (std::is_integral_v<Value>) {
        return std::in_range<Value>(value);
    } else if constexpr (std::is_same_v<Value, float>) {
        return value >= std::numeric_limits<float>::min() && value <= std::numeric_limits<float>::max();
    } else {
        return true;
    }
}

// Only the spelling that the formatter produces is accepted, so that text survives the way through octets.
template<class Value>
bool accept(std::string_view piece, std::vector<Value>& values) {
    Wide<Value> value = 0;
    if (!tryParse(piece, value) || !isAllowed<Value>(value) || NumberFormatter::format(value) != piece) {
        return false;
    }
    values.push_back(static_cast<Value>(value));
    return true;
}

template<class Value>
void split(std::string_view text, std::vector<Value>& values) {
    NumericValues::split(text, values, [&](std::string_view piece) { return accept(piece, values); });
}

template<class Value>
void join(const std::vector<Value>& values, std::string& text) {
    NumericValues::join(values, text, [](std::string& joined, Value value) {
        NumberFormatter::append(joined, Wide<Value>{value});
    });
}

} // namespace

template<class Derived, class Value>
NumberEncoding<Derived, Value>::NumberEncoding(const std::string& text) {
    if (text.empty()) {
        throw FISEncodingException(std::string("Illegal (empty) data for ") + Names<Value>::ENCODING);
    }
    parse(text, _values);
    if (_values.empty()) {
        throw FISEncodingException(std::string("Illegal value string for ") + Names<Value>::ENCODING);
    }
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::encode(BitStreamWriter& writer, const std::string& text) {
    AutoPtr<Derived>(new Derived(text))->write(writer);
}

template<class Derived, class Value>
int NumberEncoding<Derived, Value>::check(const std::string& text) {
    std::vector<Value> values;
    parse(text, values);
    return static_cast<int>(values.size() * sizeof(Value));
}

template<class Derived, class Value>
AutoPtr<Encoding> NumberEncoding<Derived, Value>::decode(BitStreamReader& reader) {
    AutoPtr<Derived> pResult(new Derived(std::vector<Value>()));
    NumberEncoding& result = *pResult;
    decode(reader, result._values);
    return pResult;
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::decode(BitStreamReader& reader, std::vector<Value>& values) {
    NumericValues::read(reader, values, Names<Value>::VALUE);
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::decode(BitStreamReader& reader, std::string& text) {
    std::vector<Value> values;
    decode(reader, values);
    text.clear();
    join(values, text);
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::parse(const std::string& text, std::vector<Value>& values) {
    split(text, values);
}

template<class Derived, class Value>
unsigned int NumberEncoding<Derived, Value>::type() const {
    return Derived::TYPE;
}

template<class Derived, class Value>
bool NumberEncoding<Derived, Value>::merge(const Encoding& other) {
    const auto* pOther =
        other.type() == Derived::TYPE ? dynamic_cast<const NumberEncoding*>(&other) : nullptr;
    if (!pOther) {
        return false;
    }
    NumericValues::merge(_values, pOther->_values);
    return true;
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::write(BitStreamWriter& writer) const {
    NumericValues::write(writer, _values);
}

template<class Derived, class Value>
Encoding::DecodeMethod NumberEncoding<Derived, Value>::decodeMethod() const {
    return &NumberEncoding::decode;
}

template<class Derived, class Value>
Encoding::CheckMethod NumberEncoding<Derived, Value>::checkMethod() const {
    return &NumberEncoding::check;
}

template<class Derived, class Value>
Encoding::EncodeMethod NumberEncoding<Derived, Value>::encodeMethod() const {
    return &NumberEncoding::encode;
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::handle(FISContentHandler* handler) const {
    if (handler) {
        for (const Value value : _values) {
            handler->encodedData(value);
        }
    }
}

template<class Derived, class Value>
void NumberEncoding<Derived, Value>::createContent() {
    _content.clear();
    join(_values, _content);
}

template class NumberEncoding<ShortEncoding, Int16>;
template class NumberEncoding<IntEncoding, Int32>;
template class NumberEncoding<LongEncoding, Int64>;
template class NumberEncoding<FloatEncoding, float>;
template class NumberEncoding<DoubleEncoding, double>;

} // namespace Tamo::FastInfoset
