#ifndef TAMO_FASTINFOSET_HEADERWRITER_H
#define TAMO_FASTINFOSET_HEADERWRITER_H

#include "ConstructWriter.h"
#include "StringWriter.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Notation.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/UnparsedEntity.h"
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// Writes what stands before the content of a document: the identification, the vocabulary, notations and
/// unparsed entities (ITU-T X.891, 7.2), which it collects, and the document type declaration (7.12). Used by
/// one thread at a time.
class HeaderWriter {
public:
    /// The properties of a document, which the strict mode writes (X.891, C.2.4 and C.2.8 to C.2.10).
    struct Properties {
        std::vector<std::pair<std::string, std::string>> additionalData; ///< identifiers and octets
        std::optional<std::string> encodingScheme;
        std::optional<bool> isStandalone;
        std::optional<std::string> version;
    };

    /// Writes with what writes the strings of the same document.
    HeaderWriter(StringWriter& strings, bool writeXMLDeclaration) noexcept
        : _writer(strings.writer()),
          _vocabulary(strings.vocabulary()),
          _strings(strings),
          _writeXMLDeclaration(writeXMLDeclaration) {}

    HeaderWriter(const HeaderWriter&) = delete;
    HeaderWriter& operator=(const HeaderWriter&) = delete;

    /// Whether the document starts with an XML declaration.
    void setWriteXMLDeclaration(bool flag) noexcept { _writeXMLDeclaration = flag; }

    /// The vocabulary that the header refers to, and whose entries it does not announce.
    void setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary);

    void setExternalVocabulary(const std::shared_ptr<const SharedVocabulary>& pVocabulary);

    /// Whether there is one.
    bool hasExternalVocabulary() const noexcept { return _pExternalVocabulary != nullptr; }

    /// Makes the document's tables hold what it has, a copy unless it is shared.
    void beginWithExternal();

    void add(Notation&& notation) { _notations.push_back(std::move(notation)); }
    void add(UnparsedEntity&& entity) { _unparsedEntities.push_back(std::move(entity)); }

    Properties& properties() noexcept { return _properties; }

    /// Forgets notations, unparsed entities and properties.
    void reset() noexcept;

    /// Writes the header.
    void write();

    /// Prepares a document of the strict mode: makes its vocabulary searchable and decides whether the header
    /// refers to the external vocabulary, with whose entries the document's tables begin then. The algorithms
    /// with these URIs are declared, the empty ones aside. What cannot be announced throws, see
    /// VocabularyWriter.
    void prepareStrict(const std::vector<std::string>& algorithms);

    /// Writes the header that has been prepared, by the letter (X.891, C.2).
    void writeStrict();

    /// Writes the beginning of the document type declaration, whose identifiers may be empty.
    void startDocumentType(const std::string& publicId, const std::string& systemId);

    /// Writes its end.
    void endDocumentType();

private:
    using ID = DocumentVocabulary::ID;

    void writeReference();
    void writeInitialVocabulary(const DocumentVocabulary& voc);
    void writeAlphabets(const DocumentRestrictedAlphabet& alphabets);
    void writeTable(const Vocabulary<std::string>& voc);
    void writeEncodedTable(const Vocabulary<std::string>& voc);
    void writeNames(const Vocabulary<QualifiedNameEntry>& voc, DocumentVocabulary::NameKind kind);
    void writeName(const QualifiedNameEntry& entry, DocumentVocabulary::NameKind kind);
    void writeNotations();
    void writeUnparsedEntities();
    void writeIdentifier(const std::string& identifier);
    const DocumentVocabulary& base() const;
    void writeAdditionalData();

    ConstructWriter& _writer;
    DocumentVocabulary& _vocabulary;
    StringWriter& _strings;
    bool _writeXMLDeclaration;
    std::shared_ptr<const DocumentVocabulary> _pExternalVocabulary; // null until one is set
    bool _isShared = false;                                         // it is a SharedVocabulary's
    std::string _externalVocabularyURI;
    std::vector<Notation> _notations;
    std::vector<UnparsedEntity> _unparsedEntities;
    Properties _properties;
    bool _refersToExternal = false; // of the header that is being prepared
    bool _announces = false;        // that the vocabulary is not the predefined one
};

} // namespace Tamo::FastInfoset

#endif
