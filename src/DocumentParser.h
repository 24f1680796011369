#ifndef TAMO_FASTINFOSET_DOCUMENTPARSER_H
#define TAMO_FASTINFOSET_DOCUMENTPARSER_H

#include "ChildOrder.h"
#include "MarkupParser.h"
#include "ResolvedNames.h"
#include "StartVocabulary.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include "Tamo/FastInfoset/detail/ParsedAttributes.h"
#include "Tamo/XML/DeliveryMeter.h"
#include "TypedAttributeValues.h"
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tamo::XML {
class ContentHandler;
class DTDHandler;
class LexicalHandler;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class CommonForms;
class DocumentPropertiesHandler;
class FISContentHandler;
class FISDocumentHandler;
class TypedChunkHandler;

/// Walks through a document and reports its items: what FastInfosetParser and FastInfosetReader have in
/// common (ITU-T X.891, 7.2 to 7.12). Used by one thread at a time.
///
/// The reader of the bits is given to each operation, and is the same for all of a document. The stack of
/// open elements is here: nothing recurses.
class DocumentParser {
public:
    /// What opens a vocabulary when the application has no loader.
    using OpenVocabulary = StartVocabulary::Open;

    /// With tables of a kind, or over a copy of a vocabulary. Without a function no vocabulary is opened.
    DocumentParser(DocumentVocabulary::VocabularyImpl impl, OpenVocabulary open);
    DocumentParser(const DocumentVocabulary& vocabulary, OpenVocabulary open);

    DocumentParser(const DocumentParser&) = delete;
    DocumentParser& operator=(const DocumentParser&) = delete;

    MarkupParser::Handlers& handlers() noexcept { return _markup.handlers(); }
    const MarkupParser::Handlers& handlers() const noexcept { return _markup.handlers(); }

    /// Whether documents are read by the letter of X.891; to be set between documents.
    void setStrict(bool flag) noexcept { _strict = flag; }
    bool isStrict() const noexcept { return _strict; }

    /// The octet of the document at which the construct begins that is read, or was when reading ended.
    UInt64 position() const noexcept { return _pReader ? _pReader->constructOctet() : _position; }

    /// Lets read() read from the reader, so that position() and its exceptions say where.
    template<class Read>
    void locate(const BitStreamReader& reader, const Read& read) {
        struct Located {
            DocumentParser& parser;
            ~Located() {
                parser._position = parser._pReader->constructOctet();
                parser._pReader = nullptr;
            }
        };
        _pReader = &reader;
        const Located located{*this};
        try {
            read();
        } catch (FISException& e) {
            e.locate(reader.constructOctet());
            throw;
        }
    }

    /// The octets of the document that was read last.
    UInt64 documentSize() const noexcept { return _documentSize; }

    /// Whether elements get qualified names.
    void setNamespacePrefixes(bool flag) noexcept { _namespacePrefixes = flag; }
    bool namespacePrefixes() const noexcept { return _namespacePrefixes; }

    /// What yields external vocabularies; borrowed. Null: what opens them, if anything does.
    void setLoader(VocabularyLoader* pLoader) noexcept { _pLoader = pLoader; }
    VocabularyLoader* getLoader() const noexcept { return _pLoader; }

    /// Adds a vocabulary for documents that name its URI.
    void useVocabulary(std::shared_ptr<const SharedVocabulary> pVocabulary) {
        _start.use(std::move(pVocabulary));
    }

    /// How typed values become text.
    void setCanonicalNumbers(bool flag) noexcept { strings().typedText().canonicalNumbers = flag; }

    /// Reads a whole document; by a reader that waits for octets item by item, so that this one stands behind
    /// what has been read when a handler throws.
    void parse(BitStreamReader& reader);

    /// Reads the header of a document.
    void begin(BitStreamReader& reader);

    /// Reads one item, a child or an end, some of which are not reported; false when the document has ended.
    bool parseItem(BitStreamReader& reader);

    /// Reads the items that the reader has, all of which must be there whole, and stops at their end; false
    /// when the document has ended. Behind the last part a document that has not ended is refused, as by
    /// parse().
    bool parsePart(BitStreamReader& reader, bool isLast);

    /// Forgets the elements that are open.
    void abandon() noexcept { _openElements.clear(); }

    /// How many elements are open.
    std::size_t depth() const noexcept { return _openElements.size(); }

    StringParser& strings() noexcept { return _markup.strings(); }
    const StringParser& strings() const noexcept { return _markup.strings(); }

private:
    using NameKind = DocumentVocabulary::NameKind;

    // Whether all items that are left are read, or one.
    enum class Extent { ALL, ONE };

    // A namespace declaration, and how many elements are open with its own.
    struct DeclaredPrefix {
        const std::string* pPrefix;
        std::size_t depth;
    };

    // Whose rules are followed.
    enum class Mode { DEFAULT, STRICT };

    bool parseLeft(BitStreamReader& reader);
    template<Extent EXTENT, Mode MODE>
    bool parseItems(BitStreamReader& reader);
    template<Extent EXTENT, Mode MODE>
    bool parseCommonItems(BitStreamReader& reader);
    template<Extent EXTENT, Mode MODE>
    void parseCommonElement(BitStreamReader& reader, CommonForms& octets);
    template<Extent EXTENT, Mode MODE>
    bool parseCommonAttributes(BitStreamReader& reader, CommonForms& octets);
    template<Mode MODE>
    bool parseCommonAttributeValue(BitStreamReader& reader, CommonForms& octets,
                                   const ResolvedNames::Name& name);
    template<Extent EXTENT, Mode MODE>
    bool parseCommonCharacterChunk(BitStreamReader& reader, CommonForms& octets);
    template<Mode MODE>
    unsigned int parseOtherName(BitStreamReader& reader, unsigned int b, NameKind kind);
    void parseElementChild(BitStreamReader& reader);
    void parseElement(BitStreamReader& reader);
    unsigned int parseElementName(BitStreamReader& reader);
    void startElement(unsigned int index, const ResolvedNames::Name& name);
    void endElement();
    void parseNamespaceAttributes(BitStreamReader& reader);
    void parseNamespaceAttribute(BitStreamReader& reader);
    void parseAttributes(BitStreamReader& reader);
    void parseAttributeValue(BitStreamReader& reader, const ResolvedNames::Name& name);
    void addAttribute(const ResolvedNames::Name& name, const std::string& value);
    void addAttribute(const ResolvedNames::Name& name, const char* pValue, std::size_t size);
    const XML::Attributes& reportedAttributes();
    const XML::Attributes& typedAttributes();
    void endMappings();
    template<Mode MODE>
    void endDocument(BitStreamReader& reader);
    unsigned int parseQualifiedNameOrIndex(BitStreamReader& reader, NameKind kind);
    void resolveName(unsigned int index, NameKind kind);
    unsigned int parseQualifiedName(BitStreamReader& reader, unsigned int presence, NameKind kind);
    template<Mode MODE>
    unsigned int parseNameParts(BitStreamReader& reader, unsigned int presence, NameKind kind);
    void parseCharacterChunk(BitStreamReader& reader);
    void reportCharacters(const char* pText, std::size_t size);

    ResolvedNames& resolvedNames(NameKind kind) noexcept {
        return kind == NameKind::ELEMENT ? _elementNames : _attributeNames;
    }
    void keepQualifiedName();
    void forgetNames();
    const std::string& qualifiedName(unsigned int index, const ResolvedNames::Name& name);

    MarkupParser _markup;
    VocabularyLoader* _pLoader = nullptr;
    StartVocabulary _start;
    bool _strict = false;
    bool _isDocumentStrict = false; // of the one that is read
    bool _isChildNext = false;      // behind padding, where an end must not stand
    bool _isPart = false;           // whether the reader has items of the document, and not all that are left
    ChildOrder _children;
    bool _namespacePrefixes = true;
    UInt64 _documentSize = 0;
    UInt64 _position = 0;
    const BitStreamReader* _pReader = nullptr; // while locate() lasts
    ResolvedNames _elementNames;
    ResolvedNames _attributeNames;
    ParsedAttributes _attributes;
    TypedAttributeValues _typedValues;
    std::vector<DeclaredPrefix> _declaredPrefixes;
    std::vector<unsigned int> _openElements; // indexes of names
    std::string _scratch;
    std::string _qname;
    const std::string* _pQName = &_qname; // the qualified name last reported
};

} // namespace Tamo::FastInfoset

#endif
