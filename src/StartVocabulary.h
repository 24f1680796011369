#ifndef TAMO_FASTINFOSET_STARTVOCABULARY_H
#define TAMO_FASTINFOSET_STARTVOCABULARY_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <memory>
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// What the vocabulary of each document begins with (ITU-T X.891, 7.2.13): what is built in, the vocabulary
/// that a parser was given in advance, or one that a loader or a function yields. Used by one thread at a
/// time.
class StartVocabulary : public VocabularyLoader {
public:
    /// What opens a vocabulary when the application has no loader.
    using Open = DocumentVocabulary (*)(const std::string& uri, bool strict);

    /// With tables of a kind, or a vocabulary, which is copied. Without a function none is opened.
    StartVocabulary(DocumentVocabulary::VocabularyImpl impl, Open open) noexcept : _impl(impl), _open(open) {}
    StartVocabulary(const DocumentVocabulary& vocabulary, Open open);

    /// Adds a vocabulary for documents that name its URI; it comes before all others.
    void use(std::shared_ptr<const SharedVocabulary> pVocabulary);

    /// Where the next document's external vocabulary comes from, with the application's loader or null; null
    /// where it is refused. Strictly, the one that was given comes before all others; by default the document
    /// before has it.
    VocabularyLoader* loader(VocabularyLoader* pLoader, bool strict) noexcept;

    /// Returns a vocabulary, whose tables the header is going to reset, to what is built in.
    void restore(DocumentVocabulary& vocabulary) const;

    DocumentVocabulary load(const std::string& uri) override;

    std::shared_ptr<const SharedVocabulary> shared(const std::string& uri) override;

    /// What shared() has yielded for the document; null for others.
    const SharedVocabulary* sharedByDocument() const noexcept { return _pShared.get(); }

private:
    DocumentVocabulary::VocabularyImpl _impl;
    Open _open;
    std::unique_ptr<const DocumentVocabulary> _pGiven; // null where there is none with a URI
    std::vector<std::shared_ptr<const SharedVocabulary>> _vocabularies;
    std::shared_ptr<const SharedVocabulary> _pShared;
    VocabularyLoader* _pLoader = nullptr;
    bool _isStrict = false;
};

} // namespace Tamo::FastInfoset

#endif
