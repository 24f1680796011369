#include "Tamo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Tamo/Bugcheck.h"

namespace Tamo::FastInfoset {

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet() : DocumentRestrictedAlphabet(false) {}

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(bool empty) {
    static const DocumentRestrictedAlphabet SHARED(0);
    static const auto NONE = std::make_shared<std::vector<RestrictedAlphabet>>();
    _pAlphabets = empty ? NONE : SHARED._pAlphabets;
}

// The built-in and reserved entries, which all others share.
DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(int)
    : _pAlphabets(std::make_shared<std::vector<RestrictedAlphabet>>()) {
    add(NUMERIC_CHARACTERS);
    add(DATE_TIME_CHARACTERS);
    for (int i = 3; i <= 15; ++i) {
        addDummy();
    }
    const auto& _alphabets = alphabets(); // the name in the assertion's text
    tamo_assert(_alphabets.size() == 15);
}

void DocumentRestrictedAlphabet::add(const std::string& characters) {
    changeable().emplace_back(characters);
}

void DocumentRestrictedAlphabet::addDummy() {
    changeable().emplace_back();
}

RestrictedAlphabet& DocumentRestrictedAlphabet::alphabet(unsigned int vocabulary) {
    const auto& _alphabets = alphabets(); // the name in the assertion's text
    tamo_assert(vocabulary > 0 && vocabulary <= _alphabets.size());
    return changeable()[vocabulary - 1];
}

DocumentRestrictedAlphabet
DocumentRestrictedAlphabet::operator-(const DocumentRestrictedAlphabet& other) const {
    const auto& _alphabets = alphabets(); // the name in the assertion's text
    tamo_assert(other.alphabets().size() <= _alphabets.size());
    DocumentRestrictedAlphabet result(true);
    if (_alphabets.size() > other.alphabets().size()) {
        result.changeable().assign(_alphabets.begin() + static_cast<std::ptrdiff_t>(other.alphabets().size()),
                                   _alphabets.end());
    }
    return result;
}

std::vector<RestrictedAlphabet>& DocumentRestrictedAlphabet::changeable() {
    if (_pAlphabets.use_count() != 1) {
        _pAlphabets = std::make_shared<std::vector<RestrictedAlphabet>>(*_pAlphabets);
    }
    return *_pAlphabets;
}

} // namespace Tamo::FastInfoset
