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

const std::string* ResolvedNames::qualifiedNameOf(const Name& name, bool isComplete) noexcept {
    return !name.pPrefix->empty() ? nullptr : isComplete ? name.pLocalName : &NO_NAME;
}

bool ResolvedNames::isKept(const Name& name) noexcept {
    return name.pPrefix->size() + name.pLocalName->size() < LONGEST_KEPT;
}

void ResolvedNames::grow(unsigned int index) {
    const std::size_t own = index - _baseSize;
    if (own >= MOST) {
        _furtherIndex = index;
        return;
    }
    const std::size_t needed = own + 1;
    _names.resize(std::max({needed, needed < 2 * _size ? 2 * _size : 0, FIRST_SIZE}));
    _size = _names.size();
}

const std::string& ResolvedNames::makeQualifiedName(unsigned int index) {
    const std::size_t own = index - _baseSize;
    const bool isOwn = own < _size;
    const Name& name = isOwn ? _names[own] : *findElsewhere(index);
    const std::string* pQName = qualifiedNameOf(name, _isComplete);
    if (!pQName) {
        const bool kept = isOwn && isKept(name);
        if (kept && _qnameCount == _qnames.size()) {
            _qnames.emplace_back();
        }
        std::string& qname = kept ? _qnames[_qnameCount] : _longName;
        qname.assign(*name.pPrefix).append(1, ':').append(*name.pLocalName);
        if (!kept) {
            return qname;
        }
        ++_qnameCount;
        pQName = &qname;
    }
    if (isOwn) {
        _names[own].pQName = pQName;
    }
    return *pQName;
}

} // namespace Tamo::FastInfoset
