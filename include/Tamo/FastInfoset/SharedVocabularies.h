#ifndef TAMO_FASTINFOSET_SHAREDVOCABULARIES_H
#define TAMO_FASTINFOSET_SHAREDVOCABULARIES_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include <map>
#include <memory>
#include <string>

namespace Tamo::FastInfoset {

/// A loader that knows vocabularies by their URIs and hands out each as one object. What it does not know
/// comes from another loader, once; without one it is refused.
///
/// A loader that opens what documents name lets those who write them decide how many vocabularies are kept
/// here. Used by one thread at a time; a loader for each thread can hold the same vocabularies.
class TAMO_API SharedVocabularies : public VocabularyLoader {
public:
    /// Asks pSource, which is borrowed, for what it does not know; null: nobody.
    explicit SharedVocabularies(VocabularyLoader* pSource = nullptr) noexcept : _pSource(pSource) {}

    /// Adds a vocabulary, in the place of one with its URI.
    void add(std::shared_ptr<const SharedVocabulary> pVocabulary);

    /// The vocabulary that uri names, the same object each time. FISException "Unknown external vocabulary"
    /// when nobody knows it; what the source throws passes through.
    std::shared_ptr<const SharedVocabulary> shared(const std::string& uri) override;

    /// A copy of it, of kind VOC_MAP and without the URI.
    DocumentVocabulary load(const std::string& uri) override;

private:
    VocabularyLoader* _pSource;
    std::map<std::string, std::shared_ptr<const SharedVocabulary>> _vocabularies;
};

} // namespace Tamo::FastInfoset

#endif
