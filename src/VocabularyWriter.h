#ifndef TAMO_FASTINFOSET_VOCABULARYWRITER_H
#define TAMO_FASTINFOSET_VOCABULARYWRITER_H

#include "ConstructWriter.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include <cstddef>
#include <string>

namespace Tamo::FastInfoset {

/// Writes an initial vocabulary by the letter (ITU-T X.891, 7.2.11 to 7.2.16 and C.2.5): every entry behind
/// those of a base, which is the external vocabulary or the predefined one, in the order of the tables and
/// as often as it stands there. A view of both; used by one thread at a time.
class VocabularyWriter {
public:
    /// The predefined vocabulary.
    static const DocumentVocabulary& predefined();

    /// Whether the tables are as DocumentVocabulary::searchable() makes them.
    static bool isSearchable(DocumentVocabulary& vocabulary);

    /// Whether a vocabulary begins with the entries of a base, each table with those of its own.
    static bool beginsWith(const DocumentVocabulary& vocabulary, const DocumentVocabulary& base);

    /// Of a vocabulary that begins with the base.
    VocabularyWriter(const DocumentVocabulary& vocabulary, const DocumentVocabulary& base) noexcept
        : _vocabulary(vocabulary), _base(base) {}

    /// Whether there is nothing to announce.
    bool isEmpty() const;

    /// Throws FISEncodingException, which names table and entry, where something cannot be announced: an
    /// empty string, one that has no place in XML, a name whose parts are in no table, more entries than an
    /// index can name.
    void require() const;

    /// Writes it on an octet boundary, with the URI of the external vocabulary unless that is empty.
    void write(ConstructWriter& writer, const std::string& externalURI) const;

private:
    using ID = DocumentVocabulary::ID;
    using Strings = Vocabulary<std::string>;
    using Names = Vocabulary<QualifiedNameEntry>;

    void requireStrings(ID id, const char* what, bool isName) const;
    void requireNames(DocumentVocabulary::NameKind kind) const;
    void writeAlphabets(ConstructWriter& writer) const;
    void writeAlgorithms(ConstructWriter& writer) const;
    void writeStrings(ConstructWriter& writer, ID id) const;
    void writeNames(ConstructWriter& writer, DocumentVocabulary::NameKind kind) const;

    // How many there are behind those of the base.
    std::size_t alphabets() const;
    std::size_t algorithms() const;
    std::size_t strings(ID id) const;
    std::size_t names(DocumentVocabulary::NameKind kind) const;

    const DocumentVocabulary& _vocabulary;
    const DocumentVocabulary& _base;
};

} // namespace Tamo::FastInfoset

#endif
