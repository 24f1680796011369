#include "DocumentParser.h"
#include "CommonForms.h"
#include "Forms.h"
#include "Position.h"
#include "RequiredBits.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "TextPieces.h"
#include <string_view>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;

constexpr const char* ELEMENT_END = "Unexpected end of stream while parsing element";
constexpr const char* DTD_END = "Unexpected end of stream while parsing document type declaration";

int lengthOf(const std::string& comment) {
    if (comment.size() > TextPieces::MOST) [[unlikely]] {
        throw FISException("A comment of " + std::to_string(comment.size()) +
                           " octets cannot be reported in one call, which takes " +
                           std::to_string(TextPieces::MOST));
    }
    return static_cast<int>(comment.size());
}

} // namespace

// ---- reporting

inline void DocumentParser::deliver(std::size_t octets) {
    if (!_meter.add(octets)) [[unlikely]] {
        checkDelivered();
    }
}

// The prefix, a colon and the local name; empty for a name without prefix. Deliberate: while the feature is
// off this stays what it was last, nothing as a rule.
inline const std::string& DocumentParser::qualifiedName(unsigned int index) {
    if (_namespacePrefixes) {
        _pQName = &_elementNames.qualifiedName(index);
    }
    return *_pQName;
}

inline void DocumentParser::startElement(unsigned int index, const ResolvedNames::Name& name) {
    if (_openElements.size() >= _strings.limits().maxDepth) [[unlikely]] {
        StringParser::throwLimitExceeded("Limit exceeded: element depth", _strings.limits().maxDepth);
    }
    _openElements.push_back(index);
    if (_handlers.pContent) {
        // The name is handed out twice, here and at the end.
        deliver(2 * (name.octets + name.pPrefix->size()));
        _handlers.pContent->startElement(*name.pUri, *name.pLocalName, qualifiedName(index), _attributes);
    }
}

inline void DocumentParser::endElement() {
    const unsigned int index = _openElements.back();
    _openElements.pop_back();
    if (_handlers.pContent) {
        const ResolvedNames::Name* pName = _elementNames.find(index);
        if (!pName) [[unlikely]] { // another one has taken its place
            resolveName(index, NameKind::ELEMENT);
            pName = _elementNames.find(index);
        }
        _handlers.pContent->endElement(*pName->pUri, *pName->pLocalName, qualifiedName(index));
        for (const std::string* pPrefix : _declaredPrefixes) {
            deliver(CALLBACK + pPrefix->size());
            _handlers.pContent->endPrefixMapping(*pPrefix);
        }
    }
}

inline void DocumentParser::reportCharacters(const char* pText, std::size_t size) {
    if (_handlers.pContent) {
        deliver(CALLBACK + size);
        _handlers.pContent->characters(pText, 0, static_cast<int>(size));
    }
}

// A value that belongs to a table.
inline void DocumentParser::addAttribute(const ResolvedNames::Name& name, const std::string& value) {
    deliver(name.octets + value.size());
    _attributes.add(*name.pUri, *name.pLocalName, value);
}

inline void DocumentParser::addAttribute(const ResolvedNames::Name& name, const char* pValue,
                                         std::size_t size) {
    deliver(name.octets + size);
    _attributes.add(*name.pUri, *name.pLocalName, pValue, size);
}

// ---- the walk

// The hot path: what most documents consist of, read octet by octet from what the reader surely has. The
// operations named parseCommon... take the usual forms only. What else they meet, be it a rarer encoding, a
// long index, octets that are not there yet or a limit, is left to the operations that take every form, bit
// by bit, and are the ones to read for the format.

// A value by index or as UTF-8.
TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonAttributeValue(CommonForms& octets,
                                                                  const ResolvedNames::Name& name) {
    const unsigned int b = octets.first();
    if (b & Forms::STRING_INDEX) {
        unsigned int index = 0;
        const std::string* pValue = nullptr;
        if (!octets.integerAtPosition1(index) ||
            !(pValue = _strings.find(DocumentVocabulary::ATTRIBUTE_VALUE, index))) {
            return false;
        }
        octets.accept();
        addAttribute(name, *pValue);
        return true;
    }
    std::size_t size = 0;
    const char* pValue = nullptr;
    if ((b & Forms::STRING_FORM) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition4(size) ||
        size > _strings.limits().maxStringLength || !(pValue = octets.string(size))) {
        return false;
    }
    const std::string* const pKept = (b & Forms::STRING_ADDED)
                                         ? _strings.keep(DocumentVocabulary::ATTRIBUTE_VALUE, pValue, size)
                                         : nullptr;
    if (pKept) [[likely]] {
        addAttribute(name, *pKept);
    } else {
        addAttribute(name, pValue, size);
    }
    return true;
}

// Reads the attributes of an element; true when the octet that ends them ends the element as well and has
// been read whole, as it is when all items are.
template<DocumentParser::Extent EXTENT>
TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonAttributes(BitStreamReader& reader, CommonForms& octets) {
    while (octets.areEnough()) {
        const unsigned int b = octets.first();
        if (b & 0x80) {
            if (EXTENT == Extent::ONE || !octets.isEndWhole()) {
                break;
            }
            octets.acceptOctet();
            return (b & 0x0F) == Forms::TERMINATOR;
        }
        unsigned int index = 0;
        const ResolvedNames::Name* pName = nullptr;
        if (octets.integerAtPosition1(index) && (pName = _attributeNames.find(index))) [[likely]] {
            octets.accept();
        } else {
            index = octets.apart(reader, [&] { return parseOtherName(reader, b, NameKind::ATTRIBUTE); });
            pName = _attributeNames.find(index);
        }
        if (!octets.areEnough() || !parseCommonAttributeValue(octets, *pName)) [[unlikely]] {
            octets.apart(reader, [&] { parseAttributeValue(reader, *pName); });
        }
    }
    octets.apart(reader, [&] { parseAttributes(reader); });
    return false;
}

template<DocumentParser::Extent EXTENT>
TAMO_ALWAYS_INLINE void DocumentParser::parseCommonElement(BitStreamReader& reader, CommonForms& octets) {
    const unsigned int b = octets.first();
    _declaredPrefixes.clear();
    unsigned int index = 0;
    const ResolvedNames::Name* pName = nullptr;
    if (octets.integerAtPosition2(index) && (pName = _elementNames.find(index))) [[likely]] {
        octets.accept();
    } else {
        index = octets.apart(reader, [&] { return parseOtherName(reader, b, NameKind::ELEMENT); });
        pName = _elementNames.find(index);
    }
    _attributes.clear();
    const bool isEnd = (b & Forms::HAS_ATTRIBUTES) && parseCommonAttributes<EXTENT>(reader, octets);
    startElement(index, *pName);
    if (isEnd) {
        endElement();
    }
}

TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonCharacterChunk(CommonForms& octets) {
    const unsigned int b = octets.first();
    if (b & Forms::CHARACTERS_INDEX) {
        unsigned int index = 0;
        const std::string* pText = nullptr;
        if (!octets.integerAtPosition3(index) ||
            !(pText = _strings.find(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, index))) {
            return false;
        }
        octets.accept();
        reportCharacters(pText->data(), pText->size());
        return true;
    }
    std::size_t size = 0;
    const char* pText = nullptr;
    if ((b & Forms::CHARACTERS_FORM) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition6(size) ||
        size > _strings.limits().maxStringLength || size > TextPieces::MOST ||
        !(pText = octets.string(size))) {
        return false;
    }
    if (b & Forms::CHARACTERS_ADDED) {
        _strings.keep(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, pText, size);
    }
    reportCharacters(pText, size);
    return true;
}

// Reads all items from an octet boundary on, or only one child; false when the next item is left.
template<DocumentParser::Extent EXTENT>
bool DocumentParser::parseCommonItems(BitStreamReader& reader) {
    CommonForms octets(reader);
    while (octets.areEnough()) {
        const unsigned int b = octets.first();
        if (b < Forms::ELEMENT_END) {
            parseCommonElement<EXTENT>(reader, octets);
        } else if (b < Forms::CHARACTERS_END) {
            if (!parseCommonCharacterChunk(octets)) {
                break;
            }
        } else if (b < Forms::TERMINATOR_FIRST || EXTENT == Extent::ONE || _openElements.empty()) {
            break;
        } else {
            endElement();
            const bool endsHere = b == Forms::TERMINATOR_TWICE && _openElements.empty();
            if (endsHere || !octets.isEndWhole()) {
                octets.leave(reader);
                reader.advance(4);
                return false;
            }
            if (b == Forms::TERMINATOR_TWICE) {
                endElement();
            }
            octets.acceptOctet();
        }
        if constexpr (EXTENT == Extent::ONE) {
            octets.leave(reader);
            return true;
        }
    }
    octets.leave(reader);
    return false;
}

// The children of the document and, through the stack of open elements, of every element below it: all that
// are left, or one item (a child or an end) only. False when the document has ended.
template<DocumentParser::Extent EXTENT>
bool DocumentParser::parseItems(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing element children";
    do {
        if (_inDTD) [[unlikely]] {
            parseDTDItem(reader);
            continue;
        }
        if constexpr (EXTENT == Extent::ALL) {
            parseCommonItems<EXTENT>(reader);
        }
        if (RequiredBits::peek(reader, 4, END) != Forms::TERMINATOR) {
            reader.skipToByteStart();
            if (EXTENT == Extent::ALL || !parseCommonItems<EXTENT>(reader)) {
                parseElementChild(reader);
            }
        } else if (_openElements.empty()) {
            return false;
        } else {
            reader.advance(4);
            endElement();
        }
    } while (EXTENT == Extent::ALL);
    return true;
}

bool DocumentParser::parseItem(BitStreamReader& reader) {
    return parseItems<Extent::ONE>(reader);
}

void DocumentParser::parse(BitStreamReader& reader) {
    begin(reader);
    parseItems<Extent::ALL>(reader);
    if (_handlers.pContent) {
        _handlers.pContent->endDocument();
    }
}

// ---- the header and what follows it

void DocumentParser::begin(BitStreamReader& reader) {
    _openElements.clear();
    _declaredPrefixes.clear();
    _inDTD = false;
    _meter.start(_strings.limits().delivery());
    _pSource = &reader;
    reader.setMaxStringLength(_strings.limits().maxStringLength);
    Decoder::documentPreHeader(reader, _scratch);
    if (_handlers.pDocument) {
        _handlers.pDocument->setWriteXMLDeclaration(!_scratch.empty());
    }
    const Decoder::OpenHeaderParts parts =
        Decoder::documentHeader(reader, _strings.vocabulary(), _handlers.pDocument, loader());
    _strings.bindTables();
    forgetNames();
    if (_handlers.pDocument) {
        _handlers.pDocument->setDocumentVocabulary(_strings.vocabulary());
    }
    parseDocumentChildren(reader, parts);
    if (_handlers.pContent) {
        _handlers.pContent->startDocument();
    }
}

void DocumentParser::parseDocumentChildren(BitStreamReader& reader, const Decoder::OpenHeaderParts& parts) {
    static constexpr const char* NOTATIONS_END = "Unexpected end of stream while parsing notations";
    static constexpr const char* ENTITIES_END = "Unexpected end of stream while parsing unparsed entities";
    static constexpr const char* HEADER_END = "Unexpected end of stream while parsing document header";
    if (parts.notations) {
        for (;;) {
            const unsigned char id = RequiredBits::read(reader, 6, NOTATIONS_END);
            if (id != Forms::NOTATION) {
                tamo_assert(id == 60);
                RequiredBits::skip(reader, 2, NOTATIONS_END);
                break;
            }
            parseNotation(reader);
        }
    }
    if (parts.unparsedEntities) {
        for (;;) {
            const unsigned char id = RequiredBits::read(reader, 7, ENTITIES_END);
            if (id != Forms::UNPARSED_ENTITY) {
                tamo_assert(id == 120);
                RequiredBits::skip(reader, 1, ENTITIES_END);
                break;
            }
            parseUnparsedEntity(reader);
        }
    }
    if (parts.characterEncodingScheme) {
        RequiredBits::skip(reader, 1, HEADER_END);
        Decoder::nonEmptyOctetString(reader, _scratch);
    }
    if (parts.standalone) {
        RequiredBits::skip(reader, 7, HEADER_END);
        RequiredBits::read(reader, 1, HEADER_END);
    }
    if (parts.version) {
        _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
    }
}

// A name on the octet b that is not known by its index: in full, or in a form for the reader.
unsigned int DocumentParser::parseOtherName(BitStreamReader& reader, unsigned int b, NameKind kind) {
    const bool isElement = kind == NameKind::ELEMENT;
    const unsigned int literal = isElement ? Forms::ELEMENT_NAME : Forms::ATTRIBUTE_NAME;
    if ((b & literal) == literal) [[likely]] {
        reader.advance(8);
        return parseQualifiedName(reader, b, kind);
    }
    reader.advance(isElement ? 2 : 1);
    return isElement ? parseElementName(reader) : parseQualifiedNameOrIndex(reader, kind);
}

// A child on an octet boundary.
void DocumentParser::parseElementChild(BitStreamReader& reader) {
    const unsigned char b =
        RequiredBits::peek(reader, 8, "Unexpected end of stream while parsing element children");
    if (b < Forms::ELEMENT_END) {
        reader.advance(1);
        parseElement(reader);
    } else if (b < Forms::CHARACTERS_END) {
        reader.advance(2);
        parseCharacterChunk(reader);
    } else if (b < 0xE0) {
        reader.advance(6);
        if ((b & Forms::DECLARATION_BITS) == Forms::DOCTYPE) {
            parseDocumentTypeDeclaration(reader);
        } else if ((b & Forms::DECLARATION_BITS) == Forms::ENTITY_REFERENCE) {
            parseUnexpandedEntityReference(reader);
        } else {
            throw FISEncodingException("Invalid child element");
        }
    } else {
        if (b == Forms::PROCESSING_INSTRUCTION) {
            reader.advance(8);
            parseProcessingInstruction(reader);
        } else if (b == Forms::COMMENT) {
            reader.advance(8);
            parseComment(reader);
        } else {
            throw FISEncodingException("Parse error: unknown element child code");
        }
    }
}

void DocumentParser::parseElement(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 1, "Illegal startposition for an Element value");
    const bool hasAttributes = RequiredBits::readFlag(reader, ELEMENT_END);
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
unsigned int DocumentParser::parseElementName(BitStreamReader& reader) {
    if (RequiredBits::peek(reader, 6, ELEMENT_END) == Forms::NAMESPACE_ATTRIBUTES) {
        parseNamespaceAttributes(reader);
    }
    return parseQualifiedNameOrIndex(reader, NameKind::ELEMENT);
}

void DocumentParser::parseNamespaceAttributes(BitStreamReader& reader) {
    RequiredBits::skip(reader, 6, ELEMENT_END);
    while (RequiredBits::read(reader, 4, ELEMENT_END) != Forms::TERMINATOR) {
        // Deliberate: any other four bits are taken for 1100.
        RequiredBits::skip(reader, 2, ELEMENT_END);
        parseNamespaceAttribute(reader);
    }
    RequiredBits::skip(reader, 6, ELEMENT_END);
}

void DocumentParser::parseNamespaceAttribute(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing namespace attribute";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a NamespaceAttribute value");
    const bool hasPrefix = RequiredBits::readFlag(reader, END);
    const bool hasNamespace = RequiredBits::readFlag(reader, END);
    const std::string& prefix = _strings.parseIdentifyingIf(reader, hasPrefix, DocumentVocabulary::PREFIX);
    const std::string& uri =
        _strings.parseIdentifyingIf(reader, hasNamespace, DocumentVocabulary::NAMESPACE_NAME);
    _declaredPrefixes.push_back(&prefix);
    if (_handlers.pContent) {
        deliver(CALLBACK + prefix.size() + uri.size());
        _handlers.pContent->startPrefixMapping(prefix, uri);
    }
}

void DocumentParser::parseAttributes(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing attributes";
    for (;;) {
        const bool last = RequiredBits::readFlag(reader, END);
        if (last) {
            RequiredBits::skip(reader, 3, END);
            return;
        }
        requirePosition(reader.bitPos() == 1, "Illegal startposition for a Attribute value");
        parseAttributeValue(reader,
                            *_attributeNames.find(parseQualifiedNameOrIndex(reader, NameKind::ATTRIBUTE)));
    }
}

void DocumentParser::parseAttributeValue(BitStreamReader& reader, const ResolvedNames::Name& name) {
    const std::string& value = _strings.parseOtherText(reader, DocumentVocabulary::ATTRIBUTE_VALUE);
    if (_strings.isOwnText(value)) {
        addAttribute(name, value.data(), value.size());
    } else {
        addAttribute(name, value);
    }
}

// The index of the name in its table, from which it has then been resolved.
unsigned int DocumentParser::parseQualifiedNameOrIndex(BitStreamReader& reader, NameKind kind) {
    const int position = reader.bitPos();
    requirePosition(position == 1 || position == 2,
                    "Illegal startposition for a parseQualifiedNameOrIndex value");
    const unsigned char bits =
        RequiredBits::peek(reader, 4, "Unexpected end of stream while parsing qualified name or index");
    if (bits == Forms::TERMINATOR) {
        static constexpr const char* END = "Unexpected end of stream while parsing qualified name";
        RequiredBits::skip(reader, position == 1 ? 5 : 4, END);
        const unsigned char presence = RequiredBits::read(reader, 2, END);
        return parseQualifiedName(reader, presence, kind);
    }
    unsigned int index = 0;
    Decoder::integer(reader, index);
    if (!resolvedNames(kind).find(index)) {
        resolveName(index, kind);
    }
    return index;
}

void DocumentParser::resolveName(unsigned int index, NameKind kind) {
    const QualifiedNameEntry entry = _strings.vocabulary().names(kind).value(index);
    resolvedNames(kind).enter(index, _strings.namePart(DocumentVocabulary::PREFIX, entry.prefixId()),
                              _strings.namePart(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId()),
                              _strings.namePart(DocumentVocabulary::LOCAL_NAME, entry.localNameId()));
}

// A name in full; the two low bits of presence say which parts it has.
unsigned int DocumentParser::parseQualifiedName(BitStreamReader& reader, unsigned int presence,
                                                NameKind kind) {
    CommonForms octets(reader);
    const StringParser::Entry prefix =
        (presence & Forms::HAS_PREFIX) != 0
            ? _strings.parseCommonIdentifying(reader, octets, DocumentVocabulary::PREFIX)
            : StringParser::Entry{&StringParser::EMPTY, 0};
    const StringParser::Entry uri =
        (presence & Forms::HAS_NAMESPACE) != 0
            ? _strings.parseCommonIdentifying(reader, octets, DocumentVocabulary::NAMESPACE_NAME)
            : StringParser::Entry{&StringParser::EMPTY, 0};
    const StringParser::Entry localName =
        _strings.parseCommonIdentifying(reader, octets, DocumentVocabulary::LOCAL_NAME);
    octets.leave(reader);
    bool found = false;
    Vocabulary<QualifiedNameEntry>& names = _strings.vocabulary().names(kind);
    const unsigned int index =
        names.index(QualifiedNameEntry(prefix.index, uri.index, localName.index), found);
    _strings.requireEntries(names.size());
    resolvedNames(kind).enter(index, *prefix.pValue, *uri.pValue, *localName.pValue);
    return index;
}

void DocumentParser::parseCharacterChunk(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 2, "Illegal startposition for a CharacterChunk value");
    const StringParser::Value value =
        _strings.parseOther(reader, DocumentVocabulary::CONTENT_CHARACTER_CHUNK);
    if (value.typed) {
        parseTypedChunk();
    } else if (_handlers.pContent) {
        TextPieces::forEach(*value.pText,
                            [this](std::string_view piece) { reportCharacters(piece.data(), piece.size()); });
    }
}

void DocumentParser::parseTypedChunk() {
    const bool inCDATA = _handlers.pLexical && _strings.typed()->type() == CDataEncoding::TYPE;
    if (inCDATA) {
        deliver(2 * CALLBACK);
        _handlers.pLexical->startCDATA();
    }
    if (_handlers.pTyped) {
        deliver(CALLBACK);
        _strings.typed()->handle(_handlers.pTyped);
    } else if (_handlers.pContent) {
        _strings.typed()->createContent();
        deliver(CALLBACK + static_cast<const Encoding&>(*_strings.typed()).content().size());
        _strings.typed()->handle(_handlers.pContent);
    }
    if (inCDATA) {
        _handlers.pLexical->endCDATA();
    }
}

void DocumentParser::parseComment(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 0, "Illegal startposition for a Comment value");
    const std::string& text = _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
    if (_handlers.pLexical) {
        deliver(CALLBACK + text.size());
        _handlers.pLexical->comment(text.data(), 0, lengthOf(text));
    }
}

void DocumentParser::parseProcessingInstruction(BitStreamReader& reader) {
    const std::string& target = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& data = _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
    if (_handlers.pContent) {
        deliver(CALLBACK + target.size() + data.size());
        _handlers.pContent->processingInstruction(target, data);
    }
}

void DocumentParser::parseUnexpandedEntityReference(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing unexpanded entity reference";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a Notation value");
    const bool hasSystemId = RequiredBits::readFlag(reader, END);
    const bool hasPublicId = RequiredBits::readFlag(reader, END);
    _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    _strings.parseIdentifyingIf(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    _strings.parseIdentifyingIf(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
}

void DocumentParser::parseDocumentTypeDeclaration(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a DocumentTypeDeclaration value");
    const bool hasSystemId = RequiredBits::readFlag(reader, DTD_END);
    const bool hasPublicId = RequiredBits::readFlag(reader, DTD_END);
    const std::string& systemId =
        _strings.parseIdentifyingIf(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        _strings.parseIdentifyingIf(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    if (_handlers.pLexical) {
        deliver(2 * CALLBACK + publicId.size() + systemId.size());
        _handlers.pLexical->startDTD(StringParser::EMPTY, publicId, systemId);
    }
    const unsigned char stat = RequiredBits::peek(reader, 4, DTD_END);
    if (stat != 0x0E) {
        tamo_assert(stat == 0x0f);
    }
    _inDTD = true;
}

// A processing instruction of the document type declaration, or its end.
void DocumentParser::parseDTDItem(BitStreamReader& reader) {
    // Deliberate: within the list every four bits but the terminator open a processing instruction.
    if (RequiredBits::read(reader, 4, DTD_END) != Forms::TERMINATOR) {
        RequiredBits::skip(reader, 4, DTD_END);
        parseProcessingInstruction(reader);
        return;
    }
    _inDTD = false;
    if (_handlers.pLexical) {
        _handlers.pLexical->endDTD();
    }
}

void DocumentParser::parseNotation(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing notation";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a Notation value");
    const bool hasSystemId = RequiredBits::readFlag(reader, END);
    const bool hasPublicId = RequiredBits::readFlag(reader, END);
    const std::string& name = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& systemId =
        _strings.parseIdentifyingIf(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        _strings.parseIdentifyingIf(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    if (_handlers.pDTD) {
        deliver(CALLBACK + name.size() + publicId.size() + systemId.size());
        _handlers.pDTD->notationDecl(name, hasPublicId ? &publicId : nullptr,
                                     hasSystemId ? &systemId : nullptr);
    }
}

void DocumentParser::parseUnparsedEntity(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 7, "Illegal startposition for an UnparsedEntity value");
    const bool hasPublicId =
        RequiredBits::readFlag(reader, "Unexpected end of stream while parsing unparsed entity");
    const std::string& name = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& systemId = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_URI);
    const std::string& publicId =
        _strings.parseIdentifyingIf(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    const std::string& notationName = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    if (_handlers.pDTD) {
        deliver(CALLBACK + name.size() + publicId.size() + systemId.size() + notationName.size());
        _handlers.pDTD->unparsedEntityDecl(name, hasPublicId ? &publicId : nullptr, systemId, notationName);
    }
}

void DocumentParser::checkDelivered() {
    const std::string limit = _meter.exceeds(_pSource->obtained());
    if (!limit.empty()) {
        throw FISException("Limit exceeded: " + limit);
    }
}

// Names of an earlier document's tables mean nothing to the next one. The qualified name last reported stays,
// as qualifiedName() tells.
void DocumentParser::forgetNames() {
    if (_pQName != &_qname) {
        _qname = *_pQName;
        _pQName = &_qname;
    }
    _elementNames.clear();
    _attributeNames.clear();
}

} // namespace Tamo::FastInfoset
