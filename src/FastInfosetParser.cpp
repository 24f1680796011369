#include "Tamo/FastInfoset/FastInfosetParser.h"
#include "CommonForms.h"
#include "OwnTable.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/ExternalVocabularyLoader.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISDefaultHandler.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/FastInfosetWriter.h"
#include "Tamo/FastInfoset/StringDecoder.h"
#include "Tamo/FastInfoset/VectorVocabulary.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/EntityResolverImpl.h"
#include "Tamo/XML/InputSource.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/SAXException.h"
#include "Tamo/XML/XMLWriter.h"
#include "TextPieces.h"
#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;

// The four bits that end a list, an element or the document.
constexpr unsigned char TERMINATOR = 0x0F;

constexpr const char* ELEMENT_END = "Unexpected end of stream while parsing element";
constexpr const char* DTD_END = "Unexpected end of stream while parsing document type declaration";

// The bits have to be there for the construct that the message names.
inline void requireBits(BitStreamReader& reader, int numBits, const char* message) {
    if (!reader.hasBits(numBits)) [[unlikely]] {
        throw FISParseException(message);
    }
}

inline void readBit(BitStreamReader& reader, bool& bit, const char* message) {
    requireBits(reader, 1, message);
    reader.read(bit);
}

inline unsigned char readBits(BitStreamReader& reader, int numBits, const char* message) {
    requireBits(reader, numBits, message);
    unsigned char bits = 0;
    reader.read(bits, numBits);
    return bits;
}

inline unsigned char peekBits(BitStreamReader& reader, int numBits, const char* message) {
    requireBits(reader, numBits, message);
    unsigned char bits = 0;
    reader.peek(bits, numBits);
    return bits;
}

inline void skipBits(BitStreamReader& reader, int numBits, const char* message) {
    requireBits(reader, numBits, message);
    reader.skip(numBits);
}

void requirePosition(bool holds, const char* message) {
    if (!holds) [[unlikely]] {
        throw FISEncodingException(message);
    }
}

// What stands for the values of an application's table.
const VerbTable<std::string>& noValues() {
    static const VerbTable<std::string> NONE{};
    return NONE;
}

[[noreturn]] void throwLimitExceeded(const char* message, UInt64 limit) {
    throw FISException(message, std::to_string(limit));
}

int lengthOf(const std::string& comment) {
    if (comment.size() > TextPieces::MOST) [[unlikely]] {
        throw FISException("A comment of " + std::to_string(comment.size()) +
                           " octets cannot be reported in one call, which takes " +
                           std::to_string(TextPieces::MOST));
    }
    return static_cast<int>(comment.size());
}

} // namespace

TAMO_CONSTINIT const std::string FastInfosetParser::EMPTY_STRING;

FastInfosetParser::FastInfosetParser(DocumentVocabulary::VocabularyImpl impl) : _vocabulary(impl) {}

FastInfosetParser::FastInfosetParser(const DocumentVocabulary& vocabulary) : _vocabulary(vocabulary) {}

FastInfosetParser::~FastInfosetParser() = default;

void FastInfosetParser::setEntityResolver(XML::EntityResolver* pResolver) {
    _pEntityResolver = pResolver;
}

XML::EntityResolver* FastInfosetParser::getEntityResolver() const {
    return _pEntityResolver;
}

void FastInfosetParser::setDTDHandler(XML::DTDHandler* pDTDHandler) {
    _pDTDHandler = pDTDHandler;
}

XML::DTDHandler* FastInfosetParser::getDTDHandler() const {
    return _pDTDHandler;
}

void FastInfosetParser::setContentHandler(XML::ContentHandler* pContentHandler) {
    _pContentHandler = pContentHandler;
    _pTypedContentHandler = dynamic_cast<FISContentHandler*>(pContentHandler);
}

XML::ContentHandler* FastInfosetParser::getContentHandler() const {
    return _pContentHandler;
}

void FastInfosetParser::setErrorHandler(XML::ErrorHandler* pErrorHandler) {
    _pErrorHandler = pErrorHandler;
}

XML::ErrorHandler* FastInfosetParser::getErrorHandler() const {
    return _pErrorHandler;
}

void FastInfosetParser::setFeature(const std::string& name, bool value) {
    if (name == FEATURE_NAMESPACES) {
        if (!value) {
            throw XML::SAXNotSupportedException("namespace support cannot be disabled");
        }
    } else if (name == FEATURE_NAMESPACE_PREFIXES) {
        _namespacePrefixes = value;
    } else {
        throw XML::SAXNotRecognizedException(name);
    }
}

bool FastInfosetParser::getFeature(const std::string& name) const {
    if (name == FEATURE_NAMESPACES) {
        return true;
    }
    if (name == FEATURE_NAMESPACE_PREFIXES) {
        return _namespacePrefixes;
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::setProperty(const std::string& name, const std::string&) {
    if (name == PROPERTY_DECLARATION_HANDLER || name == PROPERTY_LEXICAL_HANDLER) {
        throw XML::SAXNotSupportedException("property does not take a string value: " + name);
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::setProperty(const std::string& name, void* value) {
    if (name == PROPERTY_DECLARATION_HANDLER) {
        _pDeclarationHandler = value;
    } else if (name == PROPERTY_LEXICAL_HANDLER) {
        _pLexicalHandler = static_cast<XML::LexicalHandler*>(value);
    } else {
        throw XML::SAXNotRecognizedException(name);
    }
}

void* FastInfosetParser::getProperty(const std::string& name) const {
    if (name == PROPERTY_DECLARATION_HANDLER) {
        return _pDeclarationHandler;
    }
    if (name == PROPERTY_LEXICAL_HANDLER) {
        return _pLexicalHandler;
    }
    throw XML::SAXNotRecognizedException(name);
}

void FastInfosetParser::parse(XML::InputSource* pSource) {
    tamo_check_ptr(pSource);
    if (pSource->getByteStream()) {
        BitStreamReader reader(*pSource->getByteStream());
        parseDocument(reader);
    } else if (pSource->getCharacterStream()) {
        BitStreamReader reader(*pSource->getCharacterStream());
        parseDocument(reader);
    } else {
        parse(pSource->getSystemId());
    }
}

void FastInfosetParser::parse(const std::string& systemId) {
    XML::EntityResolverImpl resolver;
    struct Resolved {
        XML::EntityResolverImpl& resolver;
        XML::InputSource* pSource;
        ~Resolved() {
            if (pSource) {
                resolver.releaseInputSource(pSource);
            }
        }
    };
    const Resolved resolved{resolver, resolver.resolveEntity(nullptr, systemId)};
    if (!resolved.pSource) {
        throw FISParseException("Cannot resolve system identifier", systemId);
    }
    parse(resolved.pSource);
}

void FastInfosetParser::parseMemoryNP(const char* data, std::size_t size) {
    BitStreamReader reader(data, size);
    parseDocument(reader);
}

void FastInfosetParser::setDocumentHandler(FISDocumentHandler* pDocumentHandler) {
    _pDocumentHandler = pDocumentHandler;
}

FISDocumentHandler* FastInfosetParser::getDocumentHandler() const {
    return _pDocumentHandler;
}

void FastInfosetParser::setExternalVocabularyLoader(ExternalVocabularyLoader* pLoader) {
    _pLoader = pLoader;
}

ExternalVocabularyLoader* FastInfosetParser::getExternalVocabularyLoader() const {
    return _pLoader;
}

void FastInfosetParser::setLimits(const ParserLimits& limits) {
    _limits = limits;
}

const ParserLimits& FastInfosetParser::limits() const {
    return _limits;
}

const DocumentVocabulary& FastInfosetParser::vocabulary() const {
    return _vocabulary;
}

DecodingAlgorithm& FastInfosetParser::decodingAlgorithms() {
    return _vocabulary.decodings();
}

void FastInfosetParser::initialize(FastInfosetWriter* pWriter) {
    if (!pWriter) {
        return;
    }
    setContentHandler(pWriter);
    setDocumentHandler(pWriter);
    setDTDHandler(pWriter);
    setProperty(PROPERTY_LEXICAL_HANDLER, static_cast<void*>(static_cast<XML::LexicalHandler*>(pWriter)));
}

void FastInfosetParser::initialize(XML::XMLWriter* pWriter) {
    if (!pWriter) {
        return;
    }
    setContentHandler(pWriter);
    setDocumentHandler(dynamic_cast<FISDocumentHandler*>(pWriter));
    setDTDHandler(pWriter);
    setProperty(PROPERTY_LEXICAL_HANDLER, static_cast<void*>(static_cast<XML::LexicalHandler*>(pWriter)));
}

void FastInfosetParser::initialize(FISDefaultHandler* pHandler) {
    if (!pHandler) {
        return;
    }
    setContentHandler(pHandler);
    setDocumentHandler(pHandler);
    setDTDHandler(pHandler);
    setProperty(PROPERTY_LEXICAL_HANDLER, static_cast<void*>(static_cast<XML::LexicalHandler*>(pHandler)));
}

void FastInfosetParser::parseDocument(BitStreamReader& reader) {
    beginDocument(reader);
    parseItems(reader, true);
    if (_pContentHandler) {
        _pContentHandler->endDocument();
    }
}

void FastInfosetParser::beginDocument(BitStreamReader& reader) {
    _openElements.clear();
    _declaredPrefixes.clear();
    _inDTD = false;
    _meter.start(_limits.delivery());
    _pSource = &reader;
    reader.setMaxStringLength(_limits.maxStringLength);
    Decoder::documentPreHeader(reader, _scratch);
    if (_pDocumentHandler) {
        _pDocumentHandler->setWriteXMLDeclaration(!_scratch.empty());
    }
    const Decoder::OpenHeaderParts parts =
        Decoder::documentHeader(reader, _vocabulary, _pDocumentHandler, _pLoader);
    bindTables();
    forgetNames();
    if (_pDocumentHandler) {
        _pDocumentHandler->setDocumentVocabulary(_vocabulary);
    }
    parseDocumentChildren(reader, parts);
    if (_pContentHandler) {
        _pContentHandler->startDocument();
    }
}

void FastInfosetParser::parseDocumentChildren(BitStreamReader& reader,
                                              const Decoder::OpenHeaderParts& parts) {
    static constexpr const char* NOTATIONS_END = "Unexpected end of stream while parsing notations";
    static constexpr const char* ENTITIES_END = "Unexpected end of stream while parsing unparsed entities";
    static constexpr const char* HEADER_END = "Unexpected end of stream while parsing document header";
    if (parts.notations) {
        for (;;) {
            const unsigned char id = readBits(reader, 6, NOTATIONS_END);
            if (id != 0x30) {
                tamo_assert(id == 60);
                skipBits(reader, 2, NOTATIONS_END);
                break;
            }
            parseNotation(reader);
        }
    }
    if (parts.unparsedEntities) {
        for (;;) {
            const unsigned char id = readBits(reader, 7, ENTITIES_END);
            if (id != 0x68) {
                tamo_assert(id == 120);
                skipBits(reader, 1, ENTITIES_END);
                break;
            }
            parseUnparsedEntity(reader);
        }
    }
    if (parts.characterEncodingScheme) {
        skipBits(reader, 1, HEADER_END);
        Decoder::nonEmptyOctetString(reader, _scratch);
    }
    if (parts.standalone) {
        skipBits(reader, 7, HEADER_END);
        readBits(reader, 1, HEADER_END);
    }
    if (parts.version) {
        parseNonIdentifyingStringOrIndexXML(reader, DocumentVocabulary::OTHER_STRING);
    }
}

// The children of the document and, through the stack of open elements, of every element below it: all that
// are left, or one item (a child or an end) only. False when the document has ended.
bool FastInfosetParser::parseItems(BitStreamReader& reader, bool all) {
    static constexpr const char* END = "Unexpected end of stream while parsing element children";
    do {
        if (_inDTD) [[unlikely]] {
            parseDTDItem(reader);
            continue;
        }
        if (all) {
            parseCommonItems(reader, true);
        }
        if (peekBits(reader, 4, END) != TERMINATOR) {
            reader.skipToByteStart();
            if (all || !parseCommonItems(reader, false)) {
                parseElementChild(reader);
            }
        } else if (_openElements.empty()) {
            return false;
        } else {
            reader.advance(4);
            endElement();
        }
    } while (all);
    return true;
}

// The hot path: what most documents consist of, read octet by octet from what the reader surely has. The
// operations named parseCommon... take the usual forms only. What else they meet, be it a rarer encoding, a
// long index, octets that are not there yet or a limit, is left to the operations that take every form, bit
// by bit, and are the ones to read for the format.
//
// Reads all items from an octet boundary on, or only one child; false when the next item is left.
bool FastInfosetParser::parseCommonItems(BitStreamReader& reader, bool all) {
    CommonForms octets(reader);
    while (octets.areEnough()) {
        const unsigned int b = octets.first();
        if (b < 0x80) {
            parseCommonElement(reader, octets, all);
        } else if (b < 0xC0) {
            if (!parseCommonCharacterChunk(octets)) {
                break;
            }
        } else if (b < 0xF0 || !all || _openElements.empty()) {
            break;
        } else {
            endElement();
            const bool endsHere = b == 0xFF && _openElements.empty();
            if (endsHere || !octets.isEndWhole()) {
                octets.leave(reader);
                reader.advance(4);
                return false;
            }
            if (b == 0xFF) {
                endElement();
            }
            octets.acceptOctet();
        }
        if (!all) {
            octets.leave(reader);
            return true;
        }
    }
    octets.leave(reader);
    return false;
}

TAMO_ALWAYS_INLINE void FastInfosetParser::parseCommonElement(BitStreamReader& reader, CommonForms& octets,
                                                              bool all) {
    const unsigned int b = octets.first();
    _declaredPrefixes.clear();
    unsigned int index = 0;
    const ResolvedNames::Name* pName = nullptr;
    if (octets.integerAtPosition2(index) && (pName = _elementNames.find(index))) [[likely]] {
        octets.accept();
    } else {
        index = octets.apart(reader, [&] { return parseOtherName(reader, b, true); });
        pName = _elementNames.find(index);
    }
    _attributes.clear();
    const bool isEnd = (b & 0x40) && parseCommonAttributes(reader, octets, all);
    startElement(index, *pName);
    if (isEnd) {
        endElement();
    }
}

// A name on the octet b that is not known by its index: in full, or in a form for the reader.
unsigned int FastInfosetParser::parseOtherName(BitStreamReader& reader, unsigned int b, bool isElement) {
    const unsigned int literal = isElement ? 0x3C : 0x78;
    if ((b & literal) == literal) [[likely]] {
        reader.advance(8);
        return parseQualifiedName(reader, (b & 0x02) != 0, (b & 0x01) != 0, isElement);
    }
    reader.advance(isElement ? 2 : 1);
    return isElement ? parseElementName(reader) : parseQualifiedNameOrIndex(reader, false);
}

// Reads the attributes of an element; true when the octet that ends them ends the element as well and has
// been read whole, as it is when all items are.
TAMO_ALWAYS_INLINE bool FastInfosetParser::parseCommonAttributes(BitStreamReader& reader, CommonForms& octets,
                                                                 bool all) {
    while (octets.areEnough()) {
        const unsigned int b = octets.first();
        if (b & 0x80) {
            if (!all || !octets.isEndWhole()) {
                break;
            }
            octets.acceptOctet();
            return (b & 0x0F) == TERMINATOR;
        }
        unsigned int index = 0;
        const ResolvedNames::Name* pName = nullptr;
        if (octets.integerAtPosition1(index) && (pName = _attributeNames.find(index))) [[likely]] {
            octets.accept();
        } else {
            index = octets.apart(reader, [&] { return parseOtherName(reader, b, false); });
            pName = _attributeNames.find(index);
        }
        if (!octets.areEnough() || !parseCommonAttributeValue(octets, *pName)) [[unlikely]] {
            octets.apart(reader, [&] { parseAttributeValue(reader, *pName); });
        }
    }
    octets.apart(reader, [&] { parseAttributes(reader); });
    return false;
}

// A value by index or as UTF-8.
TAMO_ALWAYS_INLINE bool FastInfosetParser::parseCommonAttributeValue(CommonForms& octets,
                                                                     const ResolvedNames::Name& name) {
    const unsigned int b = octets.first();
    if (b & 0x80) {
        unsigned int index = 0;
        const std::string* pValue = nullptr;
        if (!octets.integerAtPosition1(index) ||
            !(pValue = _tables[DocumentVocabulary::ATTRIBUTE_VALUE]->find(index))) {
            return false;
        }
        octets.accept();
        addAttribute(name, *pValue);
        return true;
    }
    std::size_t size = 0;
    const char* pValue = nullptr;
    if ((b & 0x30) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition4(size) ||
        size > _limits.maxStringLength || !(pValue = octets.string(size))) {
        return false;
    }
    const std::string* const pKept =
        (b & 0x40) ? keep(DocumentVocabulary::ATTRIBUTE_VALUE, pValue, size) : nullptr;
    if (pKept) [[likely]] {
        addAttribute(name, *pKept);
    } else {
        addAttribute(name, pValue, size);
    }
    return true;
}

TAMO_ALWAYS_INLINE bool FastInfosetParser::parseCommonCharacterChunk(CommonForms& octets) {
    const unsigned int b = octets.first();
    if (b & 0x20) {
        unsigned int index = 0;
        const std::string* pText = nullptr;
        if (!octets.integerAtPosition3(index) ||
            !(pText = _tables[DocumentVocabulary::CONTENT_CHARACTER_CHUNK]->find(index))) {
            return false;
        }
        octets.accept();
        reportCharacters(pText->data(), pText->size());
        return true;
    }
    std::size_t size = 0;
    const char* pText = nullptr;
    if ((b & 0x0C) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition6(size) ||
        size > _limits.maxStringLength || size > TextPieces::MOST || !(pText = octets.string(size))) {
        return false;
    }
    if (b & 0x10) {
        keep(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, pText, size);
    }
    reportCharacters(pText, size);
    return true;
}

inline void FastInfosetParser::reportCharacters(const char* pText, std::size_t size) {
    if (_pContentHandler) {
        deliver(CALLBACK + size);
        _pContentHandler->characters(pText, 0, static_cast<int>(size));
    }
}

// A child on an octet boundary.
void FastInfosetParser::parseElementChild(BitStreamReader& reader) {
    const unsigned char b = peekBits(reader, 8, "Unexpected end of stream while parsing element children");
    if (b < 0x80) {
        reader.advance(1);
        parseElement(reader);
    } else if (b < 0xC0) {
        reader.advance(2);
        parseCharacterChunk(reader);
    } else if (b < 0xE0) {
        reader.advance(6);
        if ((b & 0xFC) == 0xC4) {
            parseDocumentTypeDeclaration(reader);
        } else if ((b & 0xFC) == 0xC8) {
            parseUnexpandedEntityReference(reader);
        } else {
            throw FISEncodingException("Invalid child element");
        }
    } else {
        if (b == 0xE1) {
            reader.advance(8);
            parseProcessingInstruction(reader);
        } else if (b == 0xE2) {
            reader.advance(8);
            parseComment(reader);
        } else {
            throw FISEncodingException("Parse error: unknown element child code");
        }
    }
}

void FastInfosetParser::parseElement(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 1, "Illegal startposition for an Element value");
    bool hasAttributes = false;
    readBit(reader, hasAttributes, ELEMENT_END);
    // Deliberate: one list for all elements, so that an element ends the mappings of the element started
    // last. Handlers that rely on balanced endPrefixMapping calls would have to count themselves.
    _declaredPrefixes.clear();
    const unsigned int index = parseElementName(reader);
    _attributes.clear();
    if (hasAttributes) {
        parseAttributes(reader);
    }
    startElement(index, *_elementNames.find(index));
}

// The namespace attributes of an element, if any, and its name.
unsigned int FastInfosetParser::parseElementName(BitStreamReader& reader) {
    if (peekBits(reader, 6, ELEMENT_END) == 0x38) {
        parseNamespaceAttributes(reader);
    }
    return parseQualifiedNameOrIndex(reader, true);
}

inline void FastInfosetParser::startElement(unsigned int index, const ResolvedNames::Name& name) {
    if (_openElements.size() >= _limits.maxDepth) [[unlikely]] {
        throwLimitExceeded("Limit exceeded: element depth", _limits.maxDepth);
    }
    _openElements.push_back(index);
    if (_pContentHandler) {
        // The name is handed out twice, here and at the end.
        deliver(2 * (name.octets + name.pPrefix->size()));
        _pContentHandler->startElement(*name.pUri, *name.pLocalName, qualifiedName(index), _attributes);
    }
}

inline void FastInfosetParser::endElement() {
    const unsigned int index = _openElements.back();
    _openElements.pop_back();
    if (_pContentHandler) {
        const ResolvedNames::Name* pName = _elementNames.find(index);
        if (!pName) [[unlikely]] { // another one has taken its place
            resolveName(index, true);
            pName = _elementNames.find(index);
        }
        _pContentHandler->endElement(*pName->pUri, *pName->pLocalName, qualifiedName(index));
        for (const std::string* pPrefix : _declaredPrefixes) {
            deliver(CALLBACK + pPrefix->size());
            _pContentHandler->endPrefixMapping(*pPrefix);
        }
    }
}

void FastInfosetParser::parseNamespaceAttributes(BitStreamReader& reader) {
    skipBits(reader, 6, ELEMENT_END);
    while (readBits(reader, 4, ELEMENT_END) != TERMINATOR) {
        // Deliberate: any other four bits are taken for 1100.
        skipBits(reader, 2, ELEMENT_END);
        parseNamespaceAttribute(reader);
    }
    skipBits(reader, 6, ELEMENT_END);
}

void FastInfosetParser::parseNamespaceAttribute(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing namespace attribute";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a NamespaceAttribute value");
    bool hasPrefix = false;
    bool hasNamespace = false;
    readBit(reader, hasPrefix, END);
    readBit(reader, hasNamespace, END);
    const std::string& prefix =
        parseCondIdentifyingStringOrIndex(reader, hasPrefix, DocumentVocabulary::PREFIX);
    const std::string& uri =
        parseCondIdentifyingStringOrIndex(reader, hasNamespace, DocumentVocabulary::NAMESPACE_NAME);
    _declaredPrefixes.push_back(&prefix);
    if (_pContentHandler) {
        deliver(CALLBACK + prefix.size() + uri.size());
        _pContentHandler->startPrefixMapping(prefix, uri);
    }
}

void FastInfosetParser::parseAttributes(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing attributes";
    for (;;) {
        bool last = false;
        readBit(reader, last, END);
        if (last) {
            skipBits(reader, 3, END);
            return;
        }
        requirePosition(reader.bitPos() == 1, "Illegal startposition for a Attribute value");
        parseAttributeValue(reader, *_attributeNames.find(parseQualifiedNameOrIndex(reader, false)));
    }
}

void FastInfosetParser::parseAttributeValue(BitStreamReader& reader, const ResolvedNames::Name& name) {
    const std::string& value =
        parseNonIdentifyingStringOrIndexXML(reader, DocumentVocabulary::ATTRIBUTE_VALUE);
    if (&value == &_text) {
        addAttribute(name, value.data(), value.size());
    } else {
        addAttribute(name, value);
    }
}

// A value that belongs to a table.
inline void FastInfosetParser::addAttribute(const ResolvedNames::Name& name, const std::string& value) {
    deliver(name.octets + value.size());
    _attributes.add(*name.pUri, *name.pLocalName, value);
}

inline void FastInfosetParser::addAttribute(const ResolvedNames::Name& name, const char* pValue,
                                            std::size_t size) {
    deliver(name.octets + size);
    _attributes.add(*name.pUri, *name.pLocalName, pValue, size);
}

// The index of the name in its table, from which it has then been resolved.
unsigned int FastInfosetParser::parseQualifiedNameOrIndex(BitStreamReader& reader, bool isElement) {
    const int position = reader.bitPos();
    requirePosition(position == 1 || position == 2,
                    "Illegal startposition for a parseQualifiedNameOrIndex value");
    const unsigned char bits =
        peekBits(reader, 4, "Unexpected end of stream while parsing qualified name or index");
    if (bits == TERMINATOR) {
        static constexpr const char* END = "Unexpected end of stream while parsing qualified name";
        skipBits(reader, position == 1 ? 5 : 4, END);
        const unsigned char presence = readBits(reader, 2, END);
        return parseQualifiedName(reader, (presence & 2) != 0, (presence & 1) != 0, isElement);
    }
    unsigned int index = 0;
    Decoder::integer(reader, index);
    if (!resolvedNames(isElement).find(index)) {
        resolveName(index, isElement);
    }
    return index;
}

void FastInfosetParser::resolveName(unsigned int index, bool isElement) {
    const QualifiedNameEntry entry = getQNameVocabulary(isElement).value(index);
    resolvedNames(isElement).enter(index, namePart(DocumentVocabulary::PREFIX, entry.prefixId()),
                                   namePart(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId()),
                                   namePart(DocumentVocabulary::LOCAL_NAME, entry.localNameId()));
}

unsigned int FastInfosetParser::parseQualifiedName(BitStreamReader& reader, bool hasPrefix, bool hasNamespace,
                                                   bool isElement) {
    CommonForms octets(reader);
    const Entry prefix = hasPrefix ? parseCommonIdentifyingString(reader, octets, DocumentVocabulary::PREFIX)
                                   : Entry{&EMPTY_STRING, 0};
    const Entry uri = hasNamespace
                          ? parseCommonIdentifyingString(reader, octets, DocumentVocabulary::NAMESPACE_NAME)
                          : Entry{&EMPTY_STRING, 0};
    const Entry localName = parseCommonIdentifyingString(reader, octets, DocumentVocabulary::LOCAL_NAME);
    octets.leave(reader);
    bool found = false;
    Vocabulary<QualifiedNameEntry>& names = getQNameVocabulary(isElement);
    const unsigned int index =
        names.index(QualifiedNameEntry(prefix.index, uri.index, localName.index), found);
    requireEntries(names.size());
    resolvedNames(isElement).enter(index, *prefix.pValue, *uri.pValue, *localName.pValue);
    return index;
}

// An index, or a literal that is not long; any other form by the reader.
inline FastInfosetParser::Entry FastInfosetParser::parseCommonIdentifyingString(BitStreamReader& reader,
                                                                                CommonForms& octets,
                                                                                DocumentVocabulary::ID id) {
    if (octets.areEnough()) [[likely]] {
        if (octets.first() & 0x80) {
            Entry entry;
            if (octets.integerAtPosition1(entry.index) && (entry.pValue = _tables[id]->find(entry.index)))
                [[likely]] {
                octets.accept();
                return entry;
            }
        } else {
            std::size_t size = 0;
            const char* pLiteral = nullptr;
            if (octets.lengthAtPosition1(size) && size <= _limits.maxStringLength &&
                (pLiteral = octets.string(size))) [[likely]] {
                return addLiteral(id, pLiteral, size);
            }
        }
    }
    return octets.apart(reader, [&] {
        Entry entry;
        entry.pValue = &parseIdentifyingStringOrIndex(reader, id, entry.index);
        return entry;
    });
}

const std::string& FastInfosetParser::parseIdentifyingStringOrIndex(BitStreamReader& reader,
                                                                    DocumentVocabulary::ID id,
                                                                    unsigned int& index) {
    requirePosition(reader.bitPos() == 0, "Illegal startposition for an parseIdentifyingStringOrIndex");
    bool isIndex = false;
    readBit(reader, isIndex, "Unexpected end of stream while parsing identifying string or index");
    if (isIndex) {
        Decoder::integer(reader, index);
    } else {
        Decoder::nonEmptyOctetString(reader, _scratch);
        index = addToTable(id, _scratch);
    }
    return tableValue(id, index);
}

const std::string& FastInfosetParser::parseIdentifyingStringOrIndex(BitStreamReader& reader,
                                                                    DocumentVocabulary::ID id) {
    unsigned int index = 0;
    return parseIdentifyingStringOrIndex(reader, id, index);
}

const std::string& FastInfosetParser::parseCondIdentifyingStringOrIndex(BitStreamReader& reader, bool present,
                                                                        DocumentVocabulary::ID id) {
    return present ? parseIdentifyingStringOrIndex(reader, id) : EMPTY_STRING;
}

// The typed form: text, or a typed value as the document carries it.
FastInfosetParser::Value FastInfosetParser::parseNonIdentifyingStringOrIndex(BitStreamReader& reader,
                                                                             DocumentVocabulary::ID id) {
    const int position = reader.bitPos();
    requirePosition(position == 0 || position == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    bool isIndex = false;
    readBit(reader, isIndex, "Unexpected end of stream whil parsing non identifying string or index");
    if (isIndex) {
        unsigned int index = 0;
        Decoder::integer(reader, index);
        return {&tableValue(id, index), false};
    }
    bool isAdded = false;
    readBit(reader, isAdded, "Unexpected end of stream whil parsing encoded character string");
    const Value value = parseEncodedCharacterString(reader);
    if (isAdded) {
        keepOther(id, value.typed ? StringDecoder::textOf(*_pTyped) : *value.pText);
    }
    return value;
}

// The text form: typed values become their text.
const std::string& FastInfosetParser::parseNonIdentifyingStringOrIndexXML(BitStreamReader& reader,
                                                                          DocumentVocabulary::ID id) {
    const int position = reader.bitPos();
    requirePosition(position == 0 || position == 2,
                    "Illegal startposition for a NonIdentifyingStringOrIndex value");
    bool isIndex = false;
    readBit(reader, isIndex, "Unexpected end of stream while parsing non identifying string or index");
    if (isIndex) {
        unsigned int index = 0;
        Decoder::integer(reader, index);
        return tableValue(id, index);
    }
    bool isAdded = false;
    readBit(reader, isAdded, "Unexpected end of stream while parsing encoded character string");
    if (parseEncodedCharacterString(reader).typed) {
        _text = StringDecoder::textOf(*_pTyped);
    }
    if (isAdded) {
        keepOther(id, _text);
    }
    return _text;
}

FastInfosetParser::Value FastInfosetParser::parseEncodedCharacterString(BitStreamReader& reader) {
    const int position = reader.bitPos();
    requirePosition(position == 2 || position == 4, "Illegal startposition for an encodedCharacterString");
    const unsigned char enc =
        readBits(reader, 2, "Unexpected end of stream while parsing encoded character string");
    switch (enc) {
    case DocumentVocabulary::UTF8:
        Decoder::nonEmptyOctetString(reader, _text);
        break;
    case DocumentVocabulary::UTF16:
        Decoder::nonEmptyOctetString(reader, _octets);
        StringDecoder::decodeUTF16(_octets, _text);
        break;
    case DocumentVocabulary::RESTRICTEDALPHABET: {
        unsigned int index = 0;
        Decoder::integer(reader, index);
        Decoder::nonEmptyOctetString(reader, _octets);
        StringDecoder::decodeAlphabet(
            _octets, std::as_const(_vocabulary).restrictedAlphabets().alphabet(index), _text);
        break;
    }
    default: {
        tamo_assert(enc == DocumentVocabulary::ENCODINGALGORITHM);
        unsigned int index = 0;
        Decoder::integer(reader, index);
        _pTyped = _vocabulary.decodings().read(static_cast<int>(index), reader);
        return {nullptr, true};
    }
    }
    return {&_text, false};
}

void FastInfosetParser::parseCharacterChunk(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 2, "Illegal startposition for a CharacterChunk value");
    const Value value = parseNonIdentifyingStringOrIndex(reader, DocumentVocabulary::CONTENT_CHARACTER_CHUNK);
    if (value.typed) {
        parseTypedChunk();
    } else if (_pContentHandler) {
        TextPieces::forEach(*value.pText,
                            [this](std::string_view piece) { reportCharacters(piece.data(), piece.size()); });
    }
}

void FastInfosetParser::parseTypedChunk() {
    const bool inCDATA = _pLexicalHandler && _pTyped->type() == CDataEncoding::TYPE;
    if (inCDATA) {
        deliver(2 * CALLBACK);
        _pLexicalHandler->startCDATA();
    }
    if (_pTypedContentHandler) {
        deliver(CALLBACK);
        _pTyped->handle(_pTypedContentHandler);
    } else if (_pContentHandler) {
        _pTyped->createContent();
        deliver(CALLBACK + static_cast<const Encoding&>(*_pTyped).content().size());
        _pTyped->handle(_pContentHandler);
    }
    if (inCDATA) {
        _pLexicalHandler->endCDATA();
    }
}

void FastInfosetParser::parseComment(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 0, "Illegal startposition for a Comment value");
    const std::string& text = parseNonIdentifyingStringOrIndexXML(reader, DocumentVocabulary::OTHER_STRING);
    if (_pLexicalHandler) {
        deliver(CALLBACK + text.size());
        _pLexicalHandler->comment(text.data(), 0, lengthOf(text));
    }
}

void FastInfosetParser::parseProcessingInstruction(BitStreamReader& reader) {
    const std::string& target = parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& data = parseNonIdentifyingStringOrIndexXML(reader, DocumentVocabulary::OTHER_STRING);
    if (_pContentHandler) {
        deliver(CALLBACK + target.size() + data.size());
        _pContentHandler->processingInstruction(target, data);
    }
}

void FastInfosetParser::parseUnexpandedEntityReference(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing unexpanded entity reference";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a Notation value");
    bool hasSystemId = false;
    bool hasPublicId = false;
    readBit(reader, hasSystemId, END);
    readBit(reader, hasPublicId, END);
    parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_NCNAME);
    parseCondIdentifyingStringOrIndex(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    parseCondIdentifyingStringOrIndex(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
}

void FastInfosetParser::parseDocumentTypeDeclaration(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a DocumentTypeDeclaration value");
    bool hasSystemId = false;
    bool hasPublicId = false;
    readBit(reader, hasSystemId, DTD_END);
    readBit(reader, hasPublicId, DTD_END);
    const std::string& systemId =
        parseCondIdentifyingStringOrIndex(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        parseCondIdentifyingStringOrIndex(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    if (_pLexicalHandler) {
        deliver(2 * CALLBACK + publicId.size() + systemId.size());
        _pLexicalHandler->startDTD(EMPTY_STRING, publicId, systemId);
    }
    const unsigned char stat = peekBits(reader, 4, DTD_END);
    if (stat != 0x0E) {
        tamo_assert(stat == 0x0f);
    }
    _inDTD = true;
}

// A processing instruction of the document type declaration, or its end.
void FastInfosetParser::parseDTDItem(BitStreamReader& reader) {
    // Deliberate: within the list every four bits but the terminator open a processing instruction.
    if (readBits(reader, 4, DTD_END) != TERMINATOR) {
        skipBits(reader, 4, DTD_END);
        parseProcessingInstruction(reader);
        return;
    }
    _inDTD = false;
    if (_pLexicalHandler) {
        _pLexicalHandler->endDTD();
    }
}

void FastInfosetParser::parseNotation(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing notation";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a Notation value");
    bool hasSystemId = false;
    bool hasPublicId = false;
    readBit(reader, hasSystemId, END);
    readBit(reader, hasPublicId, END);
    const std::string& name = parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& systemId =
        parseCondIdentifyingStringOrIndex(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        parseCondIdentifyingStringOrIndex(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    if (_pDTDHandler) {
        deliver(CALLBACK + name.size() + publicId.size() + systemId.size());
        _pDTDHandler->notationDecl(name, hasPublicId ? &publicId : nullptr,
                                   hasSystemId ? &systemId : nullptr);
    }
}

void FastInfosetParser::parseUnparsedEntity(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 7, "Illegal startposition for an UnparsedEntity value");
    bool hasPublicId = false;
    readBit(reader, hasPublicId, "Unexpected end of stream while parsing unparsed entity");
    const std::string& name = parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& systemId = parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        parseCondIdentifyingStringOrIndex(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    const std::string& notationName = parseIdentifyingStringOrIndex(reader, DocumentVocabulary::OTHER_NCNAME);
    if (_pDTDHandler) {
        deliver(CALLBACK + name.size() + publicId.size() + systemId.size() + notationName.size());
        _pDTDHandler->unparsedEntityDecl(name, hasPublicId ? &publicId : nullptr, systemId, notationName);
    }
}

// The tables stay in place for the whole document, so their stores are looked up once. What the header has
// brought is within the limit, alphabets beyond the built-in ones too: those stay from document to document.
void FastInfosetParser::bindTables() {
    constexpr std::size_t BUILT_IN_ALPHABETS = 15;
    std::size_t largest = _vocabulary.restrictedAlphabets().alphabets().size() - BUILT_IN_ALPHABETS;
    largest =
        std::max({largest, _vocabulary.elementVocabulary().size(), _vocabulary.attributeVocabulary().size()});
    for (int id = DocumentVocabulary::PREFIX; id < DocumentVocabulary::ELEMENT_NAME; ++id) {
        Vocabulary<std::string>& table = _vocabulary.vocabulary(static_cast<DocumentVocabulary::ID>(id));
        const auto i = static_cast<std::size_t>(id);
        const VerbTable<std::string>* const pValues = OwnTable::valuesOf(table);
        _tables[i] = pValues ? pValues : &noValues();
        _appendedTables[i] = OwnTable::vector(table);
        largest = std::max(largest, table.size());
    }
    _copiedValues.clear();
    requireEntries(largest);
    _mostKept = static_cast<std::size_t>(std::min<UInt64>(_limits.maxTableEntries, Encoder::MAXINT20 + 1));
}

unsigned int FastInfosetParser::addToTable(DocumentVocabulary::ID id, const std::string& s) {
    bool found = false;
    Vocabulary<std::string>& table = _vocabulary.vocabulary(id);
    const unsigned int index = table.index(s, found);
    requireEntries(table.size());
    return index;
}

// The same of a literal that stands in the input. A table that only appends takes it from there.
FastInfosetParser::Entry FastInfosetParser::addLiteral(DocumentVocabulary::ID id, const char* pText,
                                                       std::size_t size) {
    if (VectorVocabulary<std::string>* const pTable = _appendedTables[id]) [[likely]] {
        const std::string& value = pTable->append(std::string_view(pText, size));
        requireEntries(_tables[id]->size());
        return {&value, static_cast<unsigned int>(_tables[id]->size() - 1)};
    }
    return addOtherLiteral(id, pText, size);
}

FastInfosetParser::Entry FastInfosetParser::addOtherLiteral(DocumentVocabulary::ID id, const char* pText,
                                                            std::size_t size) {
    StringDecoder::decodeUTF8(pText, size, _scratch);
    const unsigned int index = addToTable(id, _scratch);
    return {&tableValue(id, index), index};
}

// Enters a literal that is no part of a name; where it stays, unless the table is of an unusual kind or full.
inline const std::string* FastInfosetParser::keep(DocumentVocabulary::ID id, const char* pText,
                                                  std::size_t size) {
    VectorVocabulary<std::string>* const pTable = _appendedTables[id];
    if (pTable && _tables[id]->size() < _mostKept) [[likely]] {
        return &pTable->append(std::string_view(pText, size));
    }
    StringDecoder::decodeUTF8(pText, size, _scratch);
    keepOther(id, _scratch);
    return nullptr;
}

// Entries beyond those that an index can name are left out.
void FastInfosetParser::keepOther(DocumentVocabulary::ID id, const std::string& s) {
    const std::size_t size = _tables[id]->size();
    if (size <= Encoder::MAXINT20) {
        addToTable(id, s);
    } else {
        requireEntries(size + 1);
    }
}

inline void FastInfosetParser::requireEntries(std::size_t count) const {
    if (count > _limits.maxTableEntries) [[unlikely]] {
        throwLimitExceeded("Limit exceeded: table entries", _limits.maxTableEntries);
    }
}

inline void FastInfosetParser::deliver(std::size_t octets) {
    if (!_meter.add(octets)) [[unlikely]] {
        checkDelivered();
    }
}

void FastInfosetParser::checkDelivered() {
    const std::string limit = _meter.exceeds(_pSource->obtained());
    if (!limit.empty()) {
        throw FISException("Limit exceeded: " + limit);
    }
}

Vocabulary<QualifiedNameEntry>& FastInfosetParser::getQNameVocabulary(bool isElement) {
    return isElement ? _vocabulary.elementVocabulary() : _vocabulary.attributeVocabulary();
}

const std::string& FastInfosetParser::tableValue(DocumentVocabulary::ID id, unsigned int index) {
    const std::string* const pValue = _tables[id]->find(index);
    return pValue ? *pValue : otherValue(id, index);
}

// Of a table of this library's the failure of its kind; of another one a copy that stays.
const std::string& FastInfosetParser::otherValue(DocumentVocabulary::ID id, unsigned int index) {
    const std::string& value = _vocabulary.value(id, index);
    if (_tables[id] != &noValues()) {
        return value;
    }
    return _copiedValues.try_emplace(UInt64{id} << 32 | index, value).first->second;
}

// A part of a name table's entry, which a name surrogate may mark as absent.
const std::string& FastInfosetParser::namePart(DocumentVocabulary::ID id, unsigned int index) {
    return index == QualifiedNameEntry::ABSENT ? EMPTY_STRING : tableValue(id, index);
}

ResolvedNames& FastInfosetParser::resolvedNames(bool isElement) {
    return isElement ? _elementNames : _attributeNames;
}

// Names of an earlier document's tables mean nothing to the next one. The qualified name last reported stays,
// as qualifiedName() tells.
void FastInfosetParser::forgetNames() {
    if (_pQName != &_qname) {
        _qname = *_pQName;
        _pQName = &_qname;
    }
    _elementNames.clear();
    _attributeNames.clear();
}

// The prefix, a colon and the local name; empty for a name without prefix. Deliberate: while the feature is
// off this stays what it was last, nothing as a rule.
inline const std::string& FastInfosetParser::qualifiedName(unsigned int index) {
    if (_namespacePrefixes) {
        _pQName = &_elementNames.qualifiedName(index);
    }
    return *_pQName;
}

} // namespace Tamo::FastInfoset
