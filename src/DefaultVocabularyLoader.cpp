// What uses the loader that opens vocabularies. It knows parsers of both kinds and the writer, so that what
// only reads with a loader of its own, or with none, does not come with them.
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/detail/OpenVocabulary.h"

namespace Tamo::FastInfoset {

DocumentVocabulary openVocabulary(const std::string& uri, bool strict) {
    ExternalVocabularyLoader loader;
    loader.setStrict(strict);
    return loader.vocabulary(uri);
}

Decoder::OpenHeaderParts Decoder::documentHeader(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                                 FISDocumentHandler* pHandler) {
    ExternalVocabularyLoader loader;
    return documentHeader(aReader, vocabulary, pHandler, &loader);
}

void Decoder::parseInitialVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                     FISDocumentHandler* pHandler) {
    ExternalVocabularyLoader loader;
    parseInitialVocabulary(aReader, vocabulary, pHandler, &loader);
}

void Decoder::handleExternalVocabulary(BitStreamReader& aReader, DocumentVocabulary& vocabulary,
                                       FISDocumentHandler* pHandler) {
    ExternalVocabularyLoader loader;
    handleExternalVocabulary(aReader, vocabulary, pHandler, &loader);
}

} // namespace Tamo::FastInfoset
