#ifndef TAMO_FASTINFOSET_DOCUMENTPARSER_H
#define TAMO_FASTINFOSET_DOCUMENTPARSER_H

#include "ResolvedNames.h"
#include "StringParser.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/VocabularyLoader.h"
#include "Tamo/FastInfoset/detail/ParsedAttributes.h"
#include "Tamo/XML/DeliveryMeter.h"
#include <cstddef>
#include <string>
#include <vector>

namespace Tamo::XML {
class ContentHandler;
class DTDHandler;
class LexicalHandler;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class BitStreamReader;
class CommonForms;
class FISContentHandler;
class FISDocumentHandler;

/// Walks through a document and reports its items: what FastInfosetParser and FastInfosetReader have in
/// common (ITU-T X.891, 7.2 to 7.12). Used by one thread at a time.
///
/// The reader of the bits is given to each operation, and is the same for all of a document. The stack of
/// open elements is here: nothing recurses.
class DocumentParser {
public:
    /// Who is told; borrowed, and null where nobody is.
    struct Handlers {
        XML::DTDHandler* pDTD = nullptr;
        XML::ContentHandler* pContent = nullptr;
        FISContentHandler* pTyped = nullptr; ///< the content handler, if it takes values
        XML::LexicalHandler* pLexical = nullptr;
        FISDocumentHandler* pDocument = nullptr;
    };

    /// What opens a vocabulary when the application has no loader.
    using OpenVocabulary = DocumentVocabulary (*)(const std::string& uri, bool strict);

    /// With tables of a kind, or over a copy of a vocabulary. Without a function no vocabulary is opened.
    template<class Tables>
    DocumentParser(const Tables& tables, OpenVocabulary open) : _strings(tables), _opener(open) {}

    DocumentParser(const DocumentParser&) = delete;
    DocumentParser& operator=(const DocumentParser&) = delete;

    Handlers& handlers() noexcept { return _handlers; }
    const Handlers& handlers() const noexcept { return _handlers; }

    /// Whether documents are read by the letter of X.891; to be set between documents.
    void setStrict(bool flag) noexcept { _strict = flag; }
    bool isStrict() const noexcept { return _strict; }

    /// The octets of the document that was read last.
    UInt64 documentSize() const noexcept { return _documentSize; }

    /// Whether elements get qualified names.
    void setNamespacePrefixes(bool flag) noexcept { _namespacePrefixes = flag; }
    bool namespacePrefixes() const noexcept { return _namespacePrefixes; }

    /// What yields external vocabularies; borrowed. Null: what opens them, if anything does.
    void setLoader(VocabularyLoader* pLoader) noexcept { _pLoader = pLoader; }
    VocabularyLoader* getLoader() const noexcept { return _pLoader; }

    /// Reads a whole document.
    void parse(BitStreamReader& reader);

    /// Reads the header of a document.
    void begin(BitStreamReader& reader);

    /// Reads one item, a child or an end, some of which are not reported; false when the document has ended.
    bool parseItem(BitStreamReader& reader);

    /// Forgets the elements that are open.
    void abandon() noexcept { _openElements.clear(); }

    /// How many elements are open.
    std::size_t depth() const noexcept { return _openElements.size(); }

    StringParser& strings() noexcept { return _strings; }
    const StringParser& strings() const noexcept { return _strings; }

private:
    using NameKind = DocumentVocabulary::NameKind;

    // Whether all items that are left are read, or one.
    enum class Extent { ALL, ONE };

    // Opens vocabularies by a function.
    class Opener : public VocabularyLoader {
    public:
        explicit Opener(OpenVocabulary open) noexcept : _open(open) {}
        DocumentVocabulary load(const std::string& uri) override { return _open(uri, false); }
        bool opens() const noexcept { return _open != nullptr; }

    private:
        OpenVocabulary _open;
    };

    VocabularyLoader* loader() noexcept { return _pLoader ? _pLoader : _opener.opens() ? &_opener : nullptr; }

    void parseDocumentChildren(BitStreamReader& reader, const Decoder::OpenHeaderParts& parts);
    template<Extent EXTENT>
    bool parseItems(BitStreamReader& reader);
    template<Extent EXTENT>
    bool parseCommonItems(BitStreamReader& reader);
    template<Extent EXTENT>
    void parseCommonElement(BitStreamReader& reader, CommonForms& octets);
    template<Extent EXTENT>
    bool parseCommonAttributes(BitStreamReader& reader, CommonForms& octets);
    bool parseCommonAttributeValue(CommonForms& octets, const ResolvedNames::Name& name);
    bool parseCommonCharacterChunk(CommonForms& octets);
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
    unsigned int parseQualifiedNameOrIndex(BitStreamReader& reader, NameKind kind);
    void resolveName(unsigned int index, NameKind kind);
    unsigned int parseQualifiedName(BitStreamReader& reader, unsigned int presence, NameKind kind);
    void parseCharacterChunk(BitStreamReader& reader);
    void reportCharacters(const char* pText, std::size_t size);
    void parseTypedChunk();
    void parseComment(BitStreamReader& reader);
    void parseProcessingInstruction(BitStreamReader& reader);
    void parseUnexpandedEntityReference(BitStreamReader& reader);
    void parseDocumentTypeDeclaration(BitStreamReader& reader);
    void parseDTDItem(BitStreamReader& reader);
    void parseNotation(BitStreamReader& reader);
    void parseUnparsedEntity(BitStreamReader& reader);

    void deliver(std::size_t octets);
    void checkDelivered();
    ResolvedNames& resolvedNames(NameKind kind) noexcept {
        return kind == NameKind::ELEMENT ? _elementNames : _attributeNames;
    }
    void forgetNames();
    const std::string& qualifiedName(unsigned int index);

    StringParser _strings;
    Handlers _handlers;
    VocabularyLoader* _pLoader = nullptr;
    Opener _opener;
    bool _strict = false;
    bool _namespacePrefixes = true;
    UInt64 _documentSize = 0;
    bool _inDTD = false;
    ResolvedNames _elementNames;
    ResolvedNames _attributeNames;
    ParsedAttributes _attributes;
    std::vector<const std::string*> _declaredPrefixes;
    std::vector<unsigned int> _openElements; // indexes of names
    XML::DeliveryMeter _meter;
    const BitStreamReader* _pSource = nullptr; // of the document that is read
    std::string _scratch;
    std::string _qname;
    const std::string* _pQName = &_qname; // the qualified name last reported
};

} // namespace Tamo::FastInfoset

#endif
