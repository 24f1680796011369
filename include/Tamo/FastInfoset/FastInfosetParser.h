#ifndef TAMO_FASTINFOSET_FASTINFOSETPARSER_H
#define TAMO_FASTINFOSET_FASTINFOSETPARSER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/detail/OpenVocabulary.h"
#include "Tamo/FastInfoset/detail/ParsedAttributes.h" // handlers are compiled to guess that a list is one
#include "Tamo/Types.h"
#include "Tamo/XML/XMLReader.h"
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

namespace Tamo::XML {
class LexicalHandler;
class XMLWriter;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class DocumentParser;
class FastInfosetPushParser;
class FastInfosetWriter;
class FISDefaultHandler;
class FISDocumentHandler;
class FISFilter;
class VocabularyLoader;

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
    /// A parser with tables of its own; VOC_VECTOR is the fastest kind. The external vocabularies that
    /// documents name are opened.
    explicit FastInfosetParser(DocumentVocabulary::VocabularyImpl impl = DocumentVocabulary::VOC_VECTOR)
        : FastInfosetParser(impl, Opening{&openVocabulary}) {}

    /// The same over a copy of a prepared vocabulary.
    explicit FastInfosetParser(const DocumentVocabulary& vocabulary)
        : FastInfosetParser(vocabulary, Opening{&openVocabulary}) {}

    /// Parsers that open nothing: external vocabularies come from the loader, which is borrowed, or are
    /// refused with FISException where it is null. A program with no other parsers does not need Expat.
    FastInfosetParser(DocumentVocabulary::VocabularyImpl impl, VocabularyLoader* pLoader);
    FastInfosetParser(const DocumentVocabulary& vocabulary, VocabularyLoader* pLoader);

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

    using XMLReader::parse;
    /// Parses the byte stream of source, else its character stream, else its system identifier.
    void parse(XML::InputSource* pSource) override;
    void parse(const std::string& systemId) override;

    /// Parses the next document of a stream, live (setLive) whatever isLive() says. False, and nothing is
    /// reported, when the stream has ended before the first octet of a document.
    bool parseNext(std::istream& stream);

    /// Parses size octets at data, in place.
    void parseMemoryNP(const char* data, std::size_t size) override;

    ~FastInfosetParser() override;

    /// The handler that is told what the document says of itself; borrowed, may be null.
    void setDocumentHandler(FISDocumentHandler* pDocumentHandler);
    FISDocumentHandler* getDocumentHandler() const;

    /// Gives the parser a vocabulary that is shared: documents that name its URI begin with it, which costs
    /// nothing for its entries. Several can be given, a later one in place of one with its URI; they come
    /// before what the loader yields. To be set between documents.
    void useVocabulary(std::shared_ptr<const SharedVocabulary> pVocabulary);

    /// What yields external vocabularies; borrowed. Null: the URIs that documents name are opened, or
    /// refused, as the constructor says.
    void setExternalVocabularyLoader(VocabularyLoader* pLoader);
    VocabularyLoader* getExternalVocabularyLoader() const;

    /// What the parser accepts of a document; to be set between documents.
    void setLimits(const ParserLimits& limits);
    const ParserLimits& limits() const;

    /// Whether documents are read by the letter of ITU-T X.891 (docs/conformance.md): what it does not allow
    /// is refused with FISEncodingException, and what the default leaves out is handed out. False at first;
    /// to be set between documents.
    void setStrict(bool flag);
    bool isStrict() const noexcept;

    /// Whether streams are read live: an event is reported as soon as its last octet is there, no octet is
    /// waited for that the next one does not need, and none behind the document is taken, so that the next
    /// one can be read from the same stream; after an exception the stream stands where it has been read to.
    /// False at first: a stream is read in blocks of 1024 octets, which may lie behind the document. To be
    /// set between documents.
    void setLive(bool flag) noexcept;
    bool isLive() const noexcept;

    /// Whether arrays of float and double become text in the canonical form of XML Schema ("1.5E0") instead
    /// of the shortest spelling, but in the tables of the header. False at first; to be set between
    /// documents.
    void setCanonicalNumbers(bool flag);

    /// The octet of the document, counted from 0, at which the construct begins that is being read: in a
    /// handler what is reported, after an exception what could not be read, else the end of the last
    /// document. The header is one construct; an end begins in the octet that holds it.
    UInt64 position() const noexcept;

    /// The octets of the last document from its first to its last one, which is where the next may begin; 0
    /// of a document that has failed.
    UInt64 documentSize() const noexcept;

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

    /// Sets a filter as all of the handlers. A null filter is left out.
    void initialize(FISFilter* pFilter);

    /// What absent parts of names refer to.
    static const std::string& EMPTY_STRING;

private:
    friend class FastInfosetPushParser; // which reads with the same engine

    // What opens vocabularies; named where a parser is made, so that it is linked to those that need it only.
    struct Opening {
        DocumentVocabulary (*open)(const std::string& uri, bool strict);
    };

    FastInfosetParser(DocumentVocabulary::VocabularyImpl impl, Opening opening);
    FastInfosetParser(const DocumentVocabulary& vocabulary, Opening opening);

    void parseStream(std::istream& stream);

    std::unique_ptr<DocumentParser> _pEngine;
    XML::EntityResolver* _pEntityResolver = nullptr;
    XML::ErrorHandler* _pErrorHandler = nullptr;
    void* _pDeclarationHandler = nullptr;
    bool _isLive = false;
};

} // namespace Tamo::FastInfoset

#endif
