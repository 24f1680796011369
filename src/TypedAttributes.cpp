#include "Tamo/FastInfoset/TypedAttributes.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "TypedText.h"

namespace Tamo::FastInfoset {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

// What the accessors of values look at where there is only text.
const AutoPtr<Encoding>& noValue() {
    static const AutoPtr<Encoding> NONE(new NullEncoding);
    return NONE;
}

} // namespace

TypedAttributes::TypedAttributes(const TypedAttributes& other)
    : DirectLookUps(other),
      _list(other.texts()),
      _values(other._values),
      _lowerCaseUUIDs(other._lowerCaseUUIDs),
      _canonicalNumbers(other._canonicalNumbers) {
    for (Value& value : _values) {
        if (value.pURI) {
            value.uri = *value.pURI;
            value.pURI = nullptr;
        }
    }
}

TypedAttributes& TypedAttributes::operator=(const TypedAttributes& other) {
    if (&other != this) {
        *this = TypedAttributes(other);
    }
    return *this;
}

const TypedAttributes::Value& TypedAttributes::at(int i) const {
    tamo_assert(i >= 0 && static_cast<std::size_t>(i) < _values.size());
    return _values[static_cast<std::size_t>(i)];
}

const std::string& TypedAttributes::getValue(int i) const {
    const Value& value = at(i);
    if (!value.pEncoding || value.hasText) {
        return texts().getValue(i);
    }
    if (!value.text) {
        value.text = TypedText{_lowerCaseUUIDs, _canonicalNumbers}.of(*value.pEncoding);
    }
    return *value.text;
}

int TypedAttributes::getIndex(const std::string& uri, const std::string& localName) const {
    return texts().getIndex(uri, localName);
}

int TypedAttributes::getIndex(const std::string& qname) const {
    return texts().getIndex(qname);
}

// ---- filling

void TypedAttributes::clear() noexcept {
    _pTexts = nullptr;
    _list.clear();
    _values.clear();
}

void TypedAttributes::setAttributes(const XML::Attributes& attributes) {
    if (&attributes != this) {
        _list.setAttributes(attributes);
        _pTexts = nullptr;
        _values.assign(static_cast<std::size_t>(_list.getLength()), Value());
    }
}

void TypedAttributes::refer(const XML::Attributes& texts) {
    _pTexts = &texts;
    _values.assign(static_cast<std::size_t>(texts.getLength()), Value());
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::string_view text) {
    static const std::string TYPE("CDATA");
    _values.emplace_back();
    try {
        _list.addAttribute(uri, localName, qname, TYPE, std::string(text));
    } catch (...) {
        _values.pop_back();
        throw;
    }
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, const AutoPtr<Encoding>& pValue) {
    tamo_check_ptr(pValue.get());
    addAttribute(uri, localName, qname, std::string_view());
    setValue(getLength() - 1, pValue, pValue->type(), EMPTY);
}

template<class E, class T>
void TypedAttributes::addArray(const std::string& uri, const std::string& localName, const std::string& qname,
                               std::span<const T> values) {
    if (values.empty()) {
        addAttribute(uri, localName, qname, std::string_view());
    } else {
        addAttribute(uri, localName, qname,
                     AutoPtr<Encoding>(new E(std::vector<T>(values.begin(), values.end()))));
    }
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const std::byte> octets) {
    if (octets.empty()) {
        addAttribute(uri, localName, qname, std::string_view());
    } else {
        addAttribute(uri, localName, qname,
                     AutoPtr<Encoding>(
                         new DWordEncoding(reinterpret_cast<const char*>(octets.data()), octets.size())));
    }
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const Int16> values) {
    addArray<ShortEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const Int32> values) {
    addArray<IntEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const Int64> values) {
    addArray<LongEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const float> values) {
    addArray<FloatEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const double> values) {
    addArray<DoubleEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, std::span<const UUID> values) {
    addArray<UUIDEncoding>(uri, localName, qname, values);
}

void TypedAttributes::addAttribute(const std::string& uri, const std::string& localName,
                                   const std::string& qname, const std::vector<bool>& values) {
    if (values.empty()) {
        addAttribute(uri, localName, qname, std::string_view());
    } else {
        addAttribute(uri, localName, qname, AutoPtr<Encoding>(new BoolEncoding(values)));
    }
}

void TypedAttributes::setValue(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm,
                               const std::string& uri) {
    tamo_check_ptr(pValue.get());
    at(i);
    _values[static_cast<std::size_t>(i)] = {pValue, algorithm, uri, nullptr, false, std::nullopt};
}

void TypedAttributes::referToValue(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm,
                                   const std::string& uri) {
    at(i);
    _values[static_cast<std::size_t>(i)] = {pValue, algorithm, {}, &uri, false, std::nullopt};
}

void TypedAttributes::setTyped(int i, const AutoPtr<Encoding>& pValue) {
    setValue(i, pValue, pValue->type(), EMPTY);
    _values[static_cast<std::size_t>(i)].hasText = true;
}

// ---- values

const AutoPtr<Encoding>& TypedAttributes::encoding(int i) const {
    return at(i).pEncoding;
}

unsigned int TypedAttributes::algorithm(int i) const {
    return at(i).algorithm;
}

const std::string& TypedAttributes::algorithmURI(int i) const {
    const Value& value = at(i);
    return value.pURI ? *value.pURI : value.uri;
}

TypedChunk TypedAttributes::chunk(int i) const {
    const Value& value = at(i);
    return TypedChunk(value.pEncoding ? value.pEncoding : noValue(), value.algorithm, algorithmURI(i));
}

std::span<const std::byte> TypedAttributes::octets(int i) const {
    return chunk(i).octets();
}

std::span<const Int16> TypedAttributes::int16Values(int i) const {
    return chunk(i).int16Values();
}

std::span<const Int32> TypedAttributes::int32Values(int i) const {
    return chunk(i).int32Values();
}

std::span<const Int64> TypedAttributes::int64Values(int i) const {
    return chunk(i).int64Values();
}

std::span<const float> TypedAttributes::floatValues(int i) const {
    return chunk(i).floatValues();
}

std::span<const double> TypedAttributes::doubleValues(int i) const {
    return chunk(i).doubleValues();
}

std::span<const UUID> TypedAttributes::uuidValues(int i) const {
    return chunk(i).uuidValues();
}

const std::vector<bool>& TypedAttributes::boolValues(int i) const {
    return chunk(i).boolValues();
}

} // namespace Tamo::FastInfoset
