// What uses the loader that opens vocabularies. It knows parsers of both kinds and the writer, so that what
// only reads with a loader of its own, or with none, does not come with them.
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/detail/OpenVocabulary.h"

namespace Tamo::FastInfoset {

DocumentVocabulary openVocabulary(const std::string& uri, bool strict) {
    ExternalVocabularyLoader loader;
    loader.setStrict(strict);
    return loader.vocabulary(uri);
}

DocumentVocabulary openVocabularyOrRefuse(const std::string& uri, bool strict) {
    try {
        return openVocabulary(uri, strict);
    } catch (const FISException&) {
        throw;
    } catch (const Exception& e) {
        throw FISException("Cannot open the external vocabulary that the document names: " + e.displayText(),
                           e);
    }
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
