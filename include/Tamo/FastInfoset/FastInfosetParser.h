#ifndef TAMO_FASTINFOSET_FASTINFOSETPARSER_H
#define TAMO_FASTINFOSET_FASTINFOSETPARSER_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/Decoder.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/ParsedAttributes.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/ResolvedNames.h"
#include "Tamo/FastInfoset/VerbTable.h"
#include "Tamo/XML/DeliveryMeter.h"
#include "Tamo/XML/XMLReader.h"
#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tamo::XML {
class LexicalHandler;
class XMLWriter;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class BitStreamReader;
class CommonForms;
class ExternalVocabularyLoader;
class FastInfosetWriter;
class FISContentHandler;
class FISDefaultHandler;
class FISDocumentHandler;
template<class T>
class VectorVocabulary;

/// Reads a Fast Infoset document (ITU-T X.891) and reports it as SAX2 events.
///
/// Use it like any SAX2 reader: set handlers, then parse. A content handler that is a FISContentHandler
/// receives typed data as values, any other one as text. Handlers are borrowed and called on the parsing
/// thread; what they throw passes through. A parser reads any number of documents, one at a time, also after
/// an exception; it is used by one thread at a time.
///
/// Each document's header sets the vocabulary up anew, with one exception: when the document names the
/// external vocabulary that this parser was built over (DocumentVocabulary::getURI), nothing is loaded and
/// nothing is reset, so the entries of an earlier document stay and shift the indexes. To read a series of
/// such documents build a parser for each, or use one parser whose loader supplies the vocabulary
/// (setExternalVocabularyLoader).
///
/// Exceptions: FISParseException for input that ends too early or a source that cannot be resolved,
/// FISEncodingException for bits that form no valid construct, FISException for header errors,
/// std::out_of_range for an index past the end of its table, AssertionViolationException for the conditions
/// that are assertions by interface, IOException for a failing stream.
class TAMO_API FastInfosetParser : public XML::XMLReader {
public:
    /// A parser with tables of its own; VOC_VECTOR is the fastest kind.
    explicit FastInfosetParser(DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_VECTOR);

    /// A parser over a copy of a prepared vocabulary.
    explicit FastInfosetParser(const DocumentVocabulary& vocabulary);

    FastInfosetParser(const FastInfosetParser&) = delete;
    FastInfosetParser& operator=(const FastInfosetParser&) = delete;

    /// Stored and returned only; system identifiers are resolved by the parser's own resolver.
    void setEntityResolver(XML::EntityResolver* pResolver) override;
    XML::EntityResolver* getEntityResolver() const override;
    void setDTDHandler(XML::DTDHandler* pDTDHandler) override;
    XML::DTDHandler* getDTDHandler() const override;
    void setContentHandler(XML::ContentHandler* pContentHandler) override;
    XML::ContentHandler* getContentHandler() const override;
    /// Stored and returned only; errors are exceptions.
    void setErrorHandler(XML::ErrorHandler* pErrorHandler) override;
    XML::ErrorHandler* getErrorHandler() const override;

    /// Namespaces are always on; the namespace-prefixes feature (on) says whether elements get qualified
    /// names.
    void setFeature(const std::string& name, bool value) override;
    bool getFeature(const std::string& name) const override;

    /// The lexical handler and the declaration handler, as pointers.
    void setProperty(const std::string& name, const std::string& value) override;
    void setProperty(const std::string& name, void* value) override;
    void* getProperty(const std::string& name) const override;

    /// Parses the byte stream of source, else its character stream, else its system identifier.
    void parse(XML::InputSource* pSource) override;
    void parse(const std::string& systemId) override;

    /// Parses size octets at data, in place.
    void parseMemoryNP(const char* data, std::size_t size) override;

    ~FastInfosetParser() override;

    /// The handler that is told what the document says of itself; borrowed, may be null.
    void setDocumentHandler(FISDocumentHandler* pDocumentHandler);
    FISDocumentHandler* getDocumentHandler() const;

    /// What yields external vocabularies; borrowed. Null, the default, opens the URIs that documents name.
    void setExternalVocabularyLoader(ExternalVocabularyLoader* pLoader);
    ExternalVocabularyLoader* getExternalVocabularyLoader() const;

    /// What the parser accepts of a document; to be set between documents.
    void setLimits(const ParserLimits& limits);
    const ParserLimits& limits() const;

    /// The vocabulary as the last document left it.
    const DocumentVocabulary& vocabulary() const;

    /// The table of algorithms, to which an application adds its own; it outlives the documents.
    DecodingAlgorithm& decodingAlgorithms();

    /// Sets a writer as all of the handlers: the document is re-encoded event by event, typed data intact.
    /// The parser's tables must not be of kind VOC_VECTOR then. A null writer is left out.
    void initialize(FastInfosetWriter* pWriter);

    /// Sets a writer of XML text as all of the handlers. A null writer is left out.
    void initialize(XML::XMLWriter* pWriter);

    /// Sets a handler as all of the handlers. A null handler is left out.
    void initialize(FISDefaultHandler* pHandler);

    /// What absent parts of names refer to.
    static const std::string EMPTY_STRING;

private:
    friend class FastInfosetReader; // takes the items one by one

    // A decoded value: text, or a typed value kept in _pTyped.
    struct Value {
        const std::string* pText = nullptr;
        bool typed = false;
    };

    // An entry of a table of strings.
    struct Entry {
        const std::string* pValue = nullptr;
        unsigned int index = 0;
    };

    void parseDocument(BitStreamReader& reader);
    void beginDocument(BitStreamReader& reader);
    void parseDocumentChildren(BitStreamReader& reader, const Decoder::OpenHeaderParts& parts);
    bool parseItems(BitStreamReader& reader, bool all);
    bool parseCommonItems(BitStreamReader& reader, bool all);
    void parseCommonElement(BitStreamReader& reader, CommonForms& octets, bool all);
    unsigned int parseOtherName(BitStreamReader& reader, unsigned int b, bool isElement);
    bool parseCommonAttributes(BitStreamReader& reader, CommonForms& octets, bool all);
    bool parseCommonAttributeValue(CommonForms& octets, const ResolvedNames::Name& name);
    bool parseCommonCharacterChunk(CommonForms& octets);
    void parseElementChild(BitStreamReader& reader);
    Entry parseCommonIdentifyingString(BitStreamReader& reader, CommonForms& octets,
                                       DocumentVocabulary::ID id);
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
    unsigned int parseQualifiedNameOrIndex(BitStreamReader& reader, bool isElement);
    void resolveName(unsigned int index, bool isElement);
    unsigned int parseQualifiedName(BitStreamReader& reader, bool hasPrefix, bool hasNamespace,
                                    bool isElement);
    const std::string& parseIdentifyingStringOrIndex(BitStreamReader& reader, DocumentVocabulary::ID id,
                                                     unsigned int& index);
    const std::string& parseIdentifyingStringOrIndex(BitStreamReader& reader, DocumentVocabulary::ID id);
    const std::string& parseCondIdentifyingStringOrIndex(BitStreamReader& reader, bool present,
                                                         DocumentVocabulary::ID id);
    Value parseNonIdentifyingStringOrIndex(BitStreamReader& reader, DocumentVocabulary::ID id);
    const std::string& parseNonIdentifyingStringOrIndexXML(BitStreamReader& reader,
                                                           DocumentVocabulary::ID id);
    Value parseEncodedCharacterString(BitStreamReader& reader);
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

    void bindTables();
    unsigned int addToTable(DocumentVocabulary::ID id, const std::string& s);
    Entry addLiteral(DocumentVocabulary::ID id, const char* pText, std::size_t size);
    Entry addOtherLiteral(DocumentVocabulary::ID id, const char* pText, std::size_t size);
    const std::string* keep(DocumentVocabulary::ID id, const char* pText, std::size_t size);
    void keepOther(DocumentVocabulary::ID id, const std::string& s);
    void requireEntries(std::size_t count) const;
    void deliver(std::size_t octets);
    void checkDelivered();
    Vocabulary<QualifiedNameEntry>& getQNameVocabulary(bool isElement);
    const std::string& tableValue(DocumentVocabulary::ID id, unsigned int index);
    const std::string& otherValue(DocumentVocabulary::ID id, unsigned int index);
    const std::string& namePart(DocumentVocabulary::ID id, unsigned int index);
    ResolvedNames& resolvedNames(bool isElement);
    void forgetNames();
    const std::string& qualifiedName(unsigned int index);

    XML::EntityResolver* _pEntityResolver = nullptr;
    XML::DTDHandler* _pDTDHandler = nullptr;
    XML::ContentHandler* _pContentHandler = nullptr;
    FISContentHandler* _pTypedContentHandler = nullptr;
    XML::ErrorHandler* _pErrorHandler = nullptr;
    void* _pDeclarationHandler = nullptr;
    XML::LexicalHandler* _pLexicalHandler = nullptr;
    FISDocumentHandler* _pDocumentHandler = nullptr;
    ExternalVocabularyLoader* _pLoader = nullptr;
    bool _namespacePrefixes = true;
    bool _inDTD = false;
    DocumentVocabulary _vocabulary;
    std::array<const VerbTable<std::string>*, DocumentVocabulary::ELEMENT_NAME> _tables{};
    std::array<VectorVocabulary<std::string>*, DocumentVocabulary::ELEMENT_NAME> _appendedTables{}; // or null
    std::size_t _mostKept = 0; // entries of a table of strings that are no parts of names
    std::unordered_map<UInt64, std::string> _copiedValues; // by table and index, of an application's tables
    ResolvedNames _elementNames;
    ResolvedNames _attributeNames;
    ParsedAttributes _attributes;
    std::vector<const std::string*> _declaredPrefixes;
    std::vector<unsigned int> _openElements; // indexes of names
    ParserLimits _limits;
    XML::DeliveryMeter _meter;
    const BitStreamReader* _pSource = nullptr; // of the document that is read
    std::string _scratch;
    std::string _octets;
    std::string _text;
    std::string _qname;
    const std::string* _pQName = &_qname; // the qualified name last reported
    AutoPtr<Encoding> _pTyped;
};

} // namespace Tamo::FastInfoset

#endif
