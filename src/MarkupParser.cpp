#include "MarkupParser.h"
#include "Forms.h"
#include "Position.h"
#include "Refusal.h"
#include "RequiredBits.h"
#include "StrictText.h"
#include "Tamo/FastInfoset/CDataEncoding.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/FISContentHandler.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/TypedChunk.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "TextPieces.h"

namespace Tamo::FastInfoset {

namespace {

constexpr std::size_t CALLBACK = XML::DeliveryLimits::CALLBACK;

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

void MarkupParser::Handlers::setContent(XML::ContentHandler* pHandler) {
    pContent = pHandler;
    pTyped = dynamic_cast<FISContentHandler*>(pHandler);
    pChunks = pTyped ? dynamic_cast<TypedChunkHandler*>(pTyped) : nullptr;
}

void MarkupParser::Handlers::setDocument(FISDocumentHandler* pHandler) {
    pDocument = pHandler;
    pProperties = dynamic_cast<DocumentPropertiesHandler*>(pHandler);
}

void MarkupParser::begin(const BitStreamReader& reader) {
    _inDTD = false;
    _meter.start(_strings.limits().delivery());
    _pReader = &reader;
}

void MarkupParser::checkDelivered() {
    const std::string limit = _meter.exceeds(_pReader->obtained());
    if (!limit.empty()) {
        throw FISException("Limit exceeded: " + limit);
    }
}

// ---- what follows the header

void MarkupParser::parseHeaderParts(BitStreamReader& reader, const Decoder::OpenHeaderParts& parts) {
    static constexpr const char* NOTATIONS_END = "Unexpected end of stream while parsing notations";
    static constexpr const char* ENTITIES_END = "Unexpected end of stream while parsing unparsed entities";
    static constexpr const char* HEADER_END = "Unexpected end of stream while parsing document header";
    if (parts.notations) {
        for (;;) {
            const unsigned char id = RequiredBits::read(reader, 6, NOTATIONS_END);
            if (id != Forms::NOTATION) {
                Refusal::unless(id == 60 || !reader.isStrict(), reader, "neither a notation nor their end",
                                "C.2.6");
                tamo_assert(id == 60);
                RequiredBits::readAs(reader, 2, 0, NOTATIONS_END,
                                     "the end of the notations that is not 1111 0000", "C.2.6");
                break;
            }
            parseNotation(reader);
        }
    }
    if (parts.unparsedEntities) {
        for (;;) {
            const unsigned char id = RequiredBits::read(reader, 7, ENTITIES_END);
            if (id != Forms::UNPARSED_ENTITY) {
                Refusal::unless(id == 120 || !reader.isStrict(), reader,
                                "neither an unparsed entity nor their end", "C.2.7");
                tamo_assert(id == 120);
                RequiredBits::readAs(reader, 1, 0, ENTITIES_END,
                                     "the end of the unparsed entities that is not 1111 0000", "C.2.7");
                break;
            }
            parseUnparsedEntity(reader);
        }
    }
    DocumentPropertiesHandler* const pProperties = reader.isStrict() ? _handlers.pProperties : nullptr;
    if (parts.characterEncodingScheme) {
        RequiredBits::readAs(reader, 1, 0, HEADER_END, "identification of the encoding scheme that is not 0",
                             "C.2.8");
        Decoder::nonEmptyOctetString(reader, _scratch);
        if (reader.isStrict()) {
            StrictText::requireUTF8(reader, _scratch);
        }
        if (pProperties) {
            pProperties->characterEncodingScheme(_scratch);
        }
    }
    if (parts.standalone) {
        RequiredBits::readAs(reader, 7, 0, HEADER_END, "padding of standalone that is not 0", "C.2.9");
        const bool isStandalone = RequiredBits::readFlag(reader, HEADER_END);
        if (pProperties) {
            pProperties->standalone(isStandalone);
        }
    }
    if (parts.version) {
        const std::string& version = _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
        if (pProperties) {
            pProperties->version(version);
        }
    }
}

// ---- comments, instructions, references

void MarkupParser::parseComment(BitStreamReader& reader) {
    requirePosition(reader.bitPos() == 0, "Illegal startposition for a Comment value");
    const std::string& text = _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
    if (_handlers.pLexical) {
        deliver(CALLBACK + text.size());
        _handlers.pLexical->comment(text.data(), 0, lengthOf(text));
    }
}

void MarkupParser::parseProcessingInstruction(BitStreamReader& reader) {
    const std::string& target = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    const std::string& data = _strings.parseOtherText(reader, DocumentVocabulary::OTHER_STRING);
    if (_handlers.pContent) {
        deliver(CALLBACK + target.size() + data.size());
        _handlers.pContent->processingInstruction(target, data);
    }
}

void MarkupParser::parseUnexpandedEntityReference(BitStreamReader& reader) {
    static constexpr const char* END = "Unexpected end of stream while parsing unexpanded entity reference";
    requirePosition(reader.bitPos() == 6, "Illegal startposition for a Notation value");
    const bool hasSystemId = RequiredBits::readFlag(reader, END);
    const bool hasPublicId = RequiredBits::readFlag(reader, END);
    const std::string& name = _strings.parseIdentifying(reader, DocumentVocabulary::OTHER_NCNAME);
    _strings.parseIdentifyingIf(reader, hasSystemId, DocumentVocabulary::OTHER_URI);
    _strings.parseIdentifyingIf(reader, hasPublicId, DocumentVocabulary::OTHER_URI);
    if (reader.isStrict() && _handlers.pContent) { // deliberate: the default drops it
        deliver(CALLBACK + name.size());
        _handlers.pContent->skippedEntity(name);
    }
}

void MarkupParser::reportTypedChunk(bool isStrict) {
    const bool inCDATA = _handlers.pLexical && _strings.typed()->type() == CDataEncoding::TYPE;
    if (inCDATA) {
        deliver(2 * CALLBACK);
        _handlers.pLexical->startCDATA();
    }
    if (isStrict && _handlers.pChunks && _strings.typed()->type() != CDataEncoding::TYPE) {
        const unsigned int algorithm = _strings.typedAlgorithm();
        const std::string* const pURI = _strings.vocabulary().algorithms().find(algorithm);
        deliver(2 * CALLBACK);
        if (!_handlers.pChunks->startTypedChunk(
                TypedChunk(_strings.typed(), algorithm, pURI ? *pURI : StringParser::EMPTY))) {
            _strings.typed()->handle(_handlers.pTyped);
        }
        _handlers.pChunks->endTypedChunk();
    } else if (_handlers.pTyped) {
        deliver(CALLBACK);
        _strings.typed()->handle(_handlers.pTyped);
    } else if (_handlers.pContent) {
        _strings.typedText().createContent(*_strings.typed());
        deliver(CALLBACK + static_cast<const Encoding&>(*_strings.typed()).content().size());
        _strings.typed()->handle(_handlers.pContent);
    }
    if (inCDATA) {
        _handlers.pLexical->endCDATA();
    }
}

// ---- declarations

void MarkupParser::parseDocumentTypeDeclaration(BitStreamReader& reader) {
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
    _inDTD = true;
    _isDTDEmpty = true;
}

// A processing instruction of the document type declaration, or its end.
void MarkupParser::parseDTDItem(BitStreamReader& reader) {
    // Deliberate: every four bits but the terminator open a processing instruction by default, unless it is
    // the first.
    const unsigned char stat = RequiredBits::read(reader, 4, DTD_END);
    if (_isDTDEmpty && !reader.isStrict() && stat != 0x0E) {
        tamo_assert(stat == 0x0f);
    }
    _isDTDEmpty = false;
    if (stat != Forms::TERMINATOR) {
        RequiredBits::readAs(reader, 4, stat == 0x0E ? 1 : 0x10, DTD_END,
                             "neither a processing instruction nor the end of the document type declaration",
                             "C.9");
        parseProcessingInstruction(reader);
        return;
    }
    _inDTD = false;
    if (_handlers.pLexical) {
        _handlers.pLexical->endDTD();
    }
}

void MarkupParser::parseNotation(BitStreamReader& reader) {
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

void MarkupParser::parseUnparsedEntity(BitStreamReader& reader) {
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

} // namespace Tamo::FastInfoset
