#include "Tamo/FastInfoset/ResolvedNames.h"
#include <algorithm>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t FIRST_SIZE = 32;

const std::string NO_NAME;

} // namespace

const ResolvedNames::Name& ResolvedNames::enter(unsigned int index, const std::string& prefix,
                                                const std::string& uri, const std::string& localName) {
    if (index >= _names.size()) {
        const std::size_t needed = static_cast<std::size_t>(index) + 1;
        _names.resize(std::max({needed, needed < 2 * _names.size() ? 2 * _names.size() : 0, FIRST_SIZE}));
    }
    _names[index] = Name{&prefix, &uri, &localName, nullptr};
    return _names[index];
}

const std::string& ResolvedNames::makeQualifiedName(unsigned int index) {
    Name& name = _names[index];
    if (name.pPrefix->empty()) {
        name.pQName = &NO_NAME;
    } else {
        if (_qnameCount == _qnames.size()) {
            _qnames.emplace_back();
        }
        std::string& qname = _qnames[_qnameCount++];
        qname.assign(*name.pPrefix).append(1, ':').append(*name.pLocalName);
        name.pQName = &qname;
    }
    return *name.pQName;
}

} // namespace Tamo::FastInfoset
