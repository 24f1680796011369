#include "ResolvedNames.h"
#include "Tamo/Export.h"
#include <algorithm>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t FIRST_SIZE = 32;

// Longer names are made anew at each use: a long prefix could be part of any number of them.
constexpr std::size_t LONGEST_KEPT = 128;

TAMO_CONSTINIT const std::string NO_NAME;

} // namespace

void ResolvedNames::grow(unsigned int index) {
    if (index >= MOST) {
        _furtherIndex = index;
        return;
    }
    const std::size_t needed = static_cast<std::size_t>(index) + 1;
    _names.resize(std::max({needed, needed < 2 * _size ? 2 * _size : 0, FIRST_SIZE}));
    _size = _names.size();
}

const std::string& ResolvedNames::makeQualifiedName(unsigned int index) {
    Name& name = index < _size ? _names[index] : _further;
    if (name.pPrefix->empty()) {
        name.pQName = _isComplete ? name.pLocalName : &NO_NAME;
        return *name.pQName;
    }
    const bool kept = index < MOST && name.pPrefix->size() + name.pLocalName->size() < LONGEST_KEPT;
    if (kept && _qnameCount == _qnames.size()) {
        _qnames.emplace_back();
    }
    std::string& qname = kept ? _qnames[_qnameCount] : _longName;
    qname.assign(*name.pPrefix).append(1, ':').append(*name.pLocalName);
    if (kept) {
        ++_qnameCount;
        name.pQName = &qname;
    }
    return qname;
}

} // namespace Tamo::FastInfoset
