#include "StartVocabulary.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/FISException.h"
#include <utility>

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
    _pShared.reset();
    const bool hasOwn = (strict && _pGiven) || !_vocabularies.empty();
    return hasOwn || pLoader || _open ? this : nullptr;
}

void StartVocabulary::use(std::shared_ptr<const SharedVocabulary> pVocabulary) {
    tamo_check_ptr(pVocabulary);
    std::erase_if(_vocabularies, [&](const auto& pOther) { return pOther->uri() == pVocabulary->uri(); });
    _vocabularies.push_back(std::move(pVocabulary));
}

std::shared_ptr<const SharedVocabulary> StartVocabulary::shared(const std::string& uri) {
    for (const auto& pVocabulary : _vocabularies) {
        if (pVocabulary->uri() == uri) {
            _pShared = pVocabulary;
            return pVocabulary;
        }
    }
    const bool isGiven = _isStrict && _pGiven && uri == _pGiven->getURI();
    if (_pLoader && !isGiven) {
        _pShared = _pLoader->shared(uri);
    }
    return _pShared;
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
