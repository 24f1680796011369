#include "Tamo/FastInfoset/DocumentRestrictedAlphabet.h"
#include "Tamo/Bugcheck.h"

namespace Tamo::FastInfoset {

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet() : DocumentRestrictedAlphabet(false) {}

DocumentRestrictedAlphabet::DocumentRestrictedAlphabet(bool empty) {
    if (empty) {
        return;
    }
    _alphabets.reserve(16);
    add(NUMERIC_CHARACTERS);
    add(DATE_TIME_CHARACTERS);
    for (int i = 3; i <= 15; ++i) {
        addDummy();
    }
    tamo_assert(_alphabets.size() == 15);
}

void DocumentRestrictedAlphabet::add(const std::string& characters) {
    _alphabets.emplace_back(characters);
}

void DocumentRestrictedAlphabet::addDummy() {
    _alphabets.emplace_back();
}

RestrictedAlphabet& DocumentRestrictedAlphabet::alphabet(unsigned int vocabulary) {
    tamo_assert(vocabulary > 0 && vocabulary <= _alphabets.size());
    return _alphabets[vocabulary - 1];
}

DocumentRestrictedAlphabet
DocumentRestrictedAlphabet::operator-(const DocumentRestrictedAlphabet& other) const {
    tamo_assert(other.alphabets().size() <= _alphabets.size());
    DocumentRestrictedAlphabet result(true);
    result._alphabets.assign(_alphabets.begin() + static_cast<std::ptrdiff_t>(other._alphabets.size()),
                             _alphabets.end());
    return result;
}

} // namespace Tamo::FastInfoset
