#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "OctetComposer.h"
#include "Tamo/Exception.h"
#include "Tamo/FastInfoset/BoolEncoding.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DWordEncoding.h"
#include "Tamo/FastInfoset/DoubleEncoding.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FloatEncoding.h"
#include "Tamo/FastInfoset/IntEncoding.h"
#include "Tamo/FastInfoset/LongEncoding.h"
#include "Tamo/FastInfoset/NullEncoding.h"
#include "Tamo/FastInfoset/ShortEncoding.h"
#include "Tamo/FastInfoset/UUIDEncoding.h"
#include "Tamo/XML/AttributesImpl.h"
#include "Tamo/XML/Name.h"
#include "TextPieces.h"
#include <algorithm>
#include <cstring>
#include <string_view>
#include <typeinfo>

namespace Tamo::FastInfoset {

namespace {

using XML::NamespaceSupport;

const std::string EMPTY;

const XML::Attributes& emptyAttributes() {
    static const XML::AttributesImpl NONE;
    return NONE;
}

void requirePosition(bool holds, const char* message) {
    if (!holds) [[unlikely]] {
        throw FISEncodingException(message);
    }
}

std::string_view prefixOf(const std::string& qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string::npos ? std::string_view() : std::string_view(qname).substr(0, colon);
}

// The two bits that say whether a name has a prefix and a namespace name.
unsigned int presence(const std::string& prefix, const std::string& uri) {
    return (prefix.empty() ? 0u : 2u) | (uri.empty() ? 0u : 1u);
}

// An empty identifier counts as absent.
const std::string* presentOrNull(const std::string& identifier) {
    return identifier.empty() ? nullptr : &identifier;
}

WrittenNames::Kind kindOf(const std::string& attributeURI, const std::string& elementURI) {
    return attributeURI == elementURI ? WrittenNames::NATIVE_ATTRIBUTE : WrittenNames::FOREIGN_ATTRIBUTE;
}

// Whether a value is of one of this library's classes of arrays, and of none derived from them.
bool isBuiltInArray(const Encoding& value) {
    switch (value.type()) {
    case ShortEncoding::TYPE:
        return typeid(value) == typeid(ShortEncoding);
    case IntEncoding::TYPE:
        return typeid(value) == typeid(IntEncoding);
    case LongEncoding::TYPE:
        return typeid(value) == typeid(LongEncoding);
    case BoolEncoding::TYPE:
        return typeid(value) == typeid(BoolEncoding);
    case FloatEncoding::TYPE:
        return typeid(value) == typeid(FloatEncoding);
    case DoubleEncoding::TYPE:
        return typeid(value) == typeid(DoubleEncoding);
    case UUIDEncoding::TYPE:
        return typeid(value) == typeid(UUIDEncoding);
    default:
        return false;
    }
}

std::string valueOrEmpty(const std::string* pIdentifier) {
    return pIdentifier ? *pIdentifier : std::string();
}

} // namespace

FastInfosetWriter::FastInfosetWriter(std::ostream& str)
    : FastInfosetWriter(str, false, DocumentVocabulary::VOC_HASH) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     DocumentVocabulary::VocabularyImpl impl)
    : _writer(str, false), _writeXMLDeclaration(writeXMLDeclaration), _vocabulary(impl) {}

FastInfosetWriter::FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration,
                                     const DocumentVocabulary& vocabulary)
    : _writer(str, false), _writeXMLDeclaration(writeXMLDeclaration), _vocabulary(vocabulary) {}

FastInfosetWriter::~FastInfosetWriter() = default;

// ---- options

void FastInfosetWriter::setDocumentVocabulary(const DocumentVocabulary& vocabulary) {
    if (vocabulary.impl() == DocumentVocabulary::VOC_VECTOR) {
        throw InvalidArgumentException(
            "A DocumentVocabulary with VOC_VECTOR implementation cannot be used by FastInfosetWriter");
    }
    _vocabulary = vocabulary;
    forgetNames();
}

DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() {
    forgetNames(); // the caller may change the tables
    return _vocabulary;
}

const DocumentVocabulary& FastInfosetWriter::getDocumentVocabulary() const {
    return _vocabulary;
}

void FastInfosetWriter::setWriteXMLDeclaration(bool flag) {
    _writeXMLDeclaration = flag;
}

void FastInfosetWriter::setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) {
    _pExternalVocabulary = std::make_unique<DocumentVocabulary>(vocabulary);
    _externalVocabularyURI = uri;
}

void FastInfosetWriter::setMaxIndexedStringLength(int length) {
    _maxIndexedStringLength = length;
}

EncodingAlgorithm& FastInfosetWriter::encodingAlgorithms() {
    return _encodingAlgorithm;
}

void FastInfosetWriter::forgetNames() noexcept {
    _ownNames = {};
    _names.clear();
    _recentNamespace.clear();
}

// ---- document

void FastInfosetWriter::reset(std::ostream& str) {
    _writer.reset(str);
    if (_pExternalVocabulary) {
        _vocabulary = *_pExternalVocabulary;
    } else {
        if (_vocabulary.restrictedAlphabets().alphabets().size() != DocumentRestrictedAlphabet::BUILT_IN) {
            _vocabulary = DocumentVocabulary(_vocabulary.impl());
        }
        _vocabulary.reset();
    }
    _states.assign(1, UNINITIALIZED);
    _plainElements = 0;
    _prefixCounter = 0;
    _encodedData.clear();
    _notations.clear();
    _unparsedEntities.clear();
}

void FastInfosetWriter::setDocumentLocator(const XML::Locator*) {}

void FastInfosetWriter::skippedEntity(const std::string&) {}

void FastInfosetWriter::startEntity(const std::string&) {}

void FastInfosetWriter::endEntity(const std::string&) {}

void FastInfosetWriter::startFragment() {
    throw FISException("startFragment() not allowed");
}

void FastInfosetWriter::endFragment() {
    throw FISException("endFragment() not allowed");
}

void FastInfosetWriter::startDocument() {
    forgetNames();
    writeHeader();
    for (const bool isElement : {false, true}) {
        _ownNames[isElement] = getQNameVocabulary(isElement).size() == 1 ? 1 : 0;
    }
    pushState(DOCUMENT);
    _namespaces.reset();
    _namespaces.pushContext();
}

void FastInfosetWriter::endDocument() {
    handleEncodedData();
    _writer.writeBits(4, true);
    _writer.complete();
    popState();
}

std::vector<FastInfosetWriter::State> FastInfosetWriter::initialStates() {
    std::vector<State> states;
    states.reserve(16); // as deep as most documents are
    states.push_back(UNINITIALIZED);
    return states;
}

FastInfosetWriter::State FastInfosetWriter::topState() const {
    tamo_assert(!_states.empty());
    return _states.back(); // plain elements begin where this is no CDATA section, and it is none then
}

void FastInfosetWriter::pushState(State state) {
    settle();
    _states.push_back(state);
}

void FastInfosetWriter::popState() {
    settle();
    tamo_assert(!_states.empty());
    _states.pop_back();
}

// ---- header

void FastInfosetWriter::writeHeader() {
    Encoder::documentPreHeader(_writer, _writeXMLDeclaration);
    const bool hasAdditionalData = false;
    const bool hasCharacterEncodingScheme = false;
    const bool standalone = false;
    const bool hasVersion = false;
    const bool hasNotations = !_notations.empty();
    const bool hasUnparsedEntities = !_unparsedEntities.empty();

    static const DocumentVocabulary DEFAULT(DocumentVocabulary::VOC_HASH);
    const bool hasExternal = !_externalVocabularyURI.empty();
    if (!hasExternal && !hasNotations && !hasUnparsedEntities && _vocabulary.isPredefined()) {
        _writer.write(0u, 7); // what is left of the header when there is nothing to say
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
    _writer.write(hasAdditionalData);
    _writer.write(hasInitialVocabulary);
    _writer.write(hasNotations);
    _writer.write(hasUnparsedEntities);
    _writer.write(hasCharacterEncodingScheme);
    _writer.write(standalone);
    _writer.write(hasVersion);

    tamo_assert(!hasAdditionalData);
    if (hasInitialVocabulary) {
        writeInitialVocabulary(difference);
    }
    if (hasNotations) {
        writeNotations(_notations);
    }
    if (hasUnparsedEntities) {
        writeUnparsedEntities(_unparsedEntities);
    }
    tamo_assert(!hasCharacterEncodingScheme);
    tamo_assert(!standalone);
    tamo_assert(!hasVersion);
}

void FastInfosetWriter::writeInitialVocabulary(const DocumentVocabulary& voc) {
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
        writeExternalVocabulary(_externalVocabularyURI);
    }
    if (hasAlphabets) {
        writeRestrictedAlphabet(voc.restrictedAlphabets());
    }
    for (const ID id : TABLES) {
        const Vocabulary<std::string>& table = voc.vocabulary(id);
        if (table.empty()) {
            continue;
        }
        if (id <= DocumentVocabulary::OTHER_URI) {
            writeVocabulary(table);
        } else {
            writeEncodedVocabulary(table);
        }
    }
    if (!voc.elementVocabulary().empty()) {
        writeNameSurrogates(voc.elementVocabulary(), true);
    }
    if (!voc.attributeVocabulary().empty()) {
        writeNameSurrogates(voc.attributeVocabulary(), false);
    }
}

void FastInfosetWriter::writeExternalVocabulary(const std::string& uri) {
    _writer.write(false);
    Encoder::nonEmptyOctetString(_writer, uri);
}

void FastInfosetWriter::writeRestrictedAlphabet(const DocumentRestrictedAlphabet& alphabets) {
    const std::size_t numEntries = alphabets.alphabets().size();
    tamo_assert(numEntries > 0);
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    for (const RestrictedAlphabet& alphabet : alphabets.alphabets()) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, alphabet.characters());
    }
}

void FastInfosetWriter::writeVocabulary(const Vocabulary<std::string>& voc) {
    const std::size_t numEntries = voc.size();
    tamo_assert(numEntries > 0);
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    for (std::size_t i = 0; i < numEntries; ++i) {
        _writer.write(false);
        Encoder::nonEmptyOctetString(_writer, voc.value(static_cast<unsigned int>(i)));
    }
}

void FastInfosetWriter::writeEncodedVocabulary(const Vocabulary<std::string>& voc) {
    const std::size_t numEntries = voc.size();
    tamo_assert(numEntries > 0);
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    // Deliberate: no bits are asked for, which the bit writer refuses. Tables of encoded strings are for the
    // external vocabulary; a header that had to carry one is never written.
    _writer.write(2u, 0);
}

void FastInfosetWriter::writeNameSurrogates(const Vocabulary<QualifiedNameEntry>& voc, bool isElement) {
    const std::size_t numEntries = voc.size();
    tamo_assert(numEntries > 0);
    Encoder::lengthOfSequence(_writer, static_cast<unsigned int>(numEntries));
    for (std::size_t i = 0; i < numEntries; ++i) {
        writeQualifiedName(voc.value(static_cast<unsigned int>(i)), isElement);
    }
}

void FastInfosetWriter::writeNotations(const std::vector<Notation>& notations) {
    tamo_assert(!notations.empty());
    for (const Notation& notation : notations) {
        _writer.write(0x30u, 6);
        writeNotation(notation.getName(), presentOrNull(notation.getPublicId()),
                      presentOrNull(notation.getSystemId()));
    }
    _writer.write(0xF0u, 8);
}

void FastInfosetWriter::writeUnparsedEntities(const std::vector<UnparsedEntity>& unparsedEntities) {
    tamo_assert(!unparsedEntities.empty());
    for (const UnparsedEntity& entity : unparsedEntities) {
        _writer.write(0x68u, 7);
        writeUnparsedEntity(entity.getName(), presentOrNull(entity.getPublicId()), entity.getSystemId(),
                            entity.getNotationName());
    }
    _writer.write(0xF0u, 8);
}

// ---- elements

void FastInfosetWriter::startElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname, const XML::Attributes& list) {
    handleEncodedData();
    const XML::Attributes& attributes = stable(list);
    std::streambuf* const pBuf = _writer.startConstruct();
    // The hot path: an element that declares nothing.
    if ((_plainElements != 0 || isPlainPlace()) && !localName.empty()) [[likely]] {
        const unsigned int index =
            _names.find(WrittenNames::ELEMENT, uri, localName, qname, _namespaces.state());
        const int count = attributes.getLength();
        // An unknown name's index does not fit.
        if (count == 0 && OctetComposer::fitsPosition2(index) && pBuf) [[likely]] {
            PutArea::put(*pBuf, [=](char* p) { return OctetComposer::integerAtPosition2(p, 0, index); });
            ++_plainElements;
            return;
        }
        if (writeSimpleElement(pBuf, index, count, uri, localName, qname, attributes)) [[likely]] {
            ++_plainElements;
            return;
        }
    }
    settle();
    writeDeclaringElement(uri, localName, qname, attributes);
    _states.push_back(ELEMENT);
}

// The list, or a copy where its strings may change before they are written.
TAMO_ALWAYS_INLINE const XML::Attributes& FastInfosetWriter::stable(const XML::Attributes& attributes) {
    return _attributes.isStable(attributes) ? attributes : copied(attributes);
}

const XML::Attributes& FastInfosetWriter::copied(const XML::Attributes& attributes) {
    try {
        return _attributes.of(attributes);
    } catch (...) {
        _writer.complete(false);
        _writer.write(false); // the element had begun
        throw;
    }
}

// Whether an element may follow that needs no state and no namespace context of its own.
bool FastInfosetWriter::isPlainPlace() const noexcept {
    return _namespaces.declaresNothing() && !_states.empty() && _states.back() != CDATA;
}

// Gives the plain elements the states and contexts that they have done without.
void FastInfosetWriter::settle() {
    for (; _plainElements != 0; --_plainElements) {
        _namespaces.pushContext();
        _states.push_back(ELEMENT);
    }
}

void FastInfosetWriter::writeDeclaringElement(const std::string& uri, const std::string& localName,
                                              const std::string& qname, const XML::Attributes& attributes) {
    try {
        // Copied, because the attributes' declarations can move the bindings.
        _prefix = elementPrefix(uri, localName, qname);
        handleNamespaces(attributes, uri);
    } catch (...) {
        _writer.write(false); // the element had begun
        throw;
    }
    writeElement(_prefix, uri, localName.empty() ? qname : localName);
}

// An element that may declare nothing, in the room of its construct. The prefixes of names that are not
// known under the bindings in force are looked up first, because nothing may be written before it is certain
// that there is nothing to declare. Writes what writeDeclaringElement() would write; false, with nothing
// written, when that has to.
bool FastInfosetWriter::writeSimpleElement(std::streambuf* pBuf, unsigned int index, int count,
                                           const std::string& uri, const std::string& localName,
                                           const std::string& qname, const XML::Attributes& attributes) {
    const std::string* pPrefix = nullptr;
    if (!OctetComposer::fitsPosition2(index)) [[unlikely]] {
        pPrefix = boundElementPrefix(uri, localName, qname);
        if (!pPrefix) {
            return false;
        }
    }
    if (!findAttributeNames(attributes, count, uri)) [[unlikely]] {
        return false;
    }
    try {
        writeSimpleElement(pBuf, index, count, pPrefix, uri, localName, qname, attributes);
    } catch (...) {
        settle();
        _namespaces.pushContext(); // as an element that declares has it by then
        throw;
    }
    return true;
}

TAMO_ALWAYS_INLINE void FastInfosetWriter::writeSimpleElement(
    std::streambuf* pBuf, unsigned int index, int count, const std::string* pPrefix, const std::string& uri,
    const std::string& localName, const std::string& qname, const XML::Attributes& attributes) {
    OctetComposer octets(_writer, pBuf);
    const unsigned int high = count != 0 ? 0x40 : 0;
    if (!pPrefix) [[likely]] {
        octets.integerAtPosition2(high, index);
    } else {
        octets.apart([=, this, &uri, &localName, &qname](OctetComposer& name) {
            const unsigned int newIndex =
                writeQualifiedNameOrIndex(name, high, *pPrefix, uri, localName, true);
            if (remembersNames()) [[likely]] {
                _names.enter(WrittenNames::ELEMENT, uri, localName, qname, _namespaces.state(), newIndex);
            }
        });
    }
    const AttributeName* const pNames = _attributeNames.data();
    for (int i = 0; i < count; ++i) {
        if (pNames[i].index != WrittenNames::NOT_FOUND) [[likely]] {
            octets.integerAtPosition1(0, pNames[i].index);
        } else {
            octets.apart([=, this, &attributes, &uri](OctetComposer& name) {
                writeNewAttributeName(name, *pNames[i].pPrefix, attributes, i, uri);
            });
        }
        writeAttributeValue(octets, attributes.getValue(i));
    }
    octets.flush();
    if (count != 0) {
        _writer.writeTerminator();
    }
}

// Looks up the names of an element's attributes; false when one of them has to be declared.
bool FastInfosetWriter::findAttributeNames(const XML::Attributes& attributes, int count,
                                           const std::string& elementURI) {
    if (_attributeNames.size() < static_cast<std::size_t>(count)) [[unlikely]] {
        _attributeNames.resize(std::max<std::size_t>(16, static_cast<std::size_t>(count)));
    }
    AttributeName* pName = _attributeNames.data();
    for (int i = 0; i < count; ++i, ++pName) {
        const std::string& uri = attributes.getURI(i);
        const std::string& localName = attributes.getLocalName(i);
        if (uri.empty()) {
            pName->index = _names.findPlain(localName);
            pName->pPrefix = &EMPTY;
        } else {
            const std::string& qname = attributes.getQName(i);
            const WrittenNames::Kind kind = kindOf(uri, elementURI);
            pName->index = _names.find(kind, uri, localName, qname, _namespaces.state());
            if (pName->index == WrittenNames::NOT_FOUND) {
                pName->pPrefix = boundAttributePrefix(uri, qname);
                if (!pName->pPrefix) {
                    return false;
                }
                if (kind == WrittenNames::NATIVE_ATTRIBUTE) {
                    pName->pPrefix = &EMPTY;
                }
            }
        }
        if (pName->index == WrittenNames::NOT_FOUND && localName.empty()) [[unlikely]] {
            return false;
        }
    }
    return true;
}

// Outside of CDATA sections.
TAMO_ALWAYS_INLINE void FastInfosetWriter::writeAttributeValue(OctetComposer& octets,
                                                               const std::string& value) {
    if (!isIndexed(value.size())) {
        octets.stringAtPosition4(0, value); // which is not empty: the empty one is indexed
        return;
    }
    const HashKey key = HashKey::of(value);
    const FoundString string = lookUp(DocumentVocabulary::ATTRIBUTE_VALUE, value, key);
    if (OctetComposer::fitsPosition1(string.index)) {
        octets.integerAtPosition1(0x80, string.index);
    } else if (string.index == NOT_FOUND && HashKey::isExact(value.size()) && !value.empty()) [[likely]] {
        const bool added = addString(DocumentVocabulary::ATTRIBUTE_VALUE, value, key, string);
        octets.shortStringAtPosition4(added ? 0x40 : 0, value);
    } else {
        octets.apart([=, this, &value](OctetComposer& composer) {
            writeString(composer, value, DocumentVocabulary::ATTRIBUTE_VALUE, key, string);
        });
    }
}

void FastInfosetWriter::writeNewAttributeName(OctetComposer& octets, const std::string& prefix,
                                              const XML::Attributes& attributes, int i,
                                              const std::string& elementURI) {
    const std::string& uri = attributes.getURI(i);
    const std::string& localName = attributes.getLocalName(i);
    const unsigned int index = writeQualifiedNameOrIndex(octets, 0, prefix, uri, localName, false);
    if (remembersNames()) [[likely]] {
        if (uri.empty()) {
            _names.enterPlain(localName, index);
        } else {
            _names.enter(kindOf(uri, elementURI), uri, localName, attributes.getQName(i), _namespaces.state(),
                         index);
        }
    }
}

// Only with tables of ours: without a placeholder an index does not tell what is absent.
bool FastInfosetWriter::remembersNames() noexcept {
    return _vocabulary.indexedNames(true) != nullptr;
}

// The prefix of an element whose namespace is bound already; null when it would have to be declared.
const std::string* FastInfosetWriter::boundElementPrefix(const std::string& uri, const std::string& localName,
                                                         const std::string& qname) {
    const std::string_view prefix = qname == localName ? std::string_view() : prefixOf(qname);
    if (!prefix.empty()) {
        _prefix = prefix;
        return uri.empty() || _namespaces.getURI(prefix) == uri ? &_prefix : nullptr;
    }
    if (uri.empty() || (_defaultBindings == _namespaces.state() && _defaultNamespace == uri)) {
        return &EMPTY;
    }
    const std::string& bound = _namespaces.getPrefix(uri);
    if (!bound.empty()) {
        return &bound;
    }
    if (_namespaces.getURI(bound) != uri) {
        return nullptr;
    }
    _defaultNamespace = uri;
    _defaultBindings = _namespaces.state();
    return &EMPTY;
}

// Likewise of an attribute in a namespace: the prefix that it is written with.
const std::string* FastInfosetWriter::boundAttributePrefix(const std::string& uri,
                                                           const std::string& qname) const {
    const std::string_view prefix = prefixOf(qname);
    const std::string& bound = _namespaces.getPrefix(uri);
    return _namespaces.getURI(prefix.empty() ? bound : prefix) == uri ? &bound : nullptr;
}

// Declares the prefix where it is not bound.
const std::string& FastInfosetWriter::elementPrefix(const std::string& uri, const std::string& localName,
                                                    const std::string& qname) {
    if (localName.empty()) {
        if (!uri.empty() || qname.empty()) {
            throw FISException("Tag mismatch", qname);
        }
        return EMPTY; // a name without namespace processing has no prefix
    }
    const std::string* pPrefix = boundElementPrefix(uri, localName, qname);
    if (!pPrefix) {
        _prefix = qname.empty() || qname == localName ? newPrefix() : std::string(prefixOf(qname));
        _namespaces.declarePrefix(_prefix, uri);
        pPrefix = &_prefix;
    }
    return *pPrefix;
}

void FastInfosetWriter::endElement(const std::string&, const std::string&, const std::string&) {
    handleEncodedData();
    _writer.writeTerminator();
    if (_plainElements != 0) [[likely]] {
        --_plainElements;
    } else {
        popState();
        _namespaces.popContext();
    }
}

void FastInfosetWriter::startElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname) {
    startElement(uri, localName, qname, emptyAttributes());
}

void FastInfosetWriter::emptyElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname) {
    emptyElement(uri, localName, qname, emptyAttributes());
}

void FastInfosetWriter::emptyElement(const std::string& uri, const std::string& localName,
                                     const std::string& qname, const XML::Attributes& attributes) {
    startElement(uri, localName, qname, attributes);
    endElement(uri, localName, qname);
}

void FastInfosetWriter::dataElement(const std::string& uri, const std::string& localName,
                                    const std::string& qname, const std::string& data,
                                    const std::string& attr1, const std::string& value1,
                                    const std::string& attr2, const std::string& value2,
                                    const std::string& attr3, const std::string& value3) {
    static const std::string TYPE("CDATA");
    XML::AttributesImpl attributes;
    const std::string* const pairs[][2] = {{&attr1, &value1}, {&attr2, &value2}, {&attr3, &value3}};
    for (const auto& pair : pairs) {
        if (!pair[0]->empty()) {
            attributes.addAttribute(EMPTY, EMPTY, *pair[0], TYPE, *pair[1]);
        }
    }
    if (data.empty()) {
        emptyElement(uri, localName, qname, attributes);
    } else {
        startElement(uri, localName, qname, attributes);
        characters(data);
        endElement(uri, localName, qname);
    }
}

void FastInfosetWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
    if (prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) {
        settle();
        _namespaces.declarePrefix(prefix, uri);
    }
}

void FastInfosetWriter::endPrefixMapping(const std::string& prefix) {
    if (prefix != NamespaceSupport::XML_NAMESPACE_PREFIX) {
        settle();
        _namespaces.undeclarePrefix(prefix);
    }
}

std::string FastInfosetWriter::newPrefix() {
    return "ns" + std::to_string(++_prefixCounter);
}

void FastInfosetWriter::handleNamespaces(const XML::Attributes& attributes, const std::string& uri) {
    declareAttributeNamespaces(attributes);
    addNamespaceAttributes();
    addAttributes(attributes, uri);
    _namespaces.pushContext();
}

void FastInfosetWriter::declareAttributeNamespaces(const XML::Attributes& attributes) {
    const int count = attributes.getLength();
    for (int i = 0; i < count; ++i) {
        const std::string& uri = attributes.getURI(i);
        const std::string& qname = attributes.getQName(i);
        if (!uri.empty() && !boundAttributePrefix(uri, qname)) {
            // Deliberate: no prefix is generated; a name without one binds the default namespace.
            _namespaces.declarePrefix(std::string(prefixOf(qname)), uri);
        }
    }
}

void FastInfosetWriter::addNamespaceAttributes() {
    _namespaceAttributes.clear();
    _namespaces.visitDeclared([this](const std::string& prefix, const std::string& uri) {
        _namespaceAttributes.push_back({&prefix, &uri});
    });
    if (_namespaceAttributes.size() > 1) {
        std::sort(_namespaceAttributes.begin(), _namespaceAttributes.end(),
                  [](const auto& a, const auto& b) { return *a.pPrefix < *b.pPrefix; });
    }
}

void FastInfosetWriter::addAttributes(const XML::Attributes& attributes, const std::string& elementURI) {
    _attributeCount = static_cast<std::size_t>(attributes.getLength());
    if (_attributeValues.size() < _attributeCount) {
        _attributeValues.resize(_attributeCount);
    }
    for (std::size_t n = 0; n < _attributeCount; ++n) {
        const int i = static_cast<int>(n);
        AttributeValue& attribute = _attributeValues[n];
        attribute.pUri = &attributes.getURI(i);
        attribute.pLocalName = &attributes.getLocalName(i);
        attribute.pValue = &attributes.getValue(i);
        if (attribute.pLocalName->empty()) {
            attribute.ownLocalName = XML::Name::localName(attributes.getQName(i));
            attribute.pLocalName = &attribute.ownLocalName;
        }
        attribute.pPrefix = *attribute.pUri != elementURI ? &_namespaces.getPrefix(*attribute.pUri) : &EMPTY;
    }
}

void FastInfosetWriter::writeElement(const std::string& prefix, const std::string& uri,
                                     const std::string& localName) {
    requirePosition(_writer.bitPos() == 0, "Illegal startposition for an Element value");
    OctetComposer octets(_writer);
    unsigned int high = _attributeCount != 0 ? 0x40 : 0;
    if (!_namespaceAttributes.empty()) {
        octets.octet(high | 0x38);
        for (const NamespaceAttribute& declaration : _namespaceAttributes) {
            writeNamespaceAttribute(octets, *declaration.pPrefix, *declaration.pUri);
        }
        octets.octet(0xF0);
        high = 0;
    }
    writeQualifiedNameOrIndex(octets, high, prefix, uri, localName, true);
    for (std::size_t i = 0; i < _attributeCount; ++i) {
        const AttributeValue& attribute = _attributeValues[i];
        writeQualifiedNameOrIndex(octets, 0, *attribute.pPrefix, *attribute.pUri, *attribute.pLocalName,
                                  false);
        writeString(octets, *attribute.pValue, DocumentVocabulary::ATTRIBUTE_VALUE);
    }
    octets.flush();
    if (_attributeCount != 0) {
        _writer.write(0x0Fu, 4);
    }
}

void FastInfosetWriter::writeNamespaceAttribute(OctetComposer& octets, const std::string& prefix,
                                                const std::string& uri) {
    octets.octet(0xCC | presence(prefix, uri));
    if (!prefix.empty()) {
        writeIdentifyingStringOrIndex(octets, prefix, DocumentVocabulary::PREFIX);
    }
    if (!uri.empty()) {
        writeIdentifyingStringOrIndex(octets, uri, DocumentVocabulary::NAMESPACE_NAME);
    }
}

// ---- names

// At bit position 2 (an element's) or 1 (an attribute's).
unsigned int FastInfosetWriter::writeQualifiedNameOrIndex(OctetComposer& octets, unsigned int high,
                                                          const std::string& prefix, const std::string& uri,
                                                          const std::string& localName, bool isElement) {
    if (localName.empty()) [[unlikely]] {
        octets.flush();
        _writer.write(high >> (isElement ? 6 : 7), isElement ? 2 : 1); // the construct had begun
    }
    tamo_assert(!localName.empty());
    const HashKey localKey = HashKey::of(localName);
    const HashKey prefixKey = HashKey::of(prefix);
    const FoundString local = lookUpName(DocumentVocabulary::LOCAL_NAME, localName, localKey);
    const FoundString foundPrefix = lookUpPart(DocumentVocabulary::PREFIX, prefix, prefixKey);
    const bool isRecent = !uri.empty() && uri == _recentNamespace;
    const HashKey uriKey = isRecent ? HashKey(0, 0) : HashKey::of(uri);
    const FoundString foundUri = isRecent ? FoundString{_recentNamespaceIndex, 0}
                                          : lookUpPart(DocumentVocabulary::NAMESPACE_NAME, uri, uriKey);
    const bool areKnown =
        local.index != NOT_FOUND && foundPrefix.index != NOT_FOUND && foundUri.index != NOT_FOUND;
    FoundName found;
    if (areKnown) {
        const QualifiedNameEntry name(static_cast<unsigned int>(foundPrefix.index),
                                      static_cast<unsigned int>(foundUri.index),
                                      static_cast<unsigned int>(local.index));
        found = lookUp(isElement, name, ValueIndex<QualifiedNameEntry>::keyOf(name));
        if (found.index != NOT_FOUND) {
            const auto index = static_cast<unsigned int>(found.index);
            if (isElement && OctetComposer::fitsPosition2(index)) {
                octets.integerAtPosition2(high, index);
            } else if (!isElement && OctetComposer::fitsPosition1(index)) {
                octets.integerAtPosition1(high, index);
            } else {
                octets.flush();
                _writer.write(high >> (isElement ? 6 : 7), isElement ? 2 : 1);
                Encoder::integer(_writer, index);
            }
            return index;
        }
    }
    octets.octet((isElement ? high | 0x3C : 0x78) | presence(prefix, uri));
    unsigned int prefixId = 0;
    unsigned int uriId = 0;
    if (!prefix.empty()) {
        prefixId =
            writeIdentifyingStringOrIndex(octets, prefix, DocumentVocabulary::PREFIX, prefixKey, foundPrefix);
    }
    if (!uri.empty()) {
        uriId =
            writeIdentifyingStringOrIndex(octets, uri, DocumentVocabulary::NAMESPACE_NAME, uriKey, foundUri);
        if (!isRecent && _vocabulary.indexedVocabulary(DocumentVocabulary::NAMESPACE_NAME)) {
            _recentNamespace = uri;
            _recentNamespaceIndex = uriId;
        }
    }
    const QualifiedNameEntry name(
        prefixId, uriId,
        writeIdentifyingStringOrIndex(octets, localName, DocumentVocabulary::LOCAL_NAME, localKey, local));
    if (auto* const pTable = _vocabulary.indexedNames(isElement)) [[likely]] {
        const HashKey key = ValueIndex<QualifiedNameEntry>::keyOf(name);
        // A name with a new part is new among names that are made of known ones.
        std::size_t& ownNames = _ownNames[isElement];
        if (!areKnown && pTable->values().size() == ownNames) [[likely]] {
            ++ownNames;
            return pTable->append(name, key);
        }
        found = pTable->find(name, key);
        const bool qneExists = found.index != NOT_FOUND;
        tamo_assert(!qneExists);
        ownNames += pTable->values().size() == ownNames ? 1 : 0;
        return pTable->append(name, key, found);
    }
    return insertQualifiedName(name, isElement);
}

// A name of the header's tables, bit by bit.
void FastInfosetWriter::writeQualifiedName(const std::string& prefix, const std::string& uri,
                                           const std::string& localName, bool isElement) {
    tamo_assert(!localName.empty());
    _writer.write(!prefix.empty());
    _writer.write(!uri.empty());
    unsigned int prefixId = 0;
    unsigned int uriId = 0;
    if (!prefix.empty()) {
        prefixId = writeIdentifyingStringOrIndex(prefix, DocumentVocabulary::PREFIX);
    }
    if (!uri.empty()) {
        uriId = writeIdentifyingStringOrIndex(uri, DocumentVocabulary::NAMESPACE_NAME);
    }
    const unsigned int localNameId = writeIdentifyingStringOrIndex(localName, DocumentVocabulary::LOCAL_NAME);
    insertQualifiedName(QualifiedNameEntry(prefixId, uriId, localNameId), isElement);
}

void FastInfosetWriter::writeQualifiedName(const QualifiedNameEntry& entry, bool isElement) {
    const auto part = [this](ID id, unsigned int index) {
        return index == QualifiedNameEntry::ABSENT ? std::string() : _vocabulary.value(id, index);
    };
    writeQualifiedName(part(DocumentVocabulary::PREFIX, entry.prefixId()),
                       part(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId()),
                       part(DocumentVocabulary::LOCAL_NAME, entry.localNameId()), isElement);
}

unsigned int FastInfosetWriter::insertQualifiedName(const QualifiedNameEntry& qne, bool isElement) {
    bool qneExists = false;
    const unsigned int index = getQNameVocabulary(isElement).index(qne, qneExists);
    tamo_assert(!qneExists);
    return index;
}

Vocabulary<QualifiedNameEntry>& FastInfosetWriter::getQNameVocabulary(bool isElement) {
    return isElement ? _vocabulary.elementVocabulary() : _vocabulary.attributeVocabulary();
}

// ---- content

void FastInfosetWriter::characters(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    handleEncodedData();
    std::streambuf* const pBuf = _writer.startConstruct();
    // The text ends at the first NUL of ch, but nothing behind start + length is looked at.
    const auto end = static_cast<std::size_t>(start) + static_cast<std::size_t>(length);
    if (start == 0 && isIndexed(end) && HashKey::isExact(end)) {
        bool hasNul = false;
        const HashKey key = HashKey::ofWhole({ch, end}, hasNul);
        if (!hasNul) [[likely]] {
            writeShortChunk(pBuf, {ch, end}, key);
            return;
        }
    }
    const void* pNul = end != 0 ? std::memchr(ch, 0, end) : nullptr;
    const std::size_t stop = pNul ? static_cast<std::size_t>(static_cast<const char*>(pNul) - ch) : end;
    const std::size_t begin = std::min(static_cast<std::size_t>(start), stop);
    writeCharacterChunk(pBuf, {ch + begin, stop - begin});
}

void FastInfosetWriter::ignorableWhitespace(const char ch[], int start, int length) {
    characters(ch, start, length);
}

void FastInfosetWriter::characters(const std::string& text) {
    writeText(text);
}

void FastInfosetWriter::characters(std::string_view text) {
    writeText(text);
}

void FastInfosetWriter::writeText(std::string_view text) {
    handleEncodedData();
    TextPieces::forEach(
        text, [this](std::string_view piece) { writeCharacterChunk(_writer.startConstruct(), piece); });
}

void FastInfosetWriter::writeCharacterChunk(std::streambuf* pBuf, std::string_view text) {
    if (isIndexed(text.size())) {
        writeShortChunk(pBuf, text, HashKey::of(text));
    } else {
        OctetComposer octets(_writer, pBuf);
        writeLiteralChunk(octets, text, false);
        octets.flush();
    }
}

// A chunk that is short enough for its table.
TAMO_ALWAYS_INLINE void FastInfosetWriter::writeShortChunk(std::streambuf* pBuf, std::string_view text,
                                                           HashKey key) {
    const FoundString chunk = lookUp(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, text, key);
    if (OctetComposer::fitsPosition3(chunk.index) && pBuf) [[likely]] {
        PutArea::put(*pBuf, [=](char* p) { return OctetComposer::integerAtPosition3(p, 0xA0, chunk.index); });
    } else {
        writeNewChunk(pBuf, text, key, chunk);
    }
}

void FastInfosetWriter::writeNewChunk(std::streambuf* pBuf, std::string_view text, HashKey key,
                                      FoundString chunk) {
    if (chunk.index != NOT_FOUND) { // in the writer's own room, or as no other form has room for
        _writer.write(0x05u, 3);
        Encoder::integer(_writer, static_cast<unsigned int>(chunk.index));
        return;
    }
    const bool added = addChunk(text, key, chunk);
    OctetComposer octets(_writer, pBuf);
    if (!text.empty() && HashKey::isExact(text.size()) && topState() != CDATA) [[likely]] {
        octets.shortStringAtPosition6(added ? 0x90 : 0x80, text);
    } else {
        writeLiteralChunk(octets, text, added);
    }
    octets.flush();
}

bool FastInfosetWriter::addChunk(std::string_view text, HashKey key, FoundString notFound) {
    try {
        return addString(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, text, key, notFound);
    } catch (...) {
        _writer.write(0x02u, 2); // the chunk had begun
        throw;
    }
}

TAMO_ALWAYS_INLINE void FastInfosetWriter::writeLiteralChunk(OctetComposer& octets, std::string_view text,
                                                             bool added) {
    if (text.empty()) [[unlikely]] {
        octets.flush();
        _writer.write(added ? 0x24u : 0x20u, 6);
        Encoder::nonEmptyOctetString(_writer, std::string()); // throws
    } else if (topState() == CDATA) {
        octets.octet(added ? 0x9C : 0x8C);
        octets.stringAtPosition6((CDataEncoding::TYPE - 1) << 2, text);
    } else {
        octets.stringAtPosition6(added ? 0x90 : 0x80, text);
    }
}

void FastInfosetWriter::comment(const char ch[], int start, int length) {
    tamo_assert(start >= 0 && length >= 0);
    comment(std::string_view(ch + start, static_cast<std::size_t>(length)));
}

void FastInfosetWriter::comment(std::string_view text) {
    handleEncodedData();
    _writer.complete(false);
    OctetComposer octets(_writer);
    octets.octet(0xE2);
    writeString(octets, text, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

void FastInfosetWriter::processingInstruction(const std::string& target, const std::string& data) {
    handleEncodedData();
    _writer.complete(false);
    OctetComposer octets(_writer);
    octets.octet(0xE1);
    writeIdentifyingStringOrIndex(octets, target, DocumentVocabulary::OTHER_NCNAME);
    writeString(octets, data, DocumentVocabulary::OTHER_STRING);
    octets.flush();
}

void FastInfosetWriter::startCDATA() {
    if (topState() == CDATA) {
        throw FISException("Cannot nest CDATA sections");
    }
    pushState(CDATA);
}

void FastInfosetWriter::endCDATA() {
    handleEncodedData();
    popState();
}

// ---- document type declaration

void FastInfosetWriter::startDTD(const std::string&, const std::string& publicId,
                                 const std::string& systemId) {
    pushState(DTD);
    _writer.complete(false);
    _writer.write(0x31u, 6);
    writeDocumentTypeDeclaration(publicId, systemId);
}

void FastInfosetWriter::endDTD() {
    _writer.write(0x0Fu, 4);
    tamo_assert(_writer.bitPos() == 4);
    popState();
}

void FastInfosetWriter::writeDocumentTypeDeclaration(const std::string& publicId,
                                                     const std::string& systemId) {
    requirePosition(_writer.bitPos() == 6, "Illegal startposition for a DocumentTypeDeclaration value");
    _writer.write(!systemId.empty());
    _writer.write(!publicId.empty());
    if (!systemId.empty()) {
        writeIdentifyingStringOrIndex(systemId, DocumentVocabulary::OTHER_URI);
    }
    if (!publicId.empty()) {
        writeIdentifyingStringOrIndex(publicId, DocumentVocabulary::OTHER_URI);
    }
}

void FastInfosetWriter::notationDecl(const std::string& name, const std::string* publicId,
                                     const std::string* systemId) {
    settle();
    tamo_assert(!_states.empty());
    tamo_assert(_states.back() == UNINITIALIZED);
    _notations.emplace_back(name, valueOrEmpty(publicId), valueOrEmpty(systemId));
}

void FastInfosetWriter::unparsedEntityDecl(const std::string& name, const std::string* publicId,
                                           const std::string& systemId, const std::string& notationName) {
    settle();
    tamo_assert(!_states.empty());
    tamo_assert(_states.back() == UNINITIALIZED);
    _unparsedEntities.emplace_back(name, valueOrEmpty(publicId), systemId, notationName);
}

void FastInfosetWriter::writeNotation(const std::string& name, const std::string* publicId,
                                      const std::string* systemId) {
    requirePosition(_writer.bitPos() == 6, "Illegal startposition for a Notation value");
    _writer.write(systemId != nullptr);
    _writer.write(publicId != nullptr);
    writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
    if (systemId) {
        writeIdentifyingStringOrIndex(*systemId, DocumentVocabulary::OTHER_URI);
    }
    if (publicId) {
        writeIdentifyingStringOrIndex(*publicId, DocumentVocabulary::OTHER_URI);
    }
}

void FastInfosetWriter::writeUnparsedEntity(const std::string& name, const std::string* publicId,
                                            const std::string& systemId, const std::string& notationName) {
    requirePosition(_writer.bitPos() == 7, "Illegal startposition for an UnparsedEntity value");
    _writer.write(publicId != nullptr);
    writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
    writeIdentifyingStringOrIndex(systemId, DocumentVocabulary::OTHER_URI);
    if (publicId) {
        writeIdentifyingStringOrIndex(*publicId, DocumentVocabulary::OTHER_URI);
    }
    writeIdentifyingStringOrIndex(notationName, DocumentVocabulary::OTHER_NCNAME);
}

// ---- strings

unsigned int FastInfosetWriter::writeIdentifyingStringOrIndex(OctetComposer& octets, const std::string& s,
                                                              ID id) {
    const HashKey key = HashKey::of(s);
    return writeIdentifyingStringOrIndex(octets, s, id, key, lookUpName(id, s, key));
}

unsigned int FastInfosetWriter::writeIdentifyingStringOrIndex(OctetComposer& octets, const std::string& s,
                                                              ID id, HashKey key, FoundString found) {
    IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id);
    if (!pTable) [[unlikely]] {
        found = lookUpOrAdd(id, s);
    }
    const bool isKnown = found.index != NOT_FOUND;
    const unsigned int index = isKnown  ? static_cast<unsigned int>(found.index)
                               : pTable ? pTable->append(s, key, found)
                                        : static_cast<unsigned int>(found.place);
    if (isKnown && OctetComposer::fitsPosition1(index)) {
        octets.integerAtPosition1(0x80, index);
    } else if (!isKnown && !s.empty()) {
        octets.stringAtPosition1(0, s);
    } else {
        octets.flush();
        isKnown ? writeIdentifyingStringIndex(index) : writeIdentifyingString(s, id); // throws
    }
    return index;
}

unsigned int FastInfosetWriter::writeIdentifyingStringOrIndex(const std::string& s, ID id) {
    bool found = false;
    const unsigned int index = _vocabulary.index(id, s, found);
    if (found) {
        writeIdentifyingStringIndex(index);
    } else {
        writeIdentifyingString(s, id);
    }
    return index;
}

void FastInfosetWriter::writeIdentifyingStringIndex(unsigned int index) {
    requirePosition(_writer.bitPos() == 0, "Illegal startposition for an writeIdentifyingStringIndex");
    _writer.write(true);
    Encoder::integer(_writer, index);
}

void FastInfosetWriter::writeIdentifyingString(const std::string& s, ID) {
    requirePosition(_writer.bitPos() == 0, "Illegal startposition for an writeIdentifyingString");
    _writer.write(false);
    Encoder::nonEmptyOctetString(_writer, s);
}

bool FastInfosetWriter::isIndexed(std::size_t size) const noexcept {
    // The limit is widened with its sign: a negative one is greater than every size.
    return size <= static_cast<std::size_t>(static_cast<std::ptrdiff_t>(_maxIndexedStringLength));
}

TAMO_ALWAYS_INLINE FastInfosetWriter::FoundString FastInfosetWriter::lookUp(ID id, std::string_view text,
                                                                            HashKey key) {
    if (const IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id)) [[likely]] {
        return pTable->find(text, key);
    }
    return lookUpOrAdd(id, text);
}

// In a table of another kind, which decides by itself what it has: a string that is not there is added at
// once, and its place is its index. Entries beyond those that an index can name are not added.
FastInfosetWriter::FoundString FastInfosetWriter::lookUpOrAdd(ID id, std::string_view text) {
    Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    const bool isFull = table.size() > Encoder::MAXINT20;
    bool found = false;
    const unsigned int index =
        isFull ? table.exists(std::string(text), found) : table.index(std::string(text), found);
    return found ? FoundString{index, 0} : FoundString{NOT_FOUND, isFull ? NOT_FOUND : index};
}

// A part of a name: often none, which every table of ours has as its placeholder.
TAMO_ALWAYS_INLINE FastInfosetWriter::FoundString
FastInfosetWriter::lookUpPart(ID id, const std::string& text, HashKey key) {
    return text.empty() && _vocabulary.indexedVocabulary(id) ? FoundString{0, 0} : lookUpName(id, text, key);
}

// A part of a name that is there, or another identifying string: it is added by itself.
TAMO_ALWAYS_INLINE FastInfosetWriter::FoundString
FastInfosetWriter::lookUpName(ID id, const std::string& text, HashKey key) {
    if (const IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id)) [[likely]] {
        return pTable->find(text, key);
    }
    bool found = false;
    return {_vocabulary.vocabulary(id).exists(text, found), 0};
}

// A table that holds all the entries that an index can name takes no more (X.891, 7.14.7): its other strings
// are written literally each time.
TAMO_ALWAYS_INLINE bool FastInfosetWriter::addString(ID id, std::string_view text, HashKey key,
                                                     FoundString notFound) {
    if (IndexedVocabulary<std::string>* const pTable = _vocabulary.indexedVocabulary(id)) [[likely]] {
        const bool hasRoom = pTable->values().size() <= Encoder::MAXINT20;
        if (hasRoom) [[likely]] {
            pTable->append(text, key, notFound);
        }
        return hasRoom;
    }
    return notFound.place != NOT_FOUND; // lookUp() has added it
}

FastInfosetWriter::FoundName FastInfosetWriter::lookUp(bool isElement, const QualifiedNameEntry& name,
                                                       HashKey key) {
    if (const auto* const pTable = _vocabulary.indexedNames(isElement)) [[likely]] {
        return pTable->find(name, key);
    }
    bool found = false;
    return {getQNameVocabulary(isElement).exists(name, found), 0};
}

// A non-identifying string or index at bit position 0 (X.891, C.14).
void FastInfosetWriter::writeString(OctetComposer& octets, std::string_view text, ID id) {
    if (!isIndexed(text.size())) {
        writeLiteralString(octets, text, false);
        return;
    }
    const HashKey key = HashKey::of(text);
    writeString(octets, text, id, key, lookUp(id, text, key));
}

void FastInfosetWriter::writeString(OctetComposer& octets, std::string_view text, ID id, HashKey key,
                                    FoundString string) {
    if (string.index != NOT_FOUND) {
        if (OctetComposer::fitsPosition1(string.index)) [[likely]] {
            octets.integerAtPosition1(0x80, string.index);
        } else {
            octets.flush();
            _writer.write(true);
            Encoder::integer(_writer, static_cast<unsigned int>(string.index));
        }
        return;
    }
    const bool added = addString(id, text, key, string);
    if (!text.empty() && HashKey::isExact(text.size()) && topState() != CDATA) {
        octets.shortStringAtPosition4(added ? 0x40 : 0, text);
    } else {
        writeLiteralString(octets, text, added);
    }
}

void FastInfosetWriter::writeLiteralString(OctetComposer& octets, std::string_view text, bool added) {
    if (text.empty()) [[unlikely]] {
        octets.flush();
        _writer.write(added ? 0x04u : 0x00u, 4);
        Encoder::nonEmptyOctetString(_writer, std::string()); // throws
    } else if (topState() == CDATA) [[unlikely]] {
        octets.octet(added ? 0x70 : 0x30);
        octets.stringAtPosition4((CDataEncoding::TYPE - 1) << 4, text);
    } else {
        octets.stringAtPosition4(added ? 0x40 : 0, text);
    }
}

void FastInfosetWriter::writeNonIdentifyingStringOrIndex(const AutoPtr<Encoding>& e, ID id) {
    requirePosition(_writer.bitPos() == 0 || _writer.bitPos() == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    const Encoding& value = *e;
    const bool isText = value.type() == CDataEncoding::TYPE || value.type() == NullEncoding::TYPE;
    const std::string& text = value.content();
    const bool indexed = isText && isIndexed(text.size());
    const HashKey key = HashKey::of(indexed ? std::string_view(text) : std::string_view());
    const FoundString string = indexed ? lookUp(id, text, key) : FoundString();
    _writer.write(string.index != NOT_FOUND);
    if (string.index != NOT_FOUND) {
        Encoder::integer(_writer, static_cast<unsigned int>(string.index));
        return;
    }
    _writer.write(indexed && addString(id, text, key, string));
    writeEncodedCharacterString(e);
}

void FastInfosetWriter::writeEncodedCharacterString(const AutoPtr<Encoding>& e) {
    requirePosition(_writer.bitPos() == 2 || _writer.bitPos() == 4,
                    "Illegal startposition for a writeEncodedCharacterString");
    const Encoding& value = *e;
    if (value.type() == NullEncoding::TYPE) {
        _writer.write(0x00u, 2);
        Encoder::nonEmptyOctetString(_writer, value.content());
    } else {
        _writer.write(0x03u, 2);
        Encoder::integer(_writer, value.type());
        value.write(_writer);
    }
}

void FastInfosetWriter::writeUnexpandedEntityReference(const std::string& name, const std::string* systemId,
                                                       const std::string* publicId) {
    requirePosition(_writer.bitPos() == 6, "Illegal startposition for a UnexpandedEntityReference value");
    _writer.write(systemId != nullptr);
    _writer.write(publicId != nullptr);
    writeIdentifyingStringOrIndex(name, DocumentVocabulary::OTHER_NCNAME);
    if (systemId) {
        writeIdentifyingStringOrIndex(*systemId, DocumentVocabulary::OTHER_URI);
    }
    if (publicId) {
        writeIdentifyingStringOrIndex(*publicId, DocumentVocabulary::OTHER_URI);
    }
}

// ---- typed data

template<class E, class T>
void FastInfosetWriter::insertValue(const T& value) {
    // A run of single values grows the last array in place; only a class of the application's own needs
    // merge().
    if (!_encodedData.empty()) {
        Encoding& last = *_encodedData.back();
        if (typeid(last) == typeid(E)) {
            static_cast<E&>(last).append(value);
            return;
        }
    }
    insertEncoding(AutoPtr<Encoding>(new E(value)));
}

void FastInfosetWriter::binaryData(const char* data, std::size_t size) {
    insertEncoding(AutoPtr<Encoding>(new DWordEncoding(data, size)));
}

void FastInfosetWriter::binaryData(std::span<const std::byte> octets) {
    if (!octets.empty()) {
        binaryData(reinterpret_cast<const char*>(octets.data()), octets.size());
    }
}

void FastInfosetWriter::encodedData(Int16 value) {
    insertValue<ShortEncoding>(value);
}

void FastInfosetWriter::encodedData(Int32 value) {
    insertValue<IntEncoding>(value);
}

void FastInfosetWriter::encodedData(Int64 value) {
    insertValue<LongEncoding>(value);
}

void FastInfosetWriter::encodedData(bool value) {
    insertValue<BoolEncoding>(value);
}

void FastInfosetWriter::encodedData(float value) {
    insertValue<FloatEncoding>(value);
}

void FastInfosetWriter::encodedData(double value) {
    insertValue<DoubleEncoding>(value);
}

void FastInfosetWriter::encodedData(const UUID& value) {
    insertValue<UUIDEncoding>(value);
}

void FastInfosetWriter::insertEncoding(const AutoPtr<Encoding>& encoding) {
    if (_encodedData.empty() || !_encodedData.back()->merge(*encoding)) {
        _encodedData.push_back(encoding);
    }
}

void FastInfosetWriter::writeEncodedData() {
    _writer.complete(false);
    for (const AutoPtr<Encoding>& e : _encodedData) {
        Encoding& value = *e;
        // The built-in arrays are written from their values: where nobody can see it their text would be
        // built for nothing.
        if (value.referenceCount() != 1 || !isBuiltInArray(value)) {
            value.createContent();
        }
        if (value.type() == CDataEncoding::TYPE) {
            requirePosition(_writer.bitPos() == 0, "Illegal startposition for a CharacterChunk value");
            writeCharacterChunk(_writer.place(), value.content());
        } else {
            _writer.write(0x02u, 2);
            writeNonIdentifyingStringOrIndex(e, DocumentVocabulary::CONTENT_CHARACTER_CHUNK);
        }
    }
    _encodedData.clear();
}

} // namespace Tamo::FastInfoset
