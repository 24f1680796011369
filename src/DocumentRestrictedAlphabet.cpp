#include "Tamo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Tamo/Bugcheck.h"
#include <utility>

namespace Tamo::FastInfoset {

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet() = default;

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(bool empty)
    : _pOwn(empty ? std::make_unique<std::vector<RestrictedAlphabet>>() : nullptr) {}

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(const DocumentRestrictedAlphabet& other)
    : _pOwn(other._pOwn ? std::make_unique<std::vector<RestrictedAlphabet>>(*other._pOwn) : nullptr) {}

DocumentRestrictedAlphabet& DocumentRestrictedAlphabet::operator=(DocumentRestrictedAlphabet other) noexcept {
    _pOwn = std::move(other._pOwn);
    return *this;
}

DocumentRestrictedAlphabet::~DocumentRestrictedAlphabet() = default;

// A constant, so that a document without alphabets of its own costs nothing.
const std::vector<RestrictedAlphabet>& DocumentRestrictedAlphabet::builtInAlphabets() {
    static const std::vector<RestrictedAlphabet> ALPHABETS = [] {
        std::vector<RestrictedAlphabet> _alphabets(BUILT_IN); // the name in the assertion's text
        _alphabets[0] = RestrictedAlphabet(NUMERIC_CHARACTERS);
        _alphabets[1] = RestrictedAlphabet(DATE_TIME_CHARACTERS);
        tamo_assert(_alphabets.size() == 15);
        return _alphabets;
    }();
    return ALPHABETS;
}

void DocumentRestrictedAlphabet::add(const std::string& characters) {
    own().emplace_back(characters);
}

void DocumentRestrictedAlphabet::addDummy() {
    own().emplace_back();
}

RestrictedAlphabet& DocumentRestrictedAlphabet::alphabet(unsigned int vocabulary) {
    std::as_const(*this).alphabet(vocabulary); // which asserts that there is one
    return own()[vocabulary - 1];
}

const RestrictedAlphabet& DocumentRestrictedAlphabet::alphabet(unsigned int vocabulary) const {
    const auto& _alphabets = alphabets(); // the name in the assertion's text
    tamo_assert(vocabulary > 0 && vocabulary <= _alphabets.size());
    return _alphabets[vocabulary - 1];
}

DocumentRestrictedAlphabet
DocumentRestrictedAlphabet::operator-(const DocumentRestrictedAlphabet& other) const {
    const auto& _alphabets = alphabets(); // the name in the assertion's text
    tamo_assert(other.alphabets().size() <= _alphabets.size());
    DocumentRestrictedAlphabet result(true);
    result._pOwn->assign(_alphabets.begin() + static_cast<std::ptrdiff_t>(other.alphabets().size()),
                         _alphabets.end());
    return result;
}

std::vector<RestrictedAlphabet>& DocumentRestrictedAlphabet::own() {
    if (!_pOwn) {
        _pOwn = std::make_unique<std::vector<RestrictedAlphabet>>(builtInAlphabets());
    }
    return *_pOwn;
}

} // namespace Tamo::FastInfoset
