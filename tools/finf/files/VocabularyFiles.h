#ifndef TAMO_FINF_VOCABULARYFILES_H
#define TAMO_FINF_VOCABULARYFILES_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/SharedVocabularies.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <memory>
#include <string>
#include <vector>

namespace finf {

/// The external vocabularies that the command line supplies; no other resource is ever opened.
class VocabularyFiles : public Tamo::FastInfoset::ExternalVocabularyLoader {
public:
    /// A vocabulary's URI, as documents name it, or nothing for that of its content; and the file that it is
    /// built from, none for that of X3D, which is compiled in.
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

    /// The same, read once.
    std::shared_ptr<const Tamo::FastInfoset::SharedVocabulary> shared(const std::string& uri) override {
        return _shared.shared(uri);
    }

    /// The first of the entries; there must be one.
    std::shared_ptr<const Tamo::FastInfoset::SharedVocabulary> first();

private:
    Tamo::FastInfoset::DocumentVocabulary load(const Entry& entry);
    Tamo::FastInfoset::DocumentVocabulary read(const std::string& octets);

    // What reads the files for those that are shared.
    class Source : public Tamo::FastInfoset::VocabularyLoader {
    public:
        explicit Source(VocabularyFiles& files) noexcept : _files(files) {}
        Tamo::FastInfoset::DocumentVocabulary load(const std::string& uri) override {
            return _files.load(uri);
        }

    private:
        VocabularyFiles& _files;
    };

    const List& _entries;
    const Tamo::FastInfoset::ParserLimits _limits;
    Source _source{*this};
    Tamo::FastInfoset::SharedVocabularies _shared{&_source};
};

} // namespace finf

#endif
