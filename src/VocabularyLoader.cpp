#include "Tamo/FastInfoset/VocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>

namespace Tamo::FastInfoset {

VocabularyLoader::~VocabularyLoader() = default;

DocumentVocabulary VocabularyLoader::vocabulary(const std::string& uri) {
    if (std::find(_loading.begin(), _loading.end(), uri) != _loading.end()) {
        throw FISException("An external vocabulary names itself", uri);
    }
    // One resource can go by many names: the depth is bounded too.
    if (_loading.size() >= MAX_NESTING) {
        throw FISException("Too many external vocabularies name one another", uri);
    }
    struct Entered {
        std::vector<std::string>& loading;
        ~Entered() { loading.pop_back(); }
    };
    _loading.push_back(uri);
    const Entered entered{_loading};
    DocumentVocabulary loaded = load(uri);
    SharedVocabulary::requireContent(uri, loaded);
    return loaded;
}

std::shared_ptr<const SharedVocabulary> VocabularyLoader::shared(const std::string&) {
    return nullptr;
}

} // namespace Tamo::FastInfoset
