#ifndef TAMO_FASTINFOSET_MARKUPPARSER_H
#define TAMO_FASTINFOSET_MARKUPPARSER_H

#include "StringParser.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/XML/DeliveryMeter.h"
#include <cstddef>

namespace Tamo::XML {
class ContentHandler;
class DTDHandler;
class LexicalHandler;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class BitStreamReader;
class DocumentPropertiesHandler;
class FISContentHandler;
class FISDocumentHandler;
class TypedChunkHandler;

/// Reads what is neither element nor text: the declarations and properties behind the header, the document
/// type declaration, comments, processing instructions and entity references (ITU-T X.891, 7.2, 7.5 to 7.12),
/// and counts what all items deliver. Used by one thread at a time.
class MarkupParser {
public:
    /// Who is told; borrowed, and null where nobody is.
    struct Handlers {
        XML::DTDHandler* pDTD = nullptr;
        XML::ContentHandler* pContent = nullptr;
        FISContentHandler* pTyped = nullptr;  ///< the content handler, if it takes values
        TypedChunkHandler* pChunks = nullptr; ///< the content handler, if it takes chunks
        XML::LexicalHandler* pLexical = nullptr;
        FISDocumentHandler* pDocument = nullptr;
        DocumentPropertiesHandler* pProperties = nullptr; ///< the document handler, if it takes properties

        void setContent(XML::ContentHandler* pHandler);
        void setDocument(FISDocumentHandler* pHandler);
    };

    /// With tables of a kind, or over a copy of a vocabulary.
    template<class Tables>
    explicit MarkupParser(const Tables& tables) : _strings(tables) {}

    MarkupParser(const MarkupParser&) = delete;
    MarkupParser& operator=(const MarkupParser&) = delete;

    Handlers& handlers() noexcept { return _handlers; }
    const Handlers& handlers() const noexcept { return _handlers; }

    /// What reads the strings of all items.
    StringParser& strings() noexcept { return _strings; }
    const StringParser& strings() const noexcept { return _strings; }

    /// Begins a document.
    void begin(const BitStreamReader& reader);

    /// Counts octets that are about to be delivered, and refuses too many.
    TAMO_ALWAYS_INLINE void deliver(std::size_t octets) {
        if (!_meter.add(octets)) [[unlikely]] {
            checkDelivered();
        }
    }

    /// Reads what stands between the initial vocabulary and the children.
    void parseHeaderParts(BitStreamReader& reader, const Decoder::OpenHeaderParts& parts);

    /// Read an item behind the bits that tell it.
    void parseComment(BitStreamReader& reader);
    void parseProcessingInstruction(BitStreamReader& reader);
    void parseUnexpandedEntityReference(BitStreamReader& reader);
    void parseDocumentTypeDeclaration(BitStreamReader& reader);

    /// Reports the typed value that has been read last as a chunk.
    void reportTypedChunk(bool isStrict);

    /// Whether a document type declaration has begun and not ended.
    bool isInDTD() const noexcept { return _inDTD; }

    /// Reads a processing instruction of the document type declaration, or its end.
    void parseDTDItem(BitStreamReader& reader);

private:
    void parseNotation(BitStreamReader& reader);
    void parseUnparsedEntity(BitStreamReader& reader);
    void checkDelivered();

    StringParser _strings;
    Handlers _handlers;
    XML::DeliveryMeter _meter;
    const BitStreamReader* _pReader = nullptr; // of the document that is read
    bool _inDTD = false;
    bool _isDTDEmpty = false; // so far
    std::string _scratch;
};

} // namespace Tamo::FastInfoset

#endif
