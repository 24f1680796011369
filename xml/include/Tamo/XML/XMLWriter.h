#ifndef TAMO_XML_XMLWRITER_H
#define TAMO_XML_XMLWRITER_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include "Tamo/XML/AttributesSnapshot.h"
#include "Tamo/XML/ContentHandler.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include "Tamo/XML/NamespaceSupport.h"
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::XML {

class DocumentType;
class DuplicateAttributes;
class OpenElements;
class XMLOutput;

/// Writes events as XML 1.0 text in UTF-8: always a namespace-well-formed document, or an exception.
///
/// Names: only namespace names and local names are trusted. A prefix is used when it is bound to the
/// namespace name in the scope that has been written; the one that the qualified name shows or that
/// startPrefixMapping announced for the element goes first. A missing declaration is written on the element,
/// for attributes under a generated prefix (ns1, ns2, ...) when necessary; an element in no namespace under a
/// default namespace gets xmlns="". Prefix mappings apply to the next element only, endPrefixMapping does
/// nothing, qualified names may be empty. Mappings that XML does not allow (of `xml` or `xmlns`, of a prefix
/// that is no name or has an empty namespace name) are not written.
///
/// Content: text, attribute values, comments and processing instructions come back exactly from a parser;
/// public identifiers with their white space normalised, as XML wants it.
/// What cannot (characters outside XML 1.0, octets that are not UTF-8, `--` in a comment, `?>` in a
/// processing instruction, names that are no names, two attributes of one name, no or two root elements, ...)
/// is an XMLException that names it. Notations and unparsed entities may be reported before startDocument or
/// inside the document type declaration, and go to its internal subset; a document type declaration without a
/// name takes the root element's.
///
/// The stream is borrowed and must outlive the writer. Output is buffered: it reaches the stream in large
/// pieces, at flush() and endDocument (which flush the stream) and when an event throws. A stream that fails
/// is an IOException. After an exception the document is lost and every further event but setDocumentLocator
/// throws XMLException, up to reset(). After endDocument another document can be written. One thread at a
/// time; no locale dependence; memory grows with the depth of the document and its document type declaration
/// only.
class TAMO_API XMLWriter : public ContentHandler, public LexicalHandler, public DTDHandler {
public:
    /// The option bits.
    enum Options {
        /// Begin with <?xml version="1.0" encoding="UTF-8"?>.
        WRITE_XML_DECLARATION = 0x01,
        /// Begin every child on a line of its own, indented by two spaces for each level (at most 32), where
        /// the parent has shown no text so far and xml:space="preserve" is not in force.
        PRETTY_PRINT = 0x04
    };

    /// A writer to the stream; options is a combination of the option bits, others are ignored.
    explicit XMLWriter(std::ostream& stream, int options = 0);

    XMLWriter(const XMLWriter&) = delete;
    XMLWriter& operator=(const XMLWriter&) = delete;

    /// Passes what is left in the buffer to the stream; a stream that fails now is not reported.
    ~XMLWriter() override;

    /// Makes the writer ready for another document, on stream, whatever has become of the last one, whose
    /// stream is not touched: what is in the buffer is dropped.
    void reset(std::ostream& stream);

    void setDocumentLocator(const Locator* loc) override;
    void startDocument() override;
    void endDocument() override;
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const Attributes& attributes) override;
    /// Ends the innermost open element; the names are not used.
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    void characters(const char ch[], int start, int length) override;
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    void endPrefixMapping(const std::string& prefix) override;
    /// Writes a reference to the entity; throws when the document has no external subset that could declare
    /// it.
    void skippedEntity(const std::string& name) override;

    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;

    /// Passes on what has been written so far and flushes the stream, so that others see it. The end of the
    /// last start tag comes with what follows it, as "/>" or ">".
    void flush();

    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

private:
    enum class State { BEFORE, PROLOG, DTD, CONTENT, CDATA, EPILOG };

    /// An element that has prefixes generated for it.
    struct Generating {
        std::size_t depth;
        UInt64 lastPrefix; ///< the number of the last prefix generated outside of it
    };

    template<class Event>
    void guarded(Event&& event);
    void passAndFlush();
    void require(bool condition, const char* what, const char* reason) const;
    void requireDeclarable(const char* what) const;

    void writeStartTag(const std::string& uri, const std::string& localName, const std::string& qname,
                       const Attributes& attributes);
    void openContext(const std::string& elementURI);
    std::string_view elementPrefix(const std::string& uri, const std::string& qname);
    std::string_view attributePrefix(const std::string& uri, const std::string& qname,
                                     const std::string& elementURI, std::string_view elementPrefix);
    std::string_view generatePrefix(const std::string& uri);
    bool isPretty() const noexcept;
    void noteText();
    void closeStartTag();
    void beginChild();
    void breakLine(std::size_t depth);

    XMLOutput& prologOutput();
    XMLOutput& beginMisc(const char* what);
    void endMisc();
    void begin();

    std::unique_ptr<XMLOutput> _pOutput;
    std::ostream* _pStream;
    int _options;
    State _state = State::BEFORE;
    bool _failed = false;
    bool _startTagOpen = false;
    std::size_t _brackets = 0; // `]` at the end of the open CDATA section

    std::unique_ptr<DocumentType> _pDocumentType;
    std::unique_ptr<DuplicateAttributes> _pDuplicates;
    AttributesSnapshot _attributes;
    NamespaceSupport _namespaces;
    bool _hasMappings = false; // the context of the next element is open
    UInt64 _lastPrefix = 0;    // the number of the last prefix generated
    UInt64 _skippedPrefix = 0; // up to here numbers of prefixes that the document has were passed over
    std::vector<Generating> _generating;
    std::unique_ptr<OpenElements> _pElements;
    std::string _elementPrefix;
    std::string _scratch;
};

} // namespace Tamo::XML

#endif
