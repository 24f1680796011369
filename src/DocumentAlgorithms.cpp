#include "Tamo/FastInfoset/DocumentAlgorithms.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>

namespace Tamo::FastInfoset {

void DocumentAlgorithms::setFirstIndex(unsigned int index) {
    if (index < FIRST || index > LAST) {
        throw InvalidArgumentException("No algorithm of an application has the index", std::to_string(index));
    }
    _firstIndex = index;
}

unsigned int DocumentAlgorithms::add(const std::string& uri) {
    const std::size_t index = _firstIndex + _uris.size();
    if (index > LAST) {
        throw FISEncodingException("No index is left for the encoding algorithm " + uri + " (X.891, C.29)");
    }
    _uris.push_back(uri);
    return static_cast<unsigned int>(index);
}

const std::string* DocumentAlgorithms::find(unsigned int index) const noexcept {
    return index >= _firstIndex && index - _firstIndex < _uris.size() ? &_uris[index - _firstIndex] : nullptr;
}

unsigned int DocumentAlgorithms::indexOf(std::string_view uri) const noexcept {
    const auto it = std::find(_uris.begin(), _uris.end(), uri);
    return it == _uris.end() ? 0 : _firstIndex + static_cast<unsigned int>(it - _uris.begin());
}

} // namespace Tamo::FastInfoset
