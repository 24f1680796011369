#include "walk/DocumentWalker.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/HexEncoding.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "walk/AlphabetCodes.h"
#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

namespace finf {

using Tamo::UInt64;
using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::Encoder;
using Tamo::FastInfoset::FISEncodingException;
using Tamo::FastInfoset::FISException;
using Tamo::FastInfoset::FISParseException;
using Tamo::FastInfoset::QualifiedNameEntry;
using Tamo::FastInfoset::StringDecoder;

namespace {

// The four bits that end a list, an element or the document.
constexpr unsigned int TERMINATOR = 0x0F;

constexpr std::size_t LEAST_SHOWN = 48; // octets of an array: a multiple of the sizes of all values

[[noreturn]] void throwEnd() {
    throw FISParseException("Unexpected end of the document");
}

/// The names whose bits are set, the first name at the highest of as many bits; "none" without any.
template<std::size_t N>
std::string namesOf(unsigned int bits, const char* const (&names)[N]) {
    std::string list;
    for (std::size_t i = 0; i < N; ++i) {
        if (bits & (1u << (N - 1 - i))) {
            list.append(list.empty() ? "" : ", ").append(names[i]);
        }
    }
    return list.empty() ? "none" : list;
}

constexpr const char* COMPONENTS[] = {
    "additional data",           "initial vocabulary", "notations", "unparsed entities",
    "character encoding scheme", "standalone",         "version"};

constexpr const char* VOCABULARY_COMPONENTS[] = {"external vocabulary",
                                                 "restricted alphabets",
                                                 "encoding algorithms",
                                                 "prefixes",
                                                 "namespace names",
                                                 "local names",
                                                 "other NCNames",
                                                 "other URIs",
                                                 "attribute values",
                                                 "content character chunks",
                                                 "other strings",
                                                 "element name surrogates",
                                                 "attribute name surrogates"};

constexpr const char* NAME_PARTS[] = {"prefix", "namespace name"};
constexpr const char* IDENTIFIERS[] = {"system identifier", "public identifier"};

void noteParts(Field& field, const char* before, bool first, bool second, const char* const (&names)[2]) {
    const unsigned int bits = (first ? 2u : 0u) | (second ? 1u : 0u);
    if (bits != 0) {
        field.note.append(before).append(namesOf(bits, names));
    }
}

/// The octets of one value of a built-in algorithm (X.891, 10), or of so many that arrays can be cut between
/// them; 0 for algorithms of which only the whole tells something. Booleans are cut behind whole octets.
std::size_t sizeOfValue(unsigned int algorithm) {
    constexpr std::size_t SIZES[] = {0, 1, 3, 2, 4, 8, 1, 4, 8, 16};
    return algorithm < std::size(SIZES) ? SIZES[algorithm] : 0;
}

/// What an algorithm that is not known here has made of a value: its octets, as hexadecimal text.
Tamo::AutoPtr<Tamo::FastInfoset::Encoding> octetsOf(const std::string&, unsigned int,
                                                    std::string_view octets) {
    return Tamo::AutoPtr<Tamo::FastInfoset::Encoding>(
        new Tamo::FastInfoset::HexEncoding(octets.data(), octets.size()));
}

/// The text of a value by the letter, which has UUIDs in lower case (X.891, 10.10).
std::string textOf(Tamo::FastInfoset::Encoding& value) {
    std::string text = StringDecoder::textOf(value);
    if (value.type() == Tamo::FastInfoset::UUIDEncoding::TYPE) {
        for (char& c : text) {
            c = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return text;
}

// The entry at index, or null past the last one.
template<class T>
const T* entryOf(const Tamo::FastInfoset::Vocabulary<T>& table, unsigned int index) {
    return index < table.size() ? &table.value(index) : nullptr;
}

} // namespace

DocumentWalker::DocumentWalker(std::istream& source, FieldVisitor& visitor,
                               Tamo::FastInfoset::ExternalVocabularyLoader& loader,
                               const Tamo::FastInfoset::ParserLimits& limits)
    : _record(source),
      _stream(&_record),
      _reader(_stream),
      _visitor(visitor),
      _loader(loader),
      _limits(limits),
      _vocabulary(DocumentVocabulary::VOC_VECTOR) {
    _reader.setMaxStringLength(limits.maxStringLength);
    _vocabulary.decodings().setFallback(&octetsOf);
}

bool DocumentWalker::step() {
    if (!_headerRead) {
        _vocabulary = DocumentVocabulary(DocumentVocabulary::VOC_VECTOR);
        header();
        _headerRead = true;
        return true;
    }
    begin(Construct::CHILD_OR_END, _openElements.size());
    // Padding says that no end follows, which would stand in its place.
    if (std::exchange(_isPadded, false) || peek(4) != TERMINATOR) {
        child();
        return true;
    }
    if (!_openElements.empty()) {
        const unsigned int nameIndex = _openElements.back();
        _openElements.pop_back();
        begin(Construct::ELEMENT_END, _openElements.size());
        take(4, BitKind::STRUCTURE, TERMINATOR);
        paddingAfterEnd();
        show(_text = qualifiedName(DocumentVocabulary::ELEMENT_NAME, nameIndex));
        emit();
        return true;
    }
    begin(Construct::DOCUMENT_END, 0);
    take(4, BitKind::STRUCTURE, TERMINATOR);
    if (_reader.bitPos() != 0) {
        take(4, BitKind::PADDING, 0);
    }
    emit();
    _headerRead = false;
    return false;
}

// By the first octet: whatever else is wrong with it is shown as that of a document.
bool DocumentWalker::hasNextDocument() {
    return _reader.hasOctet() && (peek(8) == Encoder::DOCUMENTSTART >> 8 || peek(8) == '<');
}

bool DocumentWalker::trailingOctets() {
    begin(Construct::TRAILING_OCTETS, 0);
    const UInt64 end = _reader.position() / 8;
    // The record keeps what was read ahead, and the size of the rest is all that counts of it.
    const std::string shown(_record.octets(end, _record.size()));
    _record.skipRest();
    if (_record.size() == end) {
        return false;
    }
    _field.bits = (_record.size() - end) * 8;
    _field.octets = shown;
    part(BitKind::TRAILING, _field.bits);
    _visitor.field(_field);
    return true;
}

// The header (X.891, 12 and C.2)

void DocumentWalker::header() {
    identification();
    begin(Construct::OPTIONAL_COMPONENTS, 0);
    take(1, BitKind::PADDING, 0);
    const unsigned int components = take(7, BitKind::STRUCTURE);
    _field.note = namesOf(components, COMPONENTS);
    emit();
    if (components & 0x40) {
        additionalData();
    }
    if (components & 0x20) {
        initialVocabulary();
    }
    checkTableSizes();
    if (components & 0x10) {
        notations();
    }
    if (components & 0x08) {
        unparsedEntities();
    }
    if (components & 0x04) {
        begin(Construct::CHARACTER_ENCODING_SCHEME, 0);
        take(1, BitKind::PADDING, 0);
        octetString(_text, BitKind::STRING);
        show(_text);
        emit();
    }
    if (components & 0x02) {
        begin(Construct::STANDALONE, 0);
        take(7, BitKind::PADDING, 0);
        _field.note = take(1, BitKind::STRUCTURE) != 0 ? "yes" : "no";
        emit();
    }
    if (components & 0x01) {
        begin(Construct::VERSION, 0);
        nonIdentifyingString(DocumentVocabulary::OTHER_STRING);
        emit();
    }
}

void DocumentWalker::identification() {
    begin(Construct::IDENTIFICATION, 0);
    unsigned short word = identificationWord();
    if (word == Encoder::XMLDECLARATION) {
        _field.construct = Construct::XML_DECLARATION;
        _text = "<?";
        while (_text.back() != '>') {
            if (!_reader.hasOctet()) {
                throwEnd();
            }
            char octet = 0;
            _reader.read(octet, 8);
            _text.push_back(octet);
        }
        part(BitKind::STRUCTURE, 8 * _text.size());
        show(_text);
        emit();
        begin(Construct::IDENTIFICATION, 0);
        word = identificationWord();
    }
    if (word != Encoder::DOCUMENTSTART) {
        throw FISException("Not a valid Fast Infoset document (invalid header)");
    }
    part(BitKind::STRUCTURE, 16);
    emit();
    begin(Construct::VERSION_NUMBER, 0);
    const unsigned int version = take(16, BitKind::STRUCTURE);
    if (version != Encoder::DOCUMENTVERSION) {
        throw FISException("Unsupported Fast Infoset document version");
    }
    _field.note = "1";
    emit();
}

unsigned short DocumentWalker::identificationWord() {
    if (!_reader.hasBits(16)) {
        throwEnd();
    }
    unsigned short word = 0;
    _reader.read(word, 16);
    return word;
}

void DocumentWalker::additionalData() {
    const unsigned int count = numberOfItems("additional data", 0);
    for (unsigned int i = 0; i < count; ++i) {
        for (const Construct construct : {Construct::ADDITIONAL_DATUM_ID, Construct::ADDITIONAL_DATUM}) {
            begin(construct, 1);
            take(1, BitKind::PADDING, 0);
            octetString(_text, BitKind::STRING);
            show(_text);
            emit();
        }
    }
}

void DocumentWalker::initialVocabulary() {
    begin(Construct::INITIAL_VOCABULARY, 0);
    take(3, BitKind::PADDING, 0);
    const unsigned int components = take(13, BitKind::STRUCTURE);
    if (components == 0) {
        throw FISException("The initial vocabulary has no component");
    }
    _field.note = namesOf(components, VOCABULARY_COMPONENTS);
    emit();
    if (components & 0x1000) {
        externalVocabulary();
    }
    if (components & 0x0800) {
        restrictedAlphabets();
    }
    if (components & 0x0400) {
        encodingAlgorithms();
    }
    // In the order of the standard, which is not that of the identifiers.
    unsigned int flag = 0x0200;
    for (const Field::Table id :
         {DocumentVocabulary::PREFIX, DocumentVocabulary::NAMESPACE_NAME, DocumentVocabulary::LOCAL_NAME,
          DocumentVocabulary::OTHER_NCNAME, DocumentVocabulary::OTHER_URI,
          DocumentVocabulary::ATTRIBUTE_VALUE, DocumentVocabulary::CONTENT_CHARACTER_CHUNK,
          DocumentVocabulary::OTHER_STRING}) {
        if (components & flag) {
            table(id);
        }
        flag >>= 1;
    }
    if (components & 0x0002) {
        nameTable(DocumentVocabulary::ELEMENT_NAME);
    }
    if (components & 0x0001) {
        nameTable(DocumentVocabulary::ATTRIBUTE_NAME);
    }
}

// Alphabets count beyond the built-in ones.
void DocumentWalker::checkTableSizes() const {
    std::size_t largest = _vocabulary.restrictedAlphabets().alphabets().size() -
                          Tamo::FastInfoset::DocumentRestrictedAlphabet().alphabets().size();
    for (int id = DocumentVocabulary::PREFIX; id <= DocumentVocabulary::ATTRIBUTE_NAME; ++id) {
        const auto table = static_cast<Field::Table>(id);
        largest =
            std::max(largest, table < DocumentVocabulary::ELEMENT_NAME ? _vocabulary.vocabulary(table).size()
                                                                       : names(table).size());
    }
    checkTableSize(largest);
}

void DocumentWalker::checkTableSize(std::size_t size) const {
    if (size > _limits.maxTableEntries) {
        throw FISException("Limit exceeded: table entries", std::to_string(_limits.maxTableEntries));
    }
}

void DocumentWalker::externalVocabulary() {
    begin(Construct::EXTERNAL_VOCABULARY, 1);
    take(1, BitKind::PADDING, 0);
    octetString(_text, BitKind::STRING);
    // Whatever its kind: a vector appends, as every literal of the document is to be (X.891, 8.4).
    _vocabulary = DocumentVocabulary(_loader.vocabulary(_text), DocumentVocabulary::VOC_VECTOR);
    show(_text);
    emit();
}

void DocumentWalker::restrictedAlphabets() {
    const unsigned int count = numberOfItems(nameOf(DocumentVocabulary::RESTRICTED_ALPHABET), 1);
    for (unsigned int i = 0; i < count; ++i) {
        begin(Construct::RESTRICTED_ALPHABET, 2);
        take(1, BitKind::PADDING, 0);
        octetString(_text, BitKind::STRING);
        _vocabulary.restrictedAlphabets().add(_text);
        _field.use = TableUse::ADDED;
        _field.table = DocumentVocabulary::RESTRICTED_ALPHABET;
        _field.index = static_cast<unsigned int>(_vocabulary.restrictedAlphabets().alphabets().size());
        show(_text);
        emit();
    }
}

void DocumentWalker::encodingAlgorithms() {
    const unsigned int count = numberOfItems(nameOf(DocumentVocabulary::ENCODING_ALGORITHM), 1);
    for (unsigned int i = 0; i < count; ++i) {
        begin(Construct::ENCODING_ALGORITHM, 2);
        take(1, BitKind::PADDING, 0);
        octetString(_text, BitKind::STRING);
        _field.use = TableUse::ADDED;
        _field.table = DocumentVocabulary::ENCODING_ALGORITHM;
        _field.index = _vocabulary.algorithms().add(_text);
        show(_text);
        emit();
    }
}

void DocumentWalker::table(Field::Table id) {
    const bool isEncoded = id >= DocumentVocabulary::ATTRIBUTE_VALUE;
    const unsigned int count = numberOfItems(nameOf(id), 1);
    for (unsigned int i = 0; i < count; ++i) {
        begin(Construct::TABLE_ENTRY, 2);
        take(isEncoded ? 2 : 1, BitKind::PADDING, 0);
        if (isEncoded) {
            encodedCharacterString(true);
        } else {
            octetString(_text, BitKind::NAME);
        }
        enter(id);
        show(_text);
        emit();
    }
}

void DocumentWalker::nameTable(Field::Table id) {
    const unsigned int count = numberOfItems(nameOf(id), 1);
    for (unsigned int i = 0; i < count; ++i) {
        nameSurrogate(id);
    }
}

void DocumentWalker::nameSurrogate(Field::Table id) {
    begin(Construct::NAME_SURROGATE, 2);
    take(6, BitKind::PADDING, 0);
    const bool hasPrefix = take(1, BitKind::STRUCTURE) != 0;
    const bool hasNamespace = take(1, BitKind::STRUCTURE) != 0;
    const auto index = [&](bool present, Field::Table part) -> unsigned int {
        if (!present) {
            return QualifiedNameEntry::ABSENT;
        }
        take(1, BitKind::PADDING, 0);
        const unsigned int value = integer();
        _field.note.append(_field.note.empty() ? "" : ", ").append(nameOf(part));
        _field.note.append(" ").append(std::to_string(value));
        return value;
    };
    const unsigned int prefix = index(hasPrefix, DocumentVocabulary::PREFIX);
    const unsigned int namespaceName = index(hasNamespace, DocumentVocabulary::NAMESPACE_NAME);
    const QualifiedNameEntry entry(prefix, namespaceName, index(true, DocumentVocabulary::LOCAL_NAME));
    enterName(id, entry);
    show(_text = qualifiedName(id, _field.index));
    emit();
}

void DocumentWalker::notations() {
    for (;;) {
        begin(Construct::NOTATION, 0);
        const unsigned int id = take(6, BitKind::STRUCTURE);
        if (id != 0x30) {
            if (id != TERMINATOR << 2) {
                throw FISEncodingException(
                    "The bits are neither a notation nor the end of the notations (X.891, C.2.6)");
            }
            _field.construct = Construct::NOTATIONS_END;
            _field.parts.clear();
            part(BitKind::STRUCTURE, 4);
            part(BitKind::PADDING, 2);
            take(2, BitKind::PADDING, 0);
            emit();
            return;
        }
        const bool hasSystemId = take(1, BitKind::STRUCTURE) != 0;
        const bool hasPublicId = take(1, BitKind::STRUCTURE) != 0;
        noteParts(_field, "with ", hasSystemId, hasPublicId, IDENTIFIERS);
        emit();
        identifyingString(Construct::NAME, 1, DocumentVocabulary::OTHER_NCNAME);
        identifiers(1, hasSystemId, hasPublicId);
    }
}

void DocumentWalker::unparsedEntities() {
    for (;;) {
        begin(Construct::UNPARSED_ENTITY, 0);
        const unsigned int id = take(7, BitKind::STRUCTURE);
        if (id != 0x68) {
            if (id != TERMINATOR << 3) {
                throw FISEncodingException("The bits are neither an unparsed entity nor the end of the "
                                           "unparsed entities (X.891, C.2.7)");
            }
            _field.construct = Construct::UNPARSED_ENTITIES_END;
            _field.parts.clear();
            part(BitKind::STRUCTURE, 4);
            part(BitKind::PADDING, 3);
            take(1, BitKind::PADDING, 0);
            emit();
            return;
        }
        const bool hasPublicId = take(1, BitKind::STRUCTURE) != 0;
        noteParts(_field, "with ", false, hasPublicId, IDENTIFIERS);
        emit();
        identifyingString(Construct::NAME, 1, DocumentVocabulary::OTHER_NCNAME);
        identifiers(1, true, hasPublicId);
        identifyingString(Construct::NOTATION_NAME, 1, DocumentVocabulary::OTHER_NCNAME);
    }
}

// The children of the document and of elements (X.891, C.2.11 and C.3)

void DocumentWalker::child() {
    const unsigned int octet = peek(8);
    const std::size_t depth = _openElements.size();
    if (octet < 0x80) {
        element();
    } else if (octet < 0xC0) {
        begin(Construct::CHARACTER_CHUNK, depth);
        take(2, BitKind::STRUCTURE, 2);
        nonIdentifyingString(DocumentVocabulary::CONTENT_CHARACTER_CHUNK);
        emit();
    } else if ((octet & 0xFC) == 0xC4) {
        documentTypeDeclaration();
    } else if ((octet & 0xFC) == 0xC8) {
        begin(Construct::UNEXPANDED_ENTITY_REFERENCE, depth);
        take(6, BitKind::STRUCTURE);
        const bool hasSystemId = take(1, BitKind::STRUCTURE) != 0;
        const bool hasPublicId = take(1, BitKind::STRUCTURE) != 0;
        noteParts(_field, "with ", hasSystemId, hasPublicId, IDENTIFIERS);
        emit();
        identifyingString(Construct::NAME, depth + 1, DocumentVocabulary::OTHER_NCNAME);
        identifiers(depth + 1, hasSystemId, hasPublicId);
    } else if (octet == 0xE1) {
        begin(Construct::PROCESSING_INSTRUCTION, depth);
        take(8, BitKind::STRUCTURE);
        emit();
        processingInstruction();
    } else if (octet == 0xE2) {
        begin(Construct::COMMENT, depth);
        take(8, BitKind::STRUCTURE);
        nonIdentifyingString(DocumentVocabulary::OTHER_STRING);
        emit();
    } else {
        throw FISEncodingException("The bits begin no child of an element or of the document (X.891, C.3)");
    }
}

void DocumentWalker::element() {
    const std::size_t depth = _openElements.size();
    begin(Construct::ELEMENT, depth);
    take(1, BitKind::STRUCTURE, 0);
    const bool hasAttributes = take(1, BitKind::STRUCTURE) != 0;
    const bool hasNamespaceAttributes = peek(6) == 0x38;
    if (hasAttributes || hasNamespaceAttributes) {
        _field.note = hasNamespaceAttributes ? "with namespace attributes" : "with";
        _field.note += hasAttributes ? (hasNamespaceAttributes ? ", attributes" : " attributes") : "";
    }
    if (hasNamespaceAttributes) {
        take(6, BitKind::STRUCTURE);
        emit();
        namespaceAttributes();
        begin(Construct::QUALIFIED_NAME, depth + 1);
    }
    name(DocumentVocabulary::ELEMENT_NAME, depth + 1);
    const unsigned int nameIndex = _lastIndex;
    if (hasAttributes) {
        attributes();
    }
    if (depth >= _limits.maxDepth) {
        throw FISException("Limit exceeded: element depth", std::to_string(_limits.maxDepth));
    }
    _openElements.push_back(nameIndex);
}

void DocumentWalker::namespaceAttributes() {
    const std::size_t depth = _openElements.size() + 1;
    for (;;) {
        begin(Construct::NAMESPACE_ATTRIBUTE, depth);
        if (take(4, BitKind::STRUCTURE) == TERMINATOR) {
            _field.construct = Construct::NAMESPACE_ATTRIBUTES_END;
            take(6, BitKind::PADDING, 0);
            emit();
            return;
        }
        _field.parts.back().expected = 0x0C; // which the parser does not insist on
        take(2, BitKind::STRUCTURE, 3);
        const bool hasPrefix = take(1, BitKind::STRUCTURE) != 0;
        const bool hasNamespace = take(1, BitKind::STRUCTURE) != 0;
        noteParts(_field, "with ", hasPrefix, hasNamespace, NAME_PARTS);
        emit();
        if (hasPrefix) {
            identifyingString(Construct::PREFIX, depth + 1, DocumentVocabulary::PREFIX);
        }
        if (hasNamespace) {
            identifyingString(Construct::NAMESPACE_NAME, depth + 1, DocumentVocabulary::NAMESPACE_NAME);
        }
    }
}

void DocumentWalker::attributes() {
    const std::size_t depth = _openElements.size() + 1;
    for (;;) {
        begin(Construct::ATTRIBUTE, depth);
        if (take(1, BitKind::STRUCTURE) != 0) {
            _field.construct = Construct::ATTRIBUTES_END;
            take(3, BitKind::STRUCTURE, 7);
            paddingAfterEnd();
            emit();
            return;
        }
        name(DocumentVocabulary::ATTRIBUTE_NAME, depth + 1);
        begin(Construct::ATTRIBUTE_VALUE, depth + 1);
        nonIdentifyingString(DocumentVocabulary::ATTRIBUTE_VALUE);
        emit();
    }
}

void DocumentWalker::documentTypeDeclaration() {
    const std::size_t depth = _openElements.size();
    begin(Construct::DOCUMENT_TYPE_DECLARATION, depth);
    take(6, BitKind::STRUCTURE);
    const bool hasSystemId = take(1, BitKind::STRUCTURE) != 0;
    const bool hasPublicId = take(1, BitKind::STRUCTURE) != 0;
    noteParts(_field, "with ", hasSystemId, hasPublicId, IDENTIFIERS);
    emit();
    identifiers(depth + 1, hasSystemId, hasPublicId);
    begin(Construct::PROCESSING_INSTRUCTION, depth + 1);
    unsigned int bits = take(4, BitKind::STRUCTURE);
    if (bits != TERMINATOR && bits != 0x0E) {
        throw FISEncodingException(
            "The bits are neither a processing instruction nor the end of the document type declaration "
            "(X.891, C.9)");
    }
    while (bits != TERMINATOR) {
        _field.parts.back().expected = 0x0E; // which the parser insists on for the first one only
        take(4, BitKind::STRUCTURE, 1);
        emit();
        processingInstruction();
        begin(Construct::PROCESSING_INSTRUCTION, depth + 1);
        bits = take(4, BitKind::STRUCTURE);
    }
    _field.construct = Construct::DOCUMENT_TYPE_DECLARATION_END;
    _field.depth = depth;
    paddingAfterEnd();
    emit();
}

void DocumentWalker::processingInstruction() {
    const std::size_t depth = _field.depth + 1;
    identifyingString(Construct::TARGET, depth, DocumentVocabulary::OTHER_NCNAME);
    begin(Construct::CONTENT, depth);
    nonIdentifyingString(DocumentVocabulary::OTHER_STRING);
    emit();
}

// The rest of the field that the name belongs to, and the parts of a literal name (X.891, C.17 and C.18).
void DocumentWalker::name(Field::Table id, std::size_t depth) {
    if (peek(4) != TERMINATOR) {
        const unsigned int index = integer();
        const QualifiedNameEntry* pEntry = entryOf(names(id), index);
        if (!pEntry) {
            throw FISEncodingException(std::string(nameOf(id)) + " has no entry " + std::to_string(index));
        }
        for (const auto& [part, partIndex] : {std::pair(DocumentVocabulary::PREFIX, pEntry->prefixId()),
                                              {DocumentVocabulary::NAMESPACE_NAME, pEntry->namespaceId()},
                                              {DocumentVocabulary::LOCAL_NAME, pEntry->localNameId()}}) {
            if (partIndex != QualifiedNameEntry::ABSENT) {
                stringAt(part, partIndex);
            }
        }
        read(id, index);
        show(_text = qualifiedName(id, index));
        emit();
        _lastIndex = index;
        return;
    }
    const bool isAttribute = _reader.bitPos() == 1;
    take(4, BitKind::STRUCTURE);
    if (isAttribute) {
        take(1, BitKind::PADDING, 0);
    }
    const bool hasPrefix = take(1, BitKind::STRUCTURE) != 0;
    const bool hasNamespace = take(1, BitKind::STRUCTURE) != 0;
    _field.note.append(_field.note.empty() ? "literal name" : "; literal name");
    noteParts(_field, " with ", hasPrefix, hasNamespace, NAME_PARTS);
    emit();
    bool hasAllParts = true;
    std::string shown;
    const auto index = [&](bool present, Construct construct, Field::Table part) {
        if (!present) {
            return 0u;
        }
        identifyingString(construct, depth, part);
        hasAllParts = hasAllParts && _field.use != TableUse::NOT_ADDED;
        if (part != DocumentVocabulary::NAMESPACE_NAME) {
            shown.append(shown.empty() ? "" : ":").append(_field.value);
        }
        return _lastIndex;
    };
    const unsigned int prefix = index(hasPrefix, Construct::PREFIX, DocumentVocabulary::PREFIX);
    const unsigned int namespaceName =
        index(hasNamespace, Construct::NAMESPACE_NAME, DocumentVocabulary::NAMESPACE_NAME);
    const unsigned int localName = index(true, Construct::LOCAL_NAME, DocumentVocabulary::LOCAL_NAME);
    begin(Construct::QUALIFIED_NAME, depth);
    enterName(id, QualifiedNameEntry(prefix, namespaceName, localName), hasAllParts);
    show(shown);
    emit();
    _lastIndex = _field.index;
}

void DocumentWalker::identifiers(std::size_t depth, bool hasSystemId, bool hasPublicId) {
    if (hasSystemId) {
        identifyingString(Construct::SYSTEM_IDENTIFIER, depth, DocumentVocabulary::OTHER_URI);
    }
    if (hasPublicId) {
        identifyingString(Construct::PUBLIC_IDENTIFIER, depth, DocumentVocabulary::OTHER_URI);
    }
}

// Strings and integers (X.891, C.13 to C.29)

void DocumentWalker::identifyingString(Construct construct, std::size_t depth, Field::Table id) {
    begin(construct, depth);
    if (take(1, BitKind::STRUCTURE) != 0) {
        const unsigned int index = integer();
        show(stringAt(id, index));
        read(id, index);
    } else {
        octetString(_text, BitKind::NAME);
        enter(id);
        show(_text);
    }
    _lastIndex = _field.index;
    emit();
}

void DocumentWalker::nonIdentifyingString(Field::Table id) {
    if (take(1, BitKind::STRUCTURE) != 0) {
        const unsigned int index = integer();
        show(stringAt(id, index));
        read(id, index);
        return;
    }
    const bool isAdded = take(1, BitKind::STRUCTURE) != 0;
    encodedCharacterString(isAdded);
    show(_text);
    if (isAdded) {
        enter(id);
    } else {
        _field.use = TableUse::NOT_ADDED;
        _field.table = id;
    }
}

void DocumentWalker::encodedCharacterString(bool isEntry) {
    _field.isEncoded = true;
    _field.form = static_cast<Field::Form>(take(2, BitKind::STRUCTURE));
    if (_field.form >= Field::Form::RESTRICTEDALPHABET) {
        _field.formIndex = integer();
    }
    switch (_field.form) {
    case Field::Form::UTF8:
        octetString(_text, BitKind::STRING);
        break;
    case Field::Form::UTF16:
        octetString(_octets, BitKind::STRING);
        StringDecoder::decodeUTF16(_octets, _text);
        break;
    case Field::Form::RESTRICTEDALPHABET: {
        octetString(_octets, BitKind::STRING);
        const auto& alphabets = std::as_const(_vocabulary).restrictedAlphabets();
        if (_field.formIndex > alphabets.alphabets().size() ||
            alphabets.alphabet(_field.formIndex).size() == 0) {
            throw FISEncodingException("No restricted alphabet has the number " +
                                       std::to_string(_field.formIndex) + " (X.891, 8.2)");
        }
        AlphabetCodes::decode(_octets, alphabets.alphabet(_field.formIndex), _text);
        break;
    }
    default:
        typedValues(isEntry);
    }
}

void DocumentWalker::typedValues(bool isEntry) {
    if (const std::string* const pURI = _vocabulary.algorithms().find(_field.formIndex)) {
        _field.algorithm = *pURI;
    }
    const std::size_t valueSize = sizeOfValue(_field.formIndex);
    if (valueSize > 0 && !isEntry && _maxShownArray != static_cast<std::size_t>(-1)) {
        const int bitPosition = _reader.bitPos();
        octetString(_octets, BitKind::TYPED);
        beginningOfArray(bitPosition, valueSize);
        return;
    }
    const int groupBits = 8 - _reader.bitPos();
    const unsigned int group = peek(groupBits);
    const auto pValue = _vocabulary.decodings().read(_field.formIndex, _reader, _vocabulary.algorithms());
    lengthPart(group, groupBits);
    UInt64 known = 0;
    for (const FieldPart& each : _field.parts) {
        known += each.bits;
    }
    part(BitKind::TYPED, _reader.position() - _field.bit - known);
    _text = textOf(*pValue);
}

// The algorithm gets an array of the first values and of what is left behind the last whole one, so that it
// refuses what it would refuse of the whole.
void DocumentWalker::beginningOfArray(int bitPosition, std::size_t valueSize) {
    // So many that the algorithm looks at everything that it looks at in the whole.
    const std::size_t shown = std::max(_maxShownArray, LEAST_SHOWN);
    if (_octets.size() > shown) {
        const std::size_t whole = shown - shown % valueSize;
        _octets.resize(whole + _octets.size() % valueSize);
        _field.isCut = true;
    }
    std::ostringstream stream;
    Tamo::FastInfoset::BitStreamWriter writer(stream, false);
    writer.writeBits(bitPosition, false);
    Encoder::nonEmptyOctetString(writer, _octets);
    writer.complete();
    const std::string octets = std::move(stream).str();
    Tamo::FastInfoset::BitStreamReader reader(octets.data(), octets.size());
    unsigned int ignored = 0;
    reader.read(ignored, bitPosition);
    _text = textOf(*_vocabulary.decodings().read(static_cast<int>(_field.formIndex), reader));
}

void DocumentWalker::octetString(std::string& octets, BitKind kind) {
    const int groupBits = 8 - _reader.bitPos();
    const unsigned int group = peek(groupBits);
    if (!_reader.read(octets, length())) {
        throw FISParseException("Unexpected end of stream while reading octet string");
    }
    lengthPart(group, groupBits);
    part(kind, 8 * octets.size());
}

std::size_t DocumentWalker::length() {
    static constexpr const char* END = "Unexpected end of stream while parsing string length";
    const int groupBits = 8 - _reader.bitPos();
    const unsigned int half = 1u << (groupBits - 1);
    const unsigned int group = bits(groupBits, END);
    UInt64 octets = UInt64{group} + 1;
    if (group == half) {
        octets = UInt64{bits(8, END)} + half + 1;
    } else if (group > half) {
        octets = UInt64{bits(32, END)} + half + 257;
    }
    if (octets > _reader.maxStringLength()) {
        throw FISException("Limit exceeded: string length", std::to_string(_reader.maxStringLength()));
    }
    return static_cast<std::size_t>(octets);
}

// The three forms of a length (X.891, C.22 to C.24): the group of bits up to the octet's end alone, or with 8
// or 32 bits behind.
void DocumentWalker::lengthPart(unsigned int group, int groupBits) {
    const unsigned int half = 1u << (groupBits - 1);
    const auto bits = static_cast<UInt64>(groupBits);
    if (group < half) {
        part(BitKind::LENGTH, bits);
    } else {
        part(BitKind::LENGTH, bits, group == half ? half : half + half / 2);
        part(BitKind::LENGTH, group == half ? 8 : 32);
    }
}

// At bit position 1, 2 or 3 (X.891, C.25 to C.28), or in eight bits at 4 or 6 (C.29).
unsigned int DocumentWalker::value(int position) {
    struct LongForm {
        unsigned int mark;  // the group's least value
        unsigned int high;  // its bits that are part of the integer
        int bits;           // of the integer, behind the group
        unsigned int least; // what it stands for without any bit
    };
    static constexpr LongForm LONG_FORMS[3][3] = {
        {{64, 31, 8, 65}, {96, 15, 16, 8257}, {127, 0, 0, 0}},
        {{32, 7, 8, 33}, {40, 7, 16, 2081}, {48, 0, 20, 526369}},
        {{16, 3, 8, 17}, {20, 3, 16, 1041}, {24, 0, 20, 263185}},
    };
    static constexpr const char* END = "Unexpected end of stream while reading integer";
    if (position > 3) {
        return bits(8, END) + 1;
    }
    unsigned int val = bits(8 - position, END);
    const LongForm* pForm = nullptr;
    for (const LongForm& form : LONG_FORMS[position - 1]) {
        pForm = val >= form.mark ? &form : pForm;
    }
    if (!pForm) {
        return val + 1;
    }
    if (pForm->bits == 20) {
        bits(4, END);
    }
    val = ((val & pForm->high) << pForm->bits) + pForm->least;
    val += pForm->bits != 0 ? bits(pForm->bits, END) : 0;
    if (val > Encoder::MAXINT20) {
        throw FISEncodingException("The index " + std::to_string(val) + " is beyond 2^20 (X.891, C.25)");
    }
    return val;
}

unsigned int DocumentWalker::integer() {
    const int position = _reader.bitPos();
    const unsigned int group = position <= 3 ? peek(8 - position) : 0;
    const UInt64 start = _reader.position();
    const unsigned int result = value(position);
    UInt64 bits = _reader.position() - start;
    const auto fixed = [&](UInt64 count, Tamo::Int64 expected) {
        part(BitKind::INDEX, count, expected);
        bits -= count;
    };
    if (position == 1 && group >= 96 && group < 127) {
        fixed(3, 6);
    } else if ((position == 2 && group >= 48) || (position == 3 && group >= 24)) {
        fixed(static_cast<UInt64>(8 - position), position == 2 ? 48 : 24);
        fixed(4, 0);
    }
    part(BitKind::INDEX, bits);
    return result;
}

unsigned int DocumentWalker::numberOfItems(const char* what, std::size_t depth) {
    begin(Construct::NUMBER_OF_ITEMS, depth);
    static constexpr const char* END = "Unexpected end of stream while parsing sequence length";
    const bool isLong = peek(1) != 0;
    const unsigned int count = isLong ? bits(24, END) % Encoder::MAXINT20 + 129 : bits(8, END) + 1;
    if (isLong) {
        part(BitKind::STRUCTURE, 4, 8);
    }
    part(BitKind::STRUCTURE, isLong ? 20 : 8);
    _field.note = std::to_string(count) + " (" + what + ")";
    emit();
    return count;
}

// What all of them stand on

void DocumentWalker::begin(Construct construct, std::size_t depth) {
    _field.construct = construct;
    _field.depth = depth;
    _field.bit = _reader.position();
    _field.bits = 0;
    _field.octets = {};
    _field.parts.clear();
    _field.note.clear();
    _field.hasValue = false;
    _field.value = {};
    _field.isCut = false;
    _field.isEncoded = false;
    _field.algorithm = {};
    _field.use = TableUse::NONE;
    _field.index = 0;
    _record.forget(_field.bit / 8);
}

void DocumentWalker::emit() {
    const UInt64 end = _reader.position();
    if (end > 8 * _record.size()) {
        throwEnd(); // a read across the end of a stream does not fail itself
    }
    _field.bits = end - _field.bit;
    _field.octets = _record.octets(_field.bit / 8, (end + 7) / 8);
    _visitor.field(_field);
}

unsigned int DocumentWalker::take(int numBits, BitKind kind, Tamo::Int64 expected) {
    unsigned int bits = 0;
    if (!_reader.read(bits, numBits)) {
        throwEnd();
    }
    part(kind, static_cast<UInt64>(numBits), expected);
    return bits;
}

// What stands behind the message's construct.
unsigned int DocumentWalker::bits(int numBits, const char* message) {
    unsigned int value = 0;
    if (!_reader.hasBits(numBits) || !_reader.read(value, numBits)) {
        throw FISParseException(message);
    }
    return value;
}

unsigned int DocumentWalker::peek(int numBits) {
    unsigned char bits = 0;
    if (!_reader.peek(bits, numBits)) {
        throwEnd();
    }
    return bits;
}

// Behind four bits that end something, the rest of the octet ends the next thing or is padding.
void DocumentWalker::paddingAfterEnd() {
    if (_reader.bitPos() == 4 && peek(4) != TERMINATOR) {
        take(4, BitKind::PADDING, 0);
        _isPadded = true;
    }
}

void DocumentWalker::part(BitKind kind, UInt64 bits, Tamo::Int64 expected) {
    _field.parts.push_back({kind, bits, expected});
}

void DocumentWalker::read(Field::Table id, unsigned int index) {
    _field.use = TableUse::READ;
    _field.table = id;
    _field.index = index;
}

void DocumentWalker::enter(Field::Table id) {
    append(id, _vocabulary.vocabulary(id), _text);
}

// A name of which a part is in no table cannot be in one either.
void DocumentWalker::enterName(Field::Table id, const QualifiedNameEntry& entry, bool hasAllParts) {
    append(id, names(id), entry, hasAllParts);
}

// As long as an index is left for it (X.891, 8.4).
template<class T>
void DocumentWalker::append(Field::Table id, Tamo::FastInfoset::Vocabulary<T>& table, const T& entry,
                            bool canBeEntered) {
    const bool isEntered = canBeEntered && table.size() <= Encoder::MAXINT20;
    bool found = false;
    _field.index = isEntered ? table.index(entry, found) : 0;
    _field.use = isEntered ? TableUse::ADDED : TableUse::NOT_ADDED;
    _field.table = id;
    checkTableSize(table.size());
}

void DocumentWalker::show(std::string_view value) {
    _field.hasValue = true;
    _field.value = value;
}

const std::string& DocumentWalker::stringAt(Field::Table id, unsigned int index) const {
    const std::string* pValue = entryOf(_vocabulary.vocabulary(id), index);
    if (!pValue) {
        throw FISEncodingException(std::string(nameOf(id)) + " has no entry " + std::to_string(index));
    }
    return *pValue;
}

const DocumentWalker::Names& DocumentWalker::names(Field::Table id) const {
    return id == DocumentVocabulary::ELEMENT_NAME ? _vocabulary.elementVocabulary()
                                                  : _vocabulary.attributeVocabulary();
}

DocumentWalker::Names& DocumentWalker::names(Field::Table id) {
    return id == DocumentVocabulary::ELEMENT_NAME ? _vocabulary.elementVocabulary()
                                                  : _vocabulary.attributeVocabulary();
}

const Field& DocumentWalker::current() {
    _field.octets = _record.octets(_field.bit / 8, _record.size());
    return _field;
}

std::string DocumentWalker::qualifiedName(Field::Table table, unsigned int index) const {
    const QualifiedNameEntry* pEntry = entryOf(names(table), index);
    std::string text;
    if (pEntry) {
        const auto string = [&](Field::Table id, unsigned int i) {
            const std::string* pString = entryOf(_vocabulary.vocabulary(id), i);
            return pString ? *pString : std::string();
        };
        text = string(DocumentVocabulary::PREFIX, pEntry->prefixId());
        text.append(text.empty() ? "" : ":");
        text.append(string(DocumentVocabulary::LOCAL_NAME, pEntry->localNameId()));
    }
    return text;
}

} // namespace finf
