#ifndef TAMO_FASTINFOSET_VOCABULARYLOADER_H
#define TAMO_FASTINFOSET_VOCABULARYLOADER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// Yields the external vocabularies that documents name (ITU-T X.891, 7.2.13).
///
/// An application that reads foreign documents derives from it, supplies the vocabularies that it knows,
/// throws for all others, and hands it to the parser (FastInfosetParser::setExternalVocabularyLoader). Used
/// by one thread at a time.
class TAMO_API VocabularyLoader {
public:
    /// How many external vocabularies may name one another in a row.
    static constexpr std::size_t MAX_NESTING = 8;

    virtual ~VocabularyLoader();

    /// The vocabulary that uri names, for a parser: load(uri), unless uri is being loaded already, directly
    /// or through another vocabulary, which throws FISException, as does a vocabulary that has other entries
    /// than its URI says (SharedVocabulary::contentURI).
    DocumentVocabulary vocabulary(const std::string& uri);

    /// The vocabulary that uri names; what it throws passes through.
    virtual DocumentVocabulary load(const std::string& uri) = 0;

    /// The vocabulary that uri names as one that documents share, which parsers ask for first. Null, as here,
    /// where load() yields it, for each document anew.
    virtual std::shared_ptr<const SharedVocabulary> shared(const std::string& uri);

private:
    std::vector<std::string> _loading;
};

} // namespace Tamo::FastInfoset

#endif
