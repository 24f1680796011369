#ifndef TAMO_FINF_VOCABULARYFILES_H
#define TAMO_FINF_VOCABULARYFILES_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include <string>
#include <vector>

namespace finf {

/// The external vocabularies that the command line supplies; no other resource is ever opened.
class VocabularyFiles : public Tamo::FastInfoset::ExternalVocabularyLoader {
public:
    /// A vocabulary's URI, as documents name it, and the file that it is built from; none for that of X3D,
    /// which is compiled in.
    struct Entry {
        std::string uri;
        std::string file;
    };
    using List = std::vector<Entry>;

    /// The entries are borrowed; the limits hold for files in Fast Infoset, which are read by the letter
    /// unless setStrict() says otherwise.
    VocabularyFiles(const List& entries, const Tamo::FastInfoset::ParserLimits& limits)
        : _entries(entries), _limits(limits) {
        setStrict(true);
    }

    /// The vocabulary of the file that belongs to uri, XML or Fast Infoset by its content. Throws FinfError
    /// for a URI that the command line does not give, for a file that cannot be used and for a vocabulary
    /// that names itself.
    Tamo::FastInfoset::DocumentVocabulary load(const std::string& uri) override;

private:
    Tamo::FastInfoset::DocumentVocabulary read(const std::string& octets);

    const List& _entries;
    const Tamo::FastInfoset::ParserLimits _limits;
};

} // namespace finf

#endif
