#include "AlgorithmIndex.h"
#include "LegalStrings.h"
#include "Tamo/FastInfoset/FISException.h"
#include <cstddef>
#include <vector>

namespace Tamo::FastInfoset {

unsigned int AlgorithmIndex::of(const DocumentAlgorithms& declared, const std::string& uri) {
    const unsigned int index = declared.indexOf(uri);
    if (index == 0) {
        throw FISEncodingException("Cannot write a value by the encoding algorithm " +
                                   LegalStrings::shown(uri) + ": the document does not declare it");
    }
    return index;
}

unsigned int AlgorithmIndex::of(const DocumentAlgorithms& declared, const EncodingAlgorithm& registered,
                                const Encoding& value) {
    constexpr unsigned int LAST_BUILT_IN = 10;
    const unsigned int type = value.type();
    if (type <= LAST_BUILT_IN) {
        return type;
    }
    const std::vector<std::string>& uris = registered.uris();
    const std::size_t number = std::size_t{type} - EncodingAlgorithm::USER_DEFINED;
    if (type < EncodingAlgorithm::USER_DEFINED || number >= uris.size() || uris[number].empty()) {
        throw FISEncodingException("Cannot write a value by the encoding algorithm " + std::to_string(type) +
                                   ": it is not registered with a URI");
    }
    return of(declared, uris[number]);
}

} // namespace Tamo::FastInfoset
