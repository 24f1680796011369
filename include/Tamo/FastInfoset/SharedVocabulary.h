#ifndef TAMO_FASTINFOSET_SHAREDVOCABULARY_H
#define TAMO_FASTINFOSET_SHAREDVOCABULARY_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <memory>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset {

struct SharedNames;

/// An external vocabulary (ITU-T X.891, 7.2.13) that many documents share: built once, and never changed
/// again. Any number of parsers and writers in any threads can begin with it at once, and to begin a document
/// costs them nothing for its entries.
///
/// It has a URI. One that is made from its entries, contentURI(), says which they are: two vocabularies with
/// the same such URI are the same.
class TAMO_API SharedVocabulary {
public:
    /// The beginning of the URIs that are made from entries.
    static constexpr std::string_view CONTENT_URI = "urn:finf:";

    /// A copy of a vocabulary, with its URI, or with contentURI() where it has none. An entry may occur
    /// twice. One that does not begin with the predefined entries throws InvalidArgumentException, one whose
    /// URI is the contentURI() of other entries FISException.
    explicit SharedVocabulary(const DocumentVocabulary& vocabulary);

    SharedVocabulary(const SharedVocabulary&) = delete;
    SharedVocabulary& operator=(const SharedVocabulary&) = delete;
    ~SharedVocabulary();

    /// The same as an object for parsers and writers.
    static std::shared_ptr<const SharedVocabulary> of(const DocumentVocabulary& vocabulary) {
        return std::make_shared<const SharedVocabulary>(vocabulary);
    }

    /// The URI by which documents refer to it; not empty.
    const std::string& uri() const noexcept { return _vocabulary.getURI(); }

    /// The entries, in tables that can be searched.
    const DocumentVocabulary& vocabulary() const noexcept { return _vocabulary; }

    /// The URI of a vocabulary with these entries, alphabets and algorithms, whatever its URI and the kind of
    /// its tables: CONTENT_URI and 22 characters, for 128 bits of a SHA-256 digest.
    static std::string contentURI(const DocumentVocabulary& vocabulary);

    /// Throws FISException where a URI begins with CONTENT_URI and is not that of a vocabulary's entries.
    static void requireContent(const std::string& uri, const DocumentVocabulary& vocabulary);

    /// The names, looked up as those who read documents need them.
    const SharedNames& names() const noexcept { return *_pNames; }

private:
    DocumentVocabulary _vocabulary;
    std::unique_ptr<const SharedNames> _pNames;
};

} // namespace Tamo::FastInfoset

#endif
