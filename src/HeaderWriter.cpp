#include "HeaderWriter.h"
#include "LegalStrings.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "VocabularyWriter.h"

namespace Tamo::FastInfoset {

void HeaderWriter::setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    _pExternalVocabulary = std::make_shared<const DocumentVocabulary>(vocabulary);
    _externalVocabularyURI = uri;
    _isShared = false;
}

void HeaderWriter::setExternalVocabulary(const std::shared_ptr<const SharedVocabulary>& pVocabulary) {
    _pExternalVocabulary = {pVocabulary, &pVocabulary->vocabulary()};
    _externalVocabularyURI = pVocabulary->uri();
    _isShared = true;
}

void HeaderWriter::beginWithExternal() {
    if (_isShared) {
        _vocabulary.reset(_pExternalVocabulary);
    } else {
        _vocabulary = *_pExternalVocabulary;
    }
}

void HeaderWriter::reset() noexcept {
    _notations.clear();
    _unparsedEntities.clear();
    _properties = Properties();
}

// ---- the strict mode

void HeaderWriter::prepareStrict(const std::vector<std::string>& algorithms) {
    if (!VocabularyWriter::isSearchable(_vocabulary)) {
        _vocabulary = _vocabulary.searchable();
    }
    _refersToExternal =
        !_externalVocabularyURI.empty() && VocabularyWriter::beginsWith(_vocabulary, *_pExternalVocabulary);
    if (_refersToExternal) {
        LegalStrings::requireText("the URI of the external vocabulary", _externalVocabularyURI);
        LegalStrings::requireSize("the URI of the external vocabulary", _externalVocabularyURI.size());
    } else {
        _vocabulary.algorithms().setFirstIndex(DocumentAlgorithms::FIRST);
    }
    for (const std::string& uri : algorithms) {
        if (!uri.empty() && _vocabulary.algorithms().indexOf(uri) == 0) {
            _vocabulary.algorithms().add(uri);
        }
    }
    _announces = !_vocabulary.isPredefined() || !_vocabulary.algorithms().uris().empty();
    if (_announces) {
        VocabularyWriter(_vocabulary, base()).require();
    }
}

// What the header need not announce.
const DocumentVocabulary& HeaderWriter::base() const {
    return _refersToExternal ? *_pExternalVocabulary : VocabularyWriter::predefined();
}

void HeaderWriter::writeStrict() {
    const VocabularyWriter vocabulary(_vocabulary, base());
    const bool hasInitialVocabulary = _refersToExternal || (_announces && !vocabulary.isEmpty());
    Encoder::documentPreHeader(_writer, _writeXMLDeclaration);
    _writer.write(!_properties.additionalData.empty());
    _writer.write(hasInitialVocabulary);
    _writer.write(!_notations.empty());
    _writer.write(!_unparsedEntities.empty());
    _writer.write(_properties.encodingScheme.has_value());
    _writer.write(_properties.isStandalone.has_value());
    _writer.write(_properties.version.has_value());
    if (!_properties.additionalData.empty()) {
        writeAdditionalData();
    }
    if (hasInitialVocabulary) {
        vocabulary.write(_writer, _refersToExternal ? _externalVocabularyURI : std::string());
    }
    if (!_notations.empty()) {
        writeNotations();
    }
    if (!_unparsedEntities.empty()) {
        writeUnparsedEntities();
    }
    if (_properties.encodingScheme) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, *_properties.encodingScheme);
    }
    if (_properties.isStandalone) {
        _writer.write(*_properties.isStandalone ? 1u : 0u, 8);
    }
    if (_properties.version) {
        OctetComposer octets(_writer);
        _strings.write(octets, *_properties.version, DocumentVocabulary::OTHER_STRING);
        octets.flush();
    }
}

void HeaderWriter::writeAdditionalData() {
    Encoder::countOfItems(_writer, _properties.additionalData.size());
    OctetComposer octets(_writer);
    for (const auto& [id, data] : _properties.additionalData) {
        octets.stringAtPosition1(0, id);
        octets.stringAtPosition1(0, data);
    }
    octets.flush();
}

// ---- the default

// Additional data, an encoding scheme, standalone and a version are never written.
void HeaderWriter::write() {
    Encoder::documentPreHeader(_writer, _writeXMLDeclaration);
    const bool hasNotations = !_notations.empty();
    const bool hasUnparsedEntities = !_unparsedEntities.empty();

    static const DocumentVocabulary DEFAULT(DocumentVocabulary::VOC_HASH);
    const bool hasExternal = !_externalVocabularyURI.empty();
    if (!hasExternal && !hasNotations && !hasUnparsedEntities && _vocabulary.isPredefined()) {
        _writer.write(0u, 7); // what is left of the header when there is nothing to say
        return;
    }
    if (hasExternal && !hasNotations && !hasUnparsedEntities &&
        _vocabulary.holdsOnly(*_pExternalVocabulary)) {
        writeReference();
        return;
    }
    const DocumentVocabulary difference = _vocabulary - (hasExternal ? *_pExternalVocabulary : DEFAULT);
    bool hasInitialVocabulary = hasExternal || !difference.restrictedAlphabets().alphabets().empty() ||
                                !difference.elementVocabulary().empty() ||
                                !difference.attributeVocabulary().empty();
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        hasInitialVocabulary = hasInitialVocabulary || !difference.vocabulary(static_cast<ID>(id)).empty();
    }

    tamo_assert(_writer.bitPos() == 1);
    _writer.write(false); // additional data
    _writer.write(hasInitialVocabulary);
    _writer.write(hasNotations);
    _writer.write(hasUnparsedEntities);
    _writer.writeBits(3, false); // encoding scheme, standalone, version
    if (hasInitialVocabulary) {
        writeInitialVocabulary(difference);
    }
    if (hasNotations) {
        writeNotations();
    }
    if (hasUnparsedEntities) {
        writeUnparsedEntities();
    }
}

// What is left of the header when it refers to the external vocabulary and says nothing else.
void HeaderWriter::writeReference() {
    _writer.write(0x20u, 7);    // an initial vocabulary
    _writer.write(0x1000u, 16); // an external one
    _writer.write(false);
    Encoder::nonEmptyOctetString(_writer, _externalVocabularyURI);
}

void HeaderWriter::writeInitialVocabulary(const DocumentVocabulary& voc) {
    // The order of the standard, in which content character chunks precede other strings.
    static constexpr ID TABLES[] = {DocumentVocabulary::PREFIX,
                                    DocumentVocabulary::NAMESPACE_NAME,
                                    DocumentVocabulary::LOCAL_NAME,
                                    DocumentVocabulary::OTHER_NCNAME,
                                    DocumentVocabulary::OTHER_URI,
                                    DocumentVocabulary::ATTRIBUTE_VALUE,
                                    DocumentVocabulary::CONTENT_CHARACTER_CHUNK,
                                    DocumentVocabulary::OTHER_STRING};
    const bool hasAlphabets = !voc.restrictedAlphabets().alphabets().empty();
    _writer.writeBits(3, false);
    _writer.write(!_externalVocabularyURI.empty());
    _writer.write(hasAlphabets);
    _writer.write(false); // encoding algorithms
    for (const ID id : TABLES) {
        _writer.write(!voc.vocabulary(id).empty());
    }
    _writer.write(!voc.elementVocabulary().empty());
    _writer.write(!voc.attributeVocabulary().empty());

    if (!_externalVocabularyURI.empty()) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, _externalVocabularyURI);
    }
    if (hasAlphabets) {
        writeAlphabets(voc.restrictedAlphabets());
    }
    for (const ID id : TABLES) {
        const Vocabulary<std::string>& table = voc.vocabulary(id);
        if (table.empty()) {
            continue;
        }
        if (id <= DocumentVocabulary::OTHER_URI) {
            writeTable(table);
        } else {
            writeEncodedTable(table);
        }
    }
    if (!voc.elementVocabulary().empty()) {
        writeNames(voc.elementVocabulary(), DocumentVocabulary::NameKind::ELEMENT);
    }
    if (!voc.attributeVocabulary().empty()) {
        writeNames(voc.attributeVocabulary(), DocumentVocabulary::NameKind::ATTRIBUTE);
    }
}

void HeaderWriter::writeAlphabets(const DocumentRestrictedAlphabet& alphabets) {
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(alphabets.alphabets().size()));
    for (const RestrictedAlphabet& alphabet : alphabets.alphabets()) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, alphabet.characters());
    }
}

void HeaderWriter::writeTable(const Vocabulary<std::string>& voc) {
    const std::size_t numEntries = voc.size();
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    for (std::size_t i = 0; i < numEntries; ++i) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, voc.value(static_cast<unsigned int>(i)));
    }
}

void HeaderWriter::writeEncodedTable(const Vocabulary<std::string>& voc) {
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(voc.size()));
    // Deliberate: no bits are asked for, which the bit writer refuses. Tables of encoded strings are for the
    // external vocabulary; a header that had to carry one is never written.
    _writer.write(2u, 0);
}

void HeaderWriter::writeNames(const Vocabulary<QualifiedNameEntry>& voc, DocumentVocabulary::NameKind kind) {
    const std::size_t numEntries = voc.size();
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    for (std::size_t i = 0; i < numEntries; ++i) {
        writeName(voc.value(static_cast<unsigned int>(i)), kind);
    }
}

void HeaderWriter::writeName(const QualifiedNameEntry& entry, DocumentVocabulary::NameKind kind) {
    const auto part = [this](ID id, unsigned int index) {
        return index == QualifiedNameEntry::ABSENT ? std::string() : _vocabulary.value(id, index);
    };
    const std::string prefix = part(DocumentVocabulary::PREFIX, entry.prefixId());
    const std::string uri = part(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId());
    const std::string localName = part(DocumentVocabulary::LOCAL_NAME, entry.localNameId());
    tamo_assert(!localName.empty());
    _writer.write(!prefix.empty());
    _writer.write(!uri.empty());
    unsigned int prefixId = 0;
    unsigned int uriId = 0;
    if (!prefix.empty()) {
        prefixId = _strings.writeIdentifying(prefix, DocumentVocabulary::PREFIX);
    }
    if (!uri.empty()) {
        uriId = _strings.writeIdentifying(uri, DocumentVocabulary::NAMESPACE_NAME);
    }
    const unsigned int localNameId = _strings.writeIdentifying(localName, DocumentVocabulary::LOCAL_NAME);
    bool qneExists = false;
    _vocabulary.names(kind).index(QualifiedNameEntry(prefixId, uriId, localNameId), qneExists);
    tamo_assert(!qneExists);
}

void HeaderWriter::writeNotations() {
    for (const Notation& notation : _notations) {
        _writer.write(Forms::NOTATION, 6);
        _writer.write(!notation.getSystemId().empty());
        _writer.write(!notation.getPublicId().empty());
        _strings.writeIdentifying(notation.getName(), DocumentVocabulary::OTHER_NCNAME);
        writeIdentifier(notation.getSystemId());
        writeIdentifier(notation.getPublicId());
    }
    _writer.write(Forms::TERMINATOR_FIRST, 8);
}

void HeaderWriter::writeUnparsedEntities() {
    for (const UnparsedEntity& entity : _unparsedEntities) {
        _writer.write(Forms::UNPARSED_ENTITY, 7);
        _writer.write(!entity.getPublicId().empty());
        _strings.writeIdentifying(entity.getName(), DocumentVocabulary::OTHER_NCNAME);
        _strings.writeIdentifying(entity.getSystemId(), DocumentVocabulary::OTHER_URI);
        writeIdentifier(entity.getPublicId());
        _strings.writeIdentifying(entity.getNotationName(), DocumentVocabulary::OTHER_NCNAME);
    }
    _writer.write(Forms::TERMINATOR_FIRST, 8);
}

void HeaderWriter::startDocumentType(const std::string& publicId, const std::string& systemId) {
    _writer.complete(false);
    _writer.write(Forms::DOCTYPE >> 2, 6);
    _writer.write(!systemId.empty());
    _writer.write(!publicId.empty());
    writeIdentifier(systemId);
    writeIdentifier(publicId);
}

void HeaderWriter::endDocumentType() {
    _writer.write(Forms::TERMINATOR, 4);
    tamo_assert(_writer.bitPos() == 4);
}

// An empty identifier counts as absent.
void HeaderWriter::writeIdentifier(const std::string& identifier) {
    if (!identifier.empty()) {
        _strings.writeIdentifying(identifier, DocumentVocabulary::OTHER_URI);
    }
}

} // namespace Tamo::FastInfoset
