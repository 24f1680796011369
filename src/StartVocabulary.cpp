#include "StartVocabulary.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

StartVocabulary::StartVocabulary(const DocumentVocabulary& vocabulary, Open open)
    : StartVocabulary(vocabulary.impl(), open) {
    if (!vocabulary.getURI().empty()) {
        _pGiven = std::make_unique<DocumentVocabulary>(vocabulary);
    }
}

VocabularyLoader* StartVocabulary::loader(VocabularyLoader* pLoader, bool strict) noexcept {
    _isStrict = strict;
    _pLoader = pLoader;
    const bool asksThis = strict && _pGiven;
    return asksThis || (!pLoader && _open) ? this : pLoader;
}

void StartVocabulary::restore(DocumentVocabulary& vocabulary) const {
    if (vocabulary.impl() != _impl) {
        vocabulary = DocumentVocabulary(_impl);
    }
    vocabulary.restrictedAlphabets() = DocumentRestrictedAlphabet();
    vocabulary.algorithms() = DocumentAlgorithms();
    vocabulary.setURI(std::string());
}

DocumentVocabulary StartVocabulary::load(const std::string& uri) {
    if (_isStrict && _pGiven && uri == _pGiven->getURI()) {
        return *_pGiven;
    }
    if (_pLoader) {
        return _pLoader->vocabulary(uri);
    }
    if (!_open) {
        throw FISException("The document names an external vocabulary, which is not to be opened", uri);
    }
    return _open(uri, _isStrict);
}

} // namespace Tamo::FastInfoset
