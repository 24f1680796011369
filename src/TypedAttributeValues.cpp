#include "TypedAttributeValues.h"
#include "Tamo/Export.h"
#include <string>

namespace Tamo::FastInfoset {

namespace {

TAMO_CONSTINIT const std::string EMPTY;

} // namespace

void TypedAttributeValues::add(int i, const AutoPtr<Encoding>& pValue, unsigned int algorithm) {
    _values.push_back({i, pValue, algorithm});
    _isEmpty = false;
}

const XML::Attributes& TypedAttributeValues::listOf(const XML::Attributes& texts,
                                                    const DocumentAlgorithms& algorithms,
                                                    const TypedText& form) {
    _list.refer(texts);
    _list.setTextForm(form.lowerCaseUUIDs, form.canonicalNumbers);
    for (const Value& value : _values) {
        const std::string* const pURI = algorithms.find(value.algorithm);
        _list.referToValue(value.place, value.pEncoding, value.algorithm, pURI ? *pURI : EMPTY);
    }
    clear();
    return _list;
}

} // namespace Tamo::FastInfoset
