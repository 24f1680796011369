#include "Tamo/FastInfoset/SharedVocabularies.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/FISException.h"
#include <utility>

namespace Tamo::FastInfoset {

void SharedVocabularies::add(std::shared_ptr<const SharedVocabulary> pVocabulary) {
    tamo_check_ptr(pVocabulary);
    const std::string& uri = pVocabulary->uri();
    _vocabularies.insert_or_assign(uri, std::move(pVocabulary));
}

std::shared_ptr<const SharedVocabulary> SharedVocabularies::shared(const std::string& uri) {
    const auto it = _vocabularies.find(uri);
    if (it != _vocabularies.end()) {
        return it->second;
    }
    if (!_pSource) {
        throw FISException("Unknown external vocabulary", uri);
    }
    std::shared_ptr<const SharedVocabulary> pVocabulary = _pSource->shared(uri);
    if (!pVocabulary) {
        DocumentVocabulary loaded = _pSource->vocabulary(uri);
        loaded.setURI(uri);
        pVocabulary = SharedVocabulary::of(loaded);
    }
    return _vocabularies.emplace(uri, std::move(pVocabulary)).first->second;
}

DocumentVocabulary SharedVocabularies::load(const std::string& uri) {
    DocumentVocabulary result(shared(uri)->vocabulary());
    result.setURI(std::string());
    return result;
}

} // namespace Tamo::FastInfoset
