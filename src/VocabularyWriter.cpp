#include "VocabularyWriter.h"
#include "AlphabetCodes.h"
#include "Forms.h"
#include "LegalStrings.h"
#include "OctetComposer.h"
#include "OwnTable.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

namespace {

using ID = DocumentVocabulary::ID;
using NameKind = DocumentVocabulary::NameKind;

// The order of the standard, in which content character chunks precede other strings.
constexpr struct {
    ID id;
    const char* entry;
    bool isName;
} TABLES[] = {{DocumentVocabulary::PREFIX, "a prefix of the vocabulary", true},
              {DocumentVocabulary::NAMESPACE_NAME, "a namespace name of the vocabulary", false},
              {DocumentVocabulary::LOCAL_NAME, "a local name of the vocabulary", true},
              {DocumentVocabulary::OTHER_NCNAME, "another NCName of the vocabulary", true},
              {DocumentVocabulary::OTHER_URI, "another URI of the vocabulary", false},
              {DocumentVocabulary::ATTRIBUTE_VALUE, "an attribute value of the vocabulary", false},
              {DocumentVocabulary::CONTENT_CHARACTER_CHUNK, "a character chunk of the vocabulary", false},
              {DocumentVocabulary::OTHER_STRING, "another string of the vocabulary", false}};

constexpr NameKind NAME_KINDS[] = {NameKind::ELEMENT, NameKind::ATTRIBUTE};

// The index of a name's part, which 0 and ABSENT both say to be absent.
bool isPresent(UInt32 index) noexcept {
    return index != 0 && index != QualifiedNameEntry::ABSENT;
}

// An entry as the writer looks for it: with 0 for what is absent.
const std::string& searched(const std::string& entry) noexcept {
    return entry;
}
QualifiedNameEntry searched(const QualifiedNameEntry& name) noexcept {
    const auto part = [](UInt32 index) { return isPresent(index) ? index : 0; };
    return {part(name.prefixId()), part(name.namespaceId()), part(name.localNameId())};
}

// Calls use(entry) for the entries of a table from one on.
template<class T, class Use>
void forEachFrom(const Vocabulary<T>& table, std::size_t begin, const Use& use) {
    for (std::size_t i = begin, end = table.size(); i < end; ++i) {
        use(table.value(static_cast<unsigned int>(i)));
    }
}

template<class T>
bool tableBeginsWith(const Vocabulary<T>& table, const Vocabulary<T>& base) {
    const std::size_t size = base.size();
    const VerbTable<T>* const pValues = OwnTable::valuesOf(table);
    if (pValues && pValues->base() && pValues->base() == OwnTable::valuesOf(base)) {
        return true;
    }
    if (table.size() < size) {
        return false;
    }
    for (unsigned int i = 0; i < size; ++i) {
        if (searched(table.value(i)) != searched(base.value(i))) {
            return false;
        }
    }
    return true;
}

void requireCount(std::size_t size, const char* entry) {
    if (size > Forms::MOST_INTEGER + std::size_t{1}) { // with the placeholder
        throw FISEncodingException(std::string("Cannot write ") + entry + ": there are " +
                                   std::to_string(size - 1) + ", more than an index can name");
    }
}

// Whether the names are all written with 0 for what is absent, as those are that tables are laid on.
bool isSearched(const Vocabulary<QualifiedNameEntry>& names) {
    bool result = true;
    const VerbTable<QualifiedNameEntry>* const pValues = OwnTable::valuesOf(names);
    forEachFrom(names, pValues ? pValues->baseSize() : 0,
                [&](const QualifiedNameEntry& name) { result = result && name == searched(name); });
    return result;
}

} // namespace

const DocumentVocabulary& VocabularyWriter::predefined() {
    static const DocumentVocabulary PREDEFINED(DocumentVocabulary::VOC_MAP);
    return PREDEFINED;
}

bool VocabularyWriter::isSearchable(DocumentVocabulary& vocabulary) {
    return vocabulary.impl() == DocumentVocabulary::VOC_MAP && vocabulary.indexedNames(NameKind::ELEMENT) &&
           isSearched(vocabulary.elementVocabulary()) && isSearched(vocabulary.attributeVocabulary());
}

bool VocabularyWriter::beginsWith(const DocumentVocabulary& vocabulary, const DocumentVocabulary& base) {
    const auto& alphabets = vocabulary.restrictedAlphabets().alphabets();
    const auto& baseAlphabets = base.restrictedAlphabets().alphabets();
    const auto& uris = vocabulary.algorithms().uris();
    const auto& baseURIs = base.algorithms().uris();
    if (alphabets.size() < baseAlphabets.size() || uris.size() < baseURIs.size() ||
        vocabulary.algorithms().firstIndex() != base.algorithms().firstIndex()) {
        return false;
    }
    for (std::size_t i = 0; i < baseAlphabets.size(); ++i) {
        if (alphabets[i].characters() != baseAlphabets[i].characters()) {
            return false;
        }
    }
    for (std::size_t i = 0; i < baseURIs.size(); ++i) {
        if (uris[i] != baseURIs[i]) {
            return false;
        }
    }
    for (const auto& table : TABLES) {
        if (!tableBeginsWith(vocabulary.vocabulary(table.id), base.vocabulary(table.id))) {
            return false;
        }
    }
    return tableBeginsWith(vocabulary.elementVocabulary(), base.elementVocabulary()) &&
           tableBeginsWith(vocabulary.attributeVocabulary(), base.attributeVocabulary());
}

// ---- what there is

std::size_t VocabularyWriter::alphabets() const {
    return _vocabulary.restrictedAlphabets().alphabets().size() -
           _base.restrictedAlphabets().alphabets().size();
}

std::size_t VocabularyWriter::algorithms() const {
    return _vocabulary.algorithms().uris().size() - _base.algorithms().uris().size();
}

std::size_t VocabularyWriter::strings(ID id) const {
    return _vocabulary.vocabulary(id).size() - _base.vocabulary(id).size();
}

std::size_t VocabularyWriter::names(NameKind kind) const {
    return _vocabulary.names(kind).size() - _base.names(kind).size();
}

bool VocabularyWriter::isEmpty() const {
    std::size_t count = alphabets() + algorithms() + names(NameKind::ELEMENT) + names(NameKind::ATTRIBUTE);
    for (const auto& table : TABLES) {
        count += strings(table.id);
    }
    return count == 0;
}

// ---- what is refused

void VocabularyWriter::require() const {
    const auto& list = _vocabulary.restrictedAlphabets().alphabets();
    for (std::size_t i = _base.restrictedAlphabets().alphabets().size(); i < list.size(); ++i) {
        LegalStrings::requireSomeText("a restricted alphabet of the vocabulary", list[i].characters());
        static_cast<void>(AlphabetCodes(list[i])); // refuses what is no alphabet
    }
    if (list.size() > DocumentAlgorithms::LAST) { // likewise of alphabets (X.891, C.29)
        throw FISEncodingException("Cannot write a restricted alphabet: no index is left for number " +
                                   std::to_string(list.size()));
    }
    const auto& uris = _vocabulary.algorithms().uris();
    for (std::size_t i = _base.algorithms().uris().size(); i < uris.size(); ++i) {
        LegalStrings::requireSomeText("the URI of an encoding algorithm", uris[i]);
    }
    for (const auto& table : TABLES) {
        requireStrings(table.id, table.entry, table.isName);
    }
    for (const NameKind kind : NAME_KINDS) {
        requireNames(kind);
    }
}

void VocabularyWriter::requireStrings(ID id, const char* what, bool isName) const {
    requireCount(_vocabulary.vocabulary(id).size(), what);
    forEachFrom(_vocabulary.vocabulary(id), _base.vocabulary(id).size(), [&](const std::string& entry) {
        if (isName) {
            LegalStrings::requireName(what, entry);
        } else {
            LegalStrings::requireSomeText(what, entry);
        }
        LegalStrings::requireSize(what, entry.size());
    });
}

void VocabularyWriter::requireNames(NameKind kind) const {
    const char* const entry = kind == NameKind::ELEMENT ? "an element name of the vocabulary"
                                                        : "an attribute name of the vocabulary";
    requireCount(_vocabulary.names(kind).size(), entry);
    forEachFrom(_vocabulary.names(kind), _base.names(kind).size(), [&](const QualifiedNameEntry& name) {
        const auto isKnown = [&](UInt32 index, ID id) {
            return !isPresent(index) || index < _vocabulary.vocabulary(id).size();
        };
        if (!isPresent(name.localNameId()) || !isKnown(name.localNameId(), DocumentVocabulary::LOCAL_NAME) ||
            !isKnown(name.prefixId(), DocumentVocabulary::PREFIX) ||
            !isKnown(name.namespaceId(), DocumentVocabulary::NAMESPACE_NAME) ||
            (isPresent(name.prefixId()) && !isPresent(name.namespaceId()))) {
            throw FISEncodingException(
                std::string("Cannot write ") + entry + " of prefix " + std::to_string(name.prefixId()) +
                ", namespace name " + std::to_string(name.namespaceId()) + " and local name " +
                std::to_string(name.localNameId()) + ": not all are in their tables (X.891, C.16)");
        }
    });
}

// ---- writing

void VocabularyWriter::write(ConstructWriter& writer, const std::string& externalURI) const {
    writer.writeBits(3, false);
    writer.write(!externalURI.empty());
    writer.write(alphabets() != 0);
    writer.write(algorithms() != 0);
    for (const auto& table : TABLES) {
        writer.write(strings(table.id) != 0);
    }
    for (const NameKind kind : NAME_KINDS) {
        writer.write(names(kind) != 0);
    }
    if (!externalURI.empty()) {
        writer.write(false);
        Encoder::nonEmptyOctetString(writer, externalURI);
    }
    if (alphabets() != 0) {
        writeAlphabets(writer);
    }
    if (algorithms() != 0) {
        writeAlgorithms(writer);
    }
    for (const auto& table : TABLES) {
        if (strings(table.id) != 0) {
            writeStrings(writer, table.id);
        }
    }
    for (const NameKind kind : NAME_KINDS) {
        if (names(kind) != 0) {
            writeNames(writer, kind);
        }
    }
}

void VocabularyWriter::writeAlphabets(ConstructWriter& writer) const {
    Encoder::countOfItems(writer, alphabets());
    OctetComposer octets(writer);
    const auto& list = _vocabulary.restrictedAlphabets().alphabets();
    for (std::size_t i = list.size() - alphabets(); i < list.size(); ++i) {
        octets.stringAtPosition1(0, list[i].characters());
    }
    octets.flush();
}

void VocabularyWriter::writeAlgorithms(ConstructWriter& writer) const {
    Encoder::countOfItems(writer, algorithms());
    OctetComposer octets(writer);
    const auto& uris = _vocabulary.algorithms().uris();
    for (std::size_t i = uris.size() - algorithms(); i < uris.size(); ++i) {
        octets.stringAtPosition1(0, uris[i]);
    }
    octets.flush();
}

void VocabularyWriter::writeStrings(ConstructWriter& writer, ID id) const {
    Encoder::countOfItems(writer, strings(id));
    const bool isEncoded = id >= DocumentVocabulary::ATTRIBUTE_VALUE;
    OctetComposer octets(writer);
    forEachFrom(_vocabulary.vocabulary(id), _base.vocabulary(id).size(), [&](const std::string& entry) {
        if (isEncoded) {
            octets.stringAtPosition4(0, entry); // as UTF-8
        } else {
            octets.stringAtPosition1(0, entry);
        }
    });
    octets.flush();
}

void VocabularyWriter::writeNames(ConstructWriter& writer, NameKind kind) const {
    Encoder::countOfItems(writer, names(kind));
    OctetComposer octets(writer);
    forEachFrom(_vocabulary.names(kind), _base.names(kind).size(), [&](const QualifiedNameEntry& name) {
        octets.octet((isPresent(name.prefixId()) ? Forms::HAS_PREFIX : 0) |
                     (isPresent(name.namespaceId()) ? Forms::HAS_NAMESPACE : 0));
        for (const UInt32 index : {name.prefixId(), name.namespaceId(), name.localNameId()}) {
            if (isPresent(index)) {
                octets.integerAtPosition1(0, index);
            }
        }
    });
    octets.flush();
}

} // namespace Tamo::FastInfoset
