#include "DocumentParser.h"
#include "CommonForms.h"
#include "Forms.h"
#include "Position.h"
#include "Refusal.h"
#include "RequiredBits.h"
#include "SharedNames.h"
#include "StrictText.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/FISDocumentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "TextPieces.h"
#include <string_view>

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;

constexpr std::size_t ALL_DEPTHS = ~std::size_t{0};

constexpr const char* ELEMENT_END = "Unexpected end of stream while parsing element";

// Refuses a string that has just been consumed when it is not well-formed.
TAMO_ALWAYS_INLINE void requireUTF8(BitStreamReader& reader, const CommonForms& octets,
                                    std::string_view text) {
    if (!XML::Characters::isASCII(text)) [[unlikely]] {
        octets.leave(reader);
        StrictText::requireUTF8(reader, text);
    }
}

} // namespace

DocumentParser::DocumentParser(DocumentVocabulary::VocabularyImpl impl, OpenVocabulary open)
    : _markup(impl), _start(impl, open) {}

DocumentParser::DocumentParser(const DocumentVocabulary& vocabulary, OpenVocabulary open)
    : _markup(vocabulary), _start(vocabulary, open) {}

// ---- reporting

// The prefix, a colon and the local name; empty for a name without prefix. Deliberate: while the feature is
// off this stays what it was last, nothing as a rule.
TAMO_ALWAYS_INLINE const std::string& DocumentParser::qualifiedName(unsigned int index,
                                                                    const ResolvedNames::Name& name) {
    if (_namespacePrefixes) {
        _pQName = &_elementNames.qualifiedName(name, index);
    }
    return *_pQName;
}

TAMO_ALWAYS_INLINE const XML::Attributes& DocumentParser::reportedAttributes() {
    if (!_typedValues.isEmpty()) [[unlikely]] {
        return typedAttributes();
    }
    return _attributes;
}

TAMO_ALWAYS_INLINE void DocumentParser::startElement(unsigned int index, const ResolvedNames::Name& name) {
    if (_openElements.size() >= strings().limits().maxDepth) [[unlikely]] {
        StringParser::throwLimitExceeded("Limit exceeded: element depth", strings().limits().maxDepth);
    }
    _openElements.push_back(index);
    if (handlers().pContent) {
        // The name is handed out twice, here and at the end.
        _markup.deliver(2 * (name.octets + name.pPrefix->size()));
        handlers().pContent->startElement(*name.pUri, *name.pLocalName, qualifiedName(index, name),
                                          reportedAttributes());
    }
}

TAMO_ALWAYS_INLINE void DocumentParser::endElement() {
    const unsigned int index = _openElements.back();
    _openElements.pop_back();
    if (handlers().pContent) {
        const ResolvedNames::Name* pName = _elementNames.find(index);
        if (!pName) [[unlikely]] { // another one has taken its place
            resolveName(index, NameKind::ELEMENT);
            pName = _elementNames.find(index);
        }
        handlers().pContent->endElement(*pName->pUri, *pName->pLocalName, qualifiedName(index, *pName));
        if (!_declaredPrefixes.empty() && _declaredPrefixes.back().depth > _openElements.size())
            [[unlikely]] {
            endMappings();
        }
    }
}

TAMO_ALWAYS_INLINE void DocumentParser::reportCharacters(const char* pText, std::size_t size) {
    if (handlers().pContent) {
        _markup.deliver(CALLBACK + size);
        handlers().pContent->characters(pText, 0, static_cast<int>(size));
    }
}

// A value that belongs to a table.
TAMO_ALWAYS_INLINE void DocumentParser::addAttribute(const ResolvedNames::Name& name,
                                                     const std::string& value) {
    _markup.deliver(name.octets + value.size());
    _attributes.add(*name.pUri, *name.pLocalName, value);
}

TAMO_ALWAYS_INLINE void DocumentParser::addAttribute(const ResolvedNames::Name& name, const char* pValue,
                                                     std::size_t size) {
    _markup.deliver(name.octets + size);
    _attributes.add(*name.pUri, *name.pLocalName, pValue, size);
}

// ---- the walk

// The hot path: what most documents consist of, read octet by octet from what the reader surely has. The
// operations named parseCommon... take the usual forms only. What else they meet, be it a rarer encoding, a
// long index, octets that are not there yet or a limit, is left to the operations that take every form, bit
// by bit, and are the ones to read for the format.

// A name on the octet b that is not known by its index: in full, or in a form for the reader.
template<DocumentParser::Mode MODE>
TAMO_ALWAYS_INLINE unsigned int DocumentParser::parseOtherName(BitStreamReader& reader, unsigned int b,
                                                               NameKind kind) {
    const bool isElement = kind == NameKind::ELEMENT;
    const unsigned int literal = isElement ? Forms::ELEMENT_NAME : Forms::ATTRIBUTE_NAME;
    if ((b & literal) == literal) [[likely]] {
        if (MODE == Mode::STRICT && !isElement) {
            Refusal::unless((b & Forms::ATTRIBUTE_NAME_PADDING) == 0, reader,
                            "padding of a name that is not 0", "C.17");
        }
        reader.advance(8);
        return parseNameParts<MODE>(reader, b, kind);
    }
    reader.advance(isElement ? 2 : 1);
    return isElement ? parseElementName(reader) : parseQualifiedNameOrIndex(reader, kind);
}

// A value by index or as UTF-8.
template<DocumentParser::Mode MODE>
TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonAttributeValue(BitStreamReader& reader,
                                                                  CommonForms& octets,
                                                                  const ResolvedNames::Name& name) {
    const unsigned int b = octets.first();
    if (b & Forms::STRING_INDEX) {
        unsigned int index = 0;
        const std::string* pValue = nullptr;
        if (!octets.integerAtPosition1(index) ||
            !(pValue = strings().find(DocumentVocabulary::ATTRIBUTE_VALUE, index))) {
            return false;
        }
        octets.accept();
        addAttribute(name, *pValue);
        return true;
    }
    std::size_t size = 0;
    const char* pValue = nullptr;
    if ((b & Forms::STRING_FORM) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition4(size) ||
        size > strings().limits().maxStringLength || !(pValue = octets.string(size))) {
        return false;
    }
    if constexpr (MODE == Mode::STRICT) {
        requireUTF8(reader, octets, {pValue, size});
    }
    const std::string* const pKept = (b & Forms::STRING_ADDED)
                                         ? strings().keep(DocumentVocabulary::ATTRIBUTE_VALUE, pValue, size)
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
template<DocumentParser::Extent EXTENT, DocumentParser::Mode MODE>
TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonAttributes(BitStreamReader& reader, CommonForms& octets) {
    while (octets.areEnough()) {
        const unsigned int b = octets.first();
        if (b & 0x80) {
            if (EXTENT == Extent::ONE || !octets.isEndWhole() ||
                (MODE == Mode::STRICT && !octets.isEndPlain())) {
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
            index =
                octets.apart(reader, [&] { return parseOtherName<MODE>(reader, b, NameKind::ATTRIBUTE); });
            pName = _attributeNames.find(index);
        }
        if (!octets.areEnough() || !parseCommonAttributeValue<MODE>(reader, octets, *pName)) [[unlikely]] {
            octets.apart(reader, [&] { parseAttributeValue(reader, *pName); });
        }
        if constexpr (MODE == Mode::STRICT) {
            _attributes.qualify(*pName->pPrefix);
        }
    }
    octets.apart(reader, [&] { parseAttributes(reader); });
    return false;
}

template<DocumentParser::Extent EXTENT, DocumentParser::Mode MODE>
TAMO_ALWAYS_INLINE void DocumentParser::parseCommonElement(BitStreamReader& reader, CommonForms& octets) {
    const unsigned int b = octets.first();
    if constexpr (MODE == Mode::DEFAULT) {
        _declaredPrefixes.clear();
    }
    unsigned int index = 0;
    const ResolvedNames::Name* pName = nullptr;
    if (octets.integerAtPosition2(index) && (pName = _elementNames.find(index))) [[likely]] {
        octets.accept();
    } else {
        index = octets.apart(reader, [&] { return parseOtherName<MODE>(reader, b, NameKind::ELEMENT); });
        pName = _elementNames.find(index);
    }
    _attributes.clear();
    const bool isEnd = (b & Forms::HAS_ATTRIBUTES) && parseCommonAttributes<EXTENT, MODE>(reader, octets);
    if constexpr (EXTENT == Extent::ONE) {
        octets.leave(reader);
    }
    startElement(index, *pName);
    if (isEnd) {
        reader.beginConstruct(octets.place() - 1);
        endElement();
    }
}

template<DocumentParser::Extent EXTENT, DocumentParser::Mode MODE>
TAMO_ALWAYS_INLINE bool DocumentParser::parseCommonCharacterChunk(BitStreamReader& reader,
                                                                  CommonForms& octets) {
    const unsigned int b = octets.first();
    if (b & Forms::CHARACTERS_INDEX) {
        unsigned int index = 0;
        const std::string* pText = nullptr;
        if (!octets.integerAtPosition3(index) ||
            !(pText = strings().find(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, index))) {
            return false;
        }
        octets.accept();
        if constexpr (EXTENT == Extent::ONE) {
            octets.leave(reader);
        }
        reportCharacters(pText->data(), pText->size());
        return true;
    }
    std::size_t size = 0;
    const char* pText = nullptr;
    if ((b & Forms::CHARACTERS_FORM) != DocumentVocabulary::UTF8 || !octets.lengthAtPosition6(size) ||
        size > strings().limits().maxStringLength || size > TextPieces::MOST ||
        !(pText = octets.string(size))) {
        return false;
    }
    if constexpr (MODE == Mode::STRICT) {
        requireUTF8(reader, octets, {pText, size});
    }
    if (b & Forms::CHARACTERS_ADDED) {
        strings().keep(DocumentVocabulary::CONTENT_CHARACTER_CHUNK, pText, size);
    }
    if constexpr (EXTENT == Extent::ONE) {
        octets.leave(reader);
    }
    reportCharacters(pText, size);
    return true;
}

// Reads all items from an octet boundary on, or only one child; false when the next item is left. The reader
// is told when all are read, or before the one is reported.
template<DocumentParser::Extent EXTENT, DocumentParser::Mode MODE>
bool DocumentParser::parseCommonItems(BitStreamReader& reader) {
    CommonForms octets(reader);
    while (octets.areEnough()) {
        reader.beginConstruct(octets.place());
        const unsigned int b = octets.first();
        if (MODE == Mode::STRICT && _openElements.empty()) [[unlikely]] {
            if (b >= Forms::ELEMENT_END || _children.hasElement()) {
                break; // there is nothing else that is common
            }
            _children.addElement();
        }
        if (b < Forms::ELEMENT_END) {
            parseCommonElement<EXTENT, MODE>(reader, octets);
        } else if (b < Forms::CHARACTERS_END) {
            if (!parseCommonCharacterChunk<EXTENT, MODE>(reader, octets)) {
                break;
            }
        } else if (b < Forms::TERMINATOR_FIRST || EXTENT == Extent::ONE || _openElements.empty() ||
                   (MODE == Mode::STRICT && !octets.isEndPlain())) {
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
            return true;
        }
    }
    octets.leave(reader);
    return false;
}

// The children of the document and, through the stack of open elements, of every element below it: all that
// are left, or one item (a child or an end) only. False when the document has ended.
template<DocumentParser::Extent EXTENT, DocumentParser::Mode MODE>
bool DocumentParser::parseItems(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing element children";
    do {
        if (_markup.isInDTD()) [[unlikely]] {
            if (EXTENT == Extent::ALL && _isPart && !reader.hasOctet()) {
                return true;
            }
            reader.beginConstruct();
            _markup.parseDTDItem(reader);
            continue;
        }
        if constexpr (EXTENT == Extent::ALL) {
            parseCommonItems<EXTENT, MODE>(reader);
            if (!reader.hasBits(4) && _isPart) [[unlikely]] {
                return true;
            }
        }
        reader.beginConstruct();
        const unsigned char bits = RequiredBits::peek(reader, 4, END);
        if (bits != Forms::TERMINATOR) {
            if (MODE == Mode::STRICT && reader.bitPos() != 0) {
                Refusal::unless(bits == 0, reader, "padding behind an end that is not 0", "12");
            }
            reader.skipToByteStart();
            if (EXTENT == Extent::ALL && _isPart && !reader.hasOctet()) {
                _isChildNext = true;
                return true;
            }
            if (EXTENT == Extent::ALL || !parseCommonItems<EXTENT, MODE>(reader)) {
                parseElementChild(reader);
            }
        } else if (_openElements.empty()) {
            endDocument<MODE>(reader);
            return false;
        } else {
            reader.advance(4);
            endElement();
        }
    } while (EXTENT == Extent::ALL);
    return true;
}

bool DocumentParser::parseItem(BitStreamReader& reader) {
    return _isDocumentStrict ? parseItems<Extent::ONE, Mode::STRICT>(reader)
                             : parseItems<Extent::ONE, Mode::DEFAULT>(reader);
}

bool DocumentParser::parseLeft(BitStreamReader& reader) {
    return _isDocumentStrict ? parseItems<Extent::ALL, Mode::STRICT>(reader)
                             : parseItems<Extent::ALL, Mode::DEFAULT>(reader);
}

bool DocumentParser::parsePart(BitStreamReader& reader, bool isLast) {
    _isPart = !isLast;
    if (_isChildNext && (isLast || reader.hasOctet())) {
        _isChildNext = false;
        parseElementChild(reader);
    }
    return parseLeft(reader);
}

void DocumentParser::parse(BitStreamReader& reader) {
    begin(reader);
    if (reader.waiting() == BitStreamReader::Waiting::FOR_OCTETS) {
        while (parseItem(reader)) {
        }
    } else {
        parseLeft(reader);
    }
    if (handlers().pContent) {
        handlers().pContent->endDocument();
    }
}

// ---- the header

void DocumentParser::begin(BitStreamReader& reader) {
    _openElements.clear();
    _declaredPrefixes.clear();
    _typedValues.clear();
    _children = {};
    _documentSize = 0;
    _isPart = false;
    _isChildNext = false;
    _isDocumentStrict = _strict;
    reader.setStrict(_strict);
    _elementNames.setComplete(_strict);
    _attributeNames.setPrefixCounted(_strict);
    _attributes.setQualified(_strict && _namespacePrefixes);
    if (_strict) {
        _start.restore(strings().vocabulary());
        _qname.clear();
        _pQName = &_qname;
    } else {
        keepQualifiedName();
    }
    _markup.begin(reader);
    reader.setMaxStringLength(strings().limits().maxStringLength);
    Decoder::documentPreHeader(reader, _scratch);
    if (handlers().pDocument) {
        handlers().pDocument->setWriteXMLDeclaration(!_scratch.empty());
    }
    const Decoder::OpenHeaderParts parts = Decoder::documentHeader(
        reader, strings().vocabulary(), handlers().pDocument, _start.loader(_pLoader, _strict));
    strings().bindTables(reader);
    forgetNames();
    if (handlers().pDocument) {
        handlers().pDocument->setDocumentVocabulary(strings().vocabulary());
    }
    _markup.parseHeaderParts(reader, parts);
    if (handlers().pContent) {
        handlers().pContent->startDocument();
    }
}

// A child on an octet boundary.
void DocumentParser::parseElementChild(BitStreamReader& reader) {
    reader.beginConstruct();
    const unsigned char b =
        RequiredBits::peek(reader, 8, "Unexpected end of stream while parsing element children");
    if (_isDocumentStrict) {
        _children.require(reader, b, !_openElements.empty());
    }
    if (b < Forms::ELEMENT_END) {
        reader.advance(1);
        parseElement(reader);
    } else if (b < Forms::CHARACTERS_END) {
        reader.advance(2);
        parseCharacterChunk(reader);
    } else if (b < 0xE0) {
        reader.advance(6);
        if ((b & Forms::DECLARATION_BITS) == Forms::DOCTYPE) {
            _markup.parseDocumentTypeDeclaration(reader);
        } else if ((b & Forms::DECLARATION_BITS) == Forms::ENTITY_REFERENCE) {
            _markup.parseUnexpandedEntityReference(reader);
        } else {
            throw FISEncodingException("Invalid child element");
        }
    } else {
        if (b == Forms::PROCESSING_INSTRUCTION) {
            reader.advance(8);
            _markup.parseProcessingInstruction(reader);
        } else if (b == Forms::COMMENT) {
            reader.advance(8);
            _markup.parseComment(reader);
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
    if (!_isDocumentStrict) {
        _declaredPrefixes.clear();
    }
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
    for (;;) {
        const unsigned char bits = RequiredBits::read(reader, 4, ELEMENT_END);
        if (bits == Forms::TERMINATOR) {
            break;
        }
        // Deliberate: any other four bits are taken for 1100 by default.
        RequiredBits::readAs(reader, 2, bits == 0x0C ? 3 : 4, ELEMENT_END,
                             "a namespace attribute that does not begin 110011", "C.3.4");
        parseNamespaceAttribute(reader);
    }
    RequiredBits::readAs(reader, 6, 0, ELEMENT_END, "padding behind the namespace attributes that is not 0",
                         "C.3.4");
}

void DocumentParser::parseNamespaceAttribute(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing namespace attribute";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a NamespaceAttribute value");
    const bool hasPrefix = RequiredBits::readFlag(reader, END);
    const bool hasNamespace = RequiredBits::readFlag(reader, END);
    const std::string& prefix = strings().parseIdentifyingIf(reader, hasPrefix, DocumentVocabulary::PREFIX);
    const std::string& uri =
        strings().parseIdentifyingIf(reader, hasNamespace, DocumentVocabulary::NAMESPACE_NAME);
    if (!_isDocumentStrict || handlers().pContent) {
        _declaredPrefixes.push_back({&prefix, _isDocumentStrict ? _openElements.size() + 1 : ALL_DEPTHS});
    }
    if (handlers().pContent) {
        _markup.deliver(CALLBACK + prefix.size() + uri.size());
        handlers().pContent->startPrefixMapping(prefix, uri);
    }
}

void DocumentParser::parseAttributes(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing attributes";
    for (;;) {
        const bool last = RequiredBits::readFlag(reader, END);
        if (last) {
            RequiredBits::readAs(reader, 3, 7, END, "neither an attribute nor their end", "C.3.6");
            return;
        }
        requirePosition(reader.bitPos() == 1, "Illegal startposition for a Attribute value");
        const ResolvedNames::Name& name =
            *_attributeNames.find(parseQualifiedNameOrIndex(reader, NameKind::ATTRIBUTE));
        parseAttributeValue(reader, name);
        if (_isDocumentStrict) {
            _attributes.qualify(*name.pPrefix);
        }
    }
}

void DocumentParser::parseAttributeValue(BitStreamReader& reader, const ResolvedNames::Name& name) {
    const StringParser::Value value =
        handlers().pTyped
            ? strings().parseAttributeValue(reader)
            : StringParser::Value{&strings().parseOtherText(reader, DocumentVocabulary::ATTRIBUTE_VALUE)};
    if (value.typed) {
        _typedValues.add(_attributes.getLength(), strings().typed(), strings().typedAlgorithm());
        _markup.deliver(CALLBACK);
        addAttribute(name, StringParser::EMPTY);
    } else if (strings().isOwnText(*value.pText)) {
        addAttribute(name, value.pText->data(), value.pText->size());
    } else {
        addAttribute(name, *value.pText);
    }
}

TAMO_COLD const XML::Attributes& DocumentParser::typedAttributes() {
    return _typedValues.listOf(_attributes, strings().vocabulary().algorithms(), strings().typedText());
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
        RequiredBits::skip(reader, 4, END);
        if (position == 1) {
            RequiredBits::readAs(reader, 1, 0, END, "padding of a name that is not 0", "C.17");
        }
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
    const QualifiedNameEntry entry = strings().name(kind, index);
    resolvedNames(kind).enter(index, strings().namePart(DocumentVocabulary::PREFIX, entry.prefixId()),
                              strings().namePart(DocumentVocabulary::NAMESPACE_NAME, entry.namespaceId()),
                              strings().namePart(DocumentVocabulary::LOCAL_NAME, entry.localNameId()));
}

// A name in full; the two low bits of presence say which parts it has.
unsigned int DocumentParser::parseQualifiedName(BitStreamReader& reader, unsigned int presence,
                                                NameKind kind) {
    return _isDocumentStrict ? parseNameParts<Mode::STRICT>(reader, presence, kind)
                             : parseNameParts<Mode::DEFAULT>(reader, presence, kind);
}

template<DocumentParser::Mode MODE>
unsigned int DocumentParser::parseNameParts(BitStreamReader& reader, unsigned int presence, NameKind kind) {
    constexpr bool STRICT = MODE == Mode::STRICT;
    const bool hasPrefix = (presence & Forms::HAS_PREFIX) != 0;
    const bool hasNamespace = (presence & Forms::HAS_NAMESPACE) != 0;
    if constexpr (STRICT) {
        Refusal::unless(!hasPrefix || hasNamespace, reader, "a name with a prefix and without namespace name",
                        "7.16");
    }
    constexpr StringParser::Entry NONE{&StringParser::EMPTY, 0};
    CommonForms octets(reader);
    const StringParser::Entry prefix =
        hasPrefix ? strings().parseCommonIdentifying<STRICT>(reader, octets, DocumentVocabulary::PREFIX)
                  : NONE;
    const StringParser::Entry uri =
        hasNamespace
            ? strings().parseCommonIdentifying<STRICT>(reader, octets, DocumentVocabulary::NAMESPACE_NAME)
            : NONE;
    const StringParser::Entry localName =
        strings().parseCommonIdentifying<STRICT>(reader, octets, DocumentVocabulary::LOCAL_NAME);
    octets.leave(reader);
    const unsigned int index =
        strings().addName<STRICT>(kind, QualifiedNameEntry(prefix.index, uri.index, localName.index));
    resolvedNames(kind).enter(index, *prefix.pValue, *uri.pValue, *localName.pValue);
    return index;
}

void DocumentParser::parseCharacterChunk(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 2, "Illegal startposition for a CharacterChunk value");
    const StringParser::Value value =
        strings().parseOther(reader, DocumentVocabulary::CONTENT_CHARACTER_CHUNK);
    if (value.typed) {
        _markup.reportTypedChunk(_isDocumentStrict);
    } else if (handlers().pContent) {
        TextPieces::forEach(*value.pText,
                            [this](std::string_view piece) { reportCharacters(piece.data(), piece.size()); });
    }
}

// ---- the strict mode

// By default those of the element that was started last, which may be another one; strictly its own, in
// reverse order.
void DocumentParser::endMappings() {
    if (!_isDocumentStrict) {
        for (const DeclaredPrefix& declared : _declaredPrefixes) {
            _markup.deliver(CALLBACK + declared.pPrefix->size());
            handlers().pContent->endPrefixMapping(*declared.pPrefix);
        }
        return;
    }
    while (!_declaredPrefixes.empty() && _declaredPrefixes.back().depth > _openElements.size()) {
        const std::string& prefix = *_declaredPrefixes.back().pPrefix;
        _declaredPrefixes.pop_back();
        _markup.deliver(CALLBACK + prefix.size());
        handlers().pContent->endPrefixMapping(prefix);
    }
}

// Reads the terminator, which has been seen, and what fills its octet.
template<DocumentParser::Mode MODE>
void DocumentParser::endDocument(BitStreamReader& reader) {
    if constexpr (MODE == Mode::STRICT) {
        _children.requireElement(reader);
    }
    reader.advance(4);
    if (MODE == Mode::STRICT && reader.bitPos() != 0) {
        RequiredBits::readAs(reader, 4, 0, "Unexpected end of stream while parsing the end of the document",
                             "padding behind the document that is not 0", "12");
    }
    reader.skipToByteStart();
    _documentSize = reader.position() / 8;
}

// The qualified name last reported stays, as qualifiedName() tells, when the tables are given up.
void DocumentParser::keepQualifiedName() {
    if (_pQName != &_qname) {
        _qname = *_pQName;
        _pQName = &_qname;
    }
}

// Names of an earlier document's tables mean nothing to the next one, those of a shared vocabulary are known.
void DocumentParser::forgetNames() {
    if (const SharedVocabulary* const pShared = _start.sharedByDocument()) {
        const SharedNames::Mode& names = pShared->names().mode(_isDocumentStrict);
        _elementNames.clear(names.elements);
        _attributeNames.clear(names.attributes);
    } else {
        _elementNames.clear();
        _attributeNames.clear();
    }
}

} // namespace Tamo::FastInfoset
