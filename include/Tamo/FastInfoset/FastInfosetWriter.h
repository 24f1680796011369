#ifndef TAMO_FASTINFOSET_FASTINFOSETWRITER_H
#define TAMO_FASTINFOSET_FASTINFOSETWRITER_H

#include "Tamo/AutoPtr.h"
#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentPropertiesHandler.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include "Tamo/FastInfoset/NameAndValue.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/TypedChunkHandler.h"
#include "Tamo/FastInfoset/TypedInteger.h"
#include "Tamo/XML/DTDHandler.h"
#include "Tamo/XML/LexicalHandler.h"
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace Tamo {
class Sink;
}

namespace Tamo::XML {
class Attributes;
class AttributesImpl;
} // namespace Tamo::XML

namespace Tamo::FastInfoset {

class StrictEvents;

/// Turns SAX2 events into one Fast Infoset document (ITU-T X.891) on a stream or, through a Sink, in an
/// object of the caller: a StringSink, a VectorSink, a SpanSink.
///
/// Each event is encoded as it arrives; only typed data waits for the next structural event, and notations
/// and unparsed entities, which must be declared before startDocument, for the header. Names are always
/// indexed, other strings up to setMaxIndexedStringLength octets. The stream is borrowed and flushed at the
/// start of every construct, unless setFlush says otherwise. A sink is borrowed, too; what has been written
/// is in the caller's object whenever flush() was called and at the end of the document, before that as it
/// comes.
///
/// Expected order: setters and declarations; startDocument; optionally startDTD to endDTD; the content;
/// endDocument. A writer writes one document, or another one after each reset(), and is used by one thread at
/// a time.
///
/// Exceptions: FISException for misuse ("Tag mismatch", "Cannot nest CDATA sections"), FISEncodingException
/// for values that cannot be encoded, AssertionViolationException for declarations that come too late,
/// PoolOverflowException ("Vocabulary hash table full") when a VOC_HASH table is full, IOException for a
/// failing stream, whatever a sink throws. What was written stays in the stream.
class TAMO_API FastInfosetWriter : public TypedChunkHandler,
                                   public XML::LexicalHandler,
                                   public XML::DTDHandler,
                                   public DocumentPropertiesHandler {
public:
    /// When the stream is flushed, beside what flush() asks for.
    enum class Flush {
        EACH_CONSTRUCT, ///< at the start of every construct, and at the end of the document
        DOCUMENT_END,   ///< at the end of the document
        NEVER           ///< not at all: that is left to the stream or to who owns it
    };

    /// A writer with VOC_HASH tables, which are full at a fixed number of strings: 19 comments are too many
    /// (PoolOverflowException). Use the next constructor with VOC_MAP, whose tables grow, unless you know the
    /// documents. No XML declaration.
    explicit FastInfosetWriter(std::ostream& str);
    explicit FastInfosetWriter(Sink& sink);

    /// A writer with tables of its own: VOC_MAP for those that grow.
    FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration, DocumentVocabulary::VocabularyImpl impl);
    FastInfosetWriter(Sink& sink, bool writeXMLDeclaration, DocumentVocabulary::VocabularyImpl impl);

    /// A writer over a copy of a vocabulary, whose entries the header announces beyond the external
    /// vocabulary.
    FastInfosetWriter(std::ostream& str, bool writeXMLDeclaration, const DocumentVocabulary& vocabulary);
    FastInfosetWriter(Sink& sink, bool writeXMLDeclaration, const DocumentVocabulary& vocabulary);

    FastInfosetWriter(const FastInfosetWriter&) = delete;
    FastInfosetWriter& operator=(const FastInfosetWriter&) = delete;

    /// Makes the writer ready for another document, on str, whatever has become of the last one: many small
    /// documents cost less so than with a writer each. The stream of the last document is not touched, that
    /// of the next one has to last until the writer is reset again or ends; a sink until the document has
    /// ended, and whatever has become of it when the writer ends. Tables are what the external
    /// vocabulary holds, or empty, and a vocabulary of the application's own has to be set again, as have
    /// notations and unparsed entities; the other options stay.
    void reset(std::ostream& str);
    void reset(Sink& sink);

    /// When the stream is flushed: EACH_CONSTRUCT at first; stays over a reset. It does not matter to the
    /// sinks of this library. Those of others are synchronised at the start of a construct when it says so.
    void setFlush(Flush flush) noexcept;

    /// Writes what can be written so far, and flushes the stream or has the sink deliver it. Whoever reads it
    /// has all events so far but these:
    /// - the end of an element or of the document type declaration, and the start of an element with
    ///   attributes, where half an octet ends it: what the other half holds is up to the next event (X.891,
    ///   C.3.6 to C.3.8), with which it is written;
    /// - a declaration of a prefix, until its element starts; the mark of a CDATA section, until its text;
    /// - in the strict mode what stands before the root element, which waits for that.
    ///
    /// Typed data that comes in several calls is not one array across this call.
    void flush();

    /// Not used.
    void setDocumentLocator(const XML::Locator* pLocator) override;
    /// Writes the header.
    void startDocument() override;
    /// Writes the end of the document and flushes the stream, unless setFlush says otherwise; a sink delivers
    /// what has been written.
    void endDocument() override;
    /// Starts an element. Its name is namespace and local name; the qualified name's prefix is kept where it
    /// is or can be bound to the namespace. A qualified name alone (namespace processing off) becomes the
    /// local name. What the attribute list yields is copied before anything is written, unless the list is
    /// an XML::AttributesImpl or an XML::StableAttributes.
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes) override;
    /// Ends the open element; the names are compared in the strict mode alone.
    void endElement(const std::string& uri, const std::string& localName, const std::string& qname) override;
    /// Writes ch from start on, up to length octets or the first NUL octet of ch.
    void characters(const char ch[], int start, int length) override;
    /// The same as characters.
    void ignorableWhitespace(const char ch[], int start, int length) override;
    void processingInstruction(const std::string& target, const std::string& data) override;
    /// Binds a prefix for the next element, in the strict mode for that and what it contains alone; the
    /// prefix "xml" is left out.
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
    /// In the strict mode bindings end with their element.
    void endPrefixMapping(const std::string& prefix) override;
    /// Writes an unexpanded entity reference (X.891, 7.8) in the strict mode; else nothing.
    void skippedEntity(const std::string& name) override;
    ~FastInfosetWriter() override;

    /// Typed data: consecutive values of one type form one array. binaryData writes base64 data. An integer
    /// of another type is written as the narrowest of these that holds all values of its type.
    void binaryData(const char* data, std::size_t size) override;
    void encodedData(Int16 value) override;
    void encodedData(Int32 value) override;
    void encodedData(Int64 value) override;
    void encodedData(bool value) override;
    void encodedData(float value) override;
    void encodedData(double value) override;
    void encodedData(const UUID& value) override;

    template<TypedInteger T>
    void encodedData(T value) {
        encodedData(static_cast<NarrowestOf<T>>(value));
    }
    template<class T>
    requires(std::is_arithmetic_v<T> && !TypedInteger<T>) void encodedData(T) =
        delete; // a value might not fit: convert it to one of the types above
    template<class T>
    void encodedData(T*) = delete; // text goes to characters(), octets to binaryData(), arrays as a std::span
    void encodedData(std::nullptr_t) = delete;

    /// The strict mode writes the chunk as it is, by its algorithm, which the document must declare when it
    /// is no built-in one. False, and nothing written, else: the values are expected one by one.
    bool startTypedChunk(const TypedChunk& chunk) override;
    void endTypedChunk() override;

    /// Character data up to endCDATA is marked as a CDATA section.
    void startCDATA() override;
    void endCDATA() override;
    void comment(const char ch[], int start, int length) override;
    /// Starts the document type declaration; its name is not carried by the format.
    void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId) override;
    void endDTD() override;
    /// Nothing is written.
    void startEntity(const std::string& name) override;
    void endEntity(const std::string& name) override;

    /// Declarations for the header; after startDocument they fail the assertion "_states.back() ==
    /// UNINITIALIZED". In the strict mode they are possible up to the root element.
    void notationDecl(const std::string& name, const std::string* publicId,
                      const std::string* systemId) override;
    void unparsedEntityDecl(const std::string& name, const std::string* publicId, const std::string& systemId,
                            const std::string& notationName) override;

    /// Replaces the document's vocabulary by a copy; one of kind VOC_VECTOR throws InvalidArgumentException,
    /// unless the mode is strict, which makes tables of kind VOC_MAP of all others.
    void setDocumentVocabulary(const DocumentVocabulary& vocabulary) override;
    /// The document's vocabulary itself, which may be filled before startDocument. Deliberate: the header can
    /// announce up to 128 entries each of the tables of prefixes, namespace names, local names, NCNames and
    /// URIs; prepared attribute values, character chunks, other strings and names cannot be written
    /// (startDocument throws) unless they belong to the external vocabulary. The strict mode writes all of
    /// them, in their order, with the algorithms that are declared here, and refuses what has no form.
    DocumentVocabulary& getDocumentVocabulary() override;
    const DocumentVocabulary& getDocumentVocabulary() const override;
    /// Whether the document starts with an XML declaration.
    void setWriteXMLDeclaration(bool flag) override;
    /// Makes the header refer to an external vocabulary and announce only what the document's vocabulary
    /// holds beyond it. Build the writer over a copy of the same vocabulary, so that its entries are used. In
    /// the strict mode empty tables become a copy at once, and the header refers to it only when the
    /// document's tables begin with its entries.
    void setExternalVocabulary(const std::string& uri, const DocumentVocabulary& vocabulary) override;

    /// Makes a copy of the vocabulary that with which this and all later documents begin; the header refers
    /// to it by its URI, or announces it when it has none. Between documents; see setDocumentVocabulary.
    void useVocabulary(const DocumentVocabulary& vocabulary);

    /// Makes this and all later documents begin with a vocabulary that is shared, and their headers refer to
    /// it: that costs a document nothing for its entries. Between documents, else InvalidAccessException. The
    /// tables keep their kind, with the limits of VOC_HASH.
    void useVocabulary(const std::shared_ptr<const SharedVocabulary>& pVocabulary);

    /// The document's properties, for the header; before the root element, in the strict mode only.
    void additionalData(const std::string& id, std::span<const std::byte> data) override;
    void characterEncodingScheme(const std::string& scheme) override;
    void standalone(bool isStandalone) override;
    void version(const std::string& version) override;

    /// Whether documents are written by the letter of ITU-T X.891 (docs/conformance.md), and events that make
    /// no document are refused. False at first; to be set between documents, else InvalidAccessException.
    ///
    /// A refused event throws FISEncodingException, which names it, before anything of it is written, and may
    /// be left out. What stands before the root element is held back until that begins. A document that
    /// begins behind another one begins as after reset().
    void setStrict(bool flag);
    bool isStrict() const noexcept;

    /// Writes text as character data.
    void characters(const std::string& text);

    void characters(std::string_view text);
    void characters(const char* text) { characters(std::string_view(text)); }

    /// Writes text in the restricted alphabet with an index: 1 numeric, 2 date and time, from 16 on those of
    /// the vocabulary. A character that it does not have throws FISEncodingException, as does an index
    /// without alphabet; in another mode than the strict one InvalidAccessException.
    void characters(std::string_view text, unsigned int alphabet);

    /// Writes a comment.
    void comment(std::string_view text);

    /// Typed data, octets or an array at a time; an empty one is left out.
    void binaryData(std::span<const std::byte> octets);
    void encodedData(std::span<const Int16> values) { insertValues(values); }
    void encodedData(std::span<const Int32> values) { insertValues(values); }
    void encodedData(std::span<const Int64> values) { insertValues(values); }
    void encodedData(std::span<const float> values) { insertValues(values); }
    void encodedData(std::span<const double> values) { insertValues(values); }
    void encodedData(std::span<const UUID> values) { insertValues(values); }

    // Calls without ceremony. A name is as in XML text: its prefix, or none for an element, stands for the
    // namespace name that startPrefixMapping() has bound to it. A prefix that is bound to none throws
    // FISEncodingException, as do attributes "xmlns" and "xmlns:...": declarations are no attributes.

    /// Starts an element: `startElement("item", {{"id", id}, {"unit", "kg"}})`.
    void startElement(std::string_view name, std::initializer_list<NameAndValue> attributes = {});

    /// Ends the innermost element, whatever its name.
    void endElement();

    /// An element without content.
    void element(std::string_view name, std::initializer_list<NameAndValue> attributes = {});

    /// An element with a value, which is written as by text(). A value that is refused leaves it started.
    template<class T>
    void element(std::string_view name, const T& value) {
        element(name, {}, value);
    }
    template<class T>
    void element(std::string_view name, std::initializer_list<NameAndValue> attributes, const T& value) {
        startElement(name, attributes);
        text(value);
        endElement();
    }

    /// Writes what is text as characters(), octets as binaryData(), and numbers, booleans, UUIDs and
    /// contiguous ranges of them (std::vector, std::span) as encodedData(): the type decides, and nothing is
    /// turned from one into the other. What is empty is left out.
    template<class T>
    void text(const T& value) {
        static_assert(!std::same_as<T, std::nullptr_t>, "A null pointer is no text");
        if constexpr (std::convertible_to<const T&, std::string_view>) {
            if (const std::string_view octets = value; !octets.empty()) {
                characters(octets);
            }
        } else if constexpr (std::convertible_to<const T&, std::span<const std::byte>>) {
            binaryData(std::span<const std::byte>(value));
        } else if constexpr (std::same_as<T, std::vector<bool>>) {
            for (const bool flag : value) {
                encodedData(flag);
            }
        } else if constexpr (std::is_array_v<T>) {
            encodedData(std::span<const std::remove_extent_t<T>>(value));
        } else {
            encodedData(value);
        }
    }

    /// A document for as long as a scope: startDocument() where it begins and endDocument() where it ends,
    /// which may throw, unless the scope is left by an exception: what was written is to be thrown away then.
    /// What is returned from within the scope may be made before the end is written.
    /// The writer is borrowed.
    class TAMO_API Document {
    public:
        explicit Document(FastInfosetWriter& writer);
        Document(const Document&) = delete;
        Document& operator=(const Document&) = delete;
        ~Document() noexcept(false);

    private:
        FastInfosetWriter& _writer;
        int _exceptions; // on their way when the scope began
    };

    /// An element without attributes.
    void startElement(const std::string& uri, const std::string& localName, const std::string& qname);

    /// An element without content.
    void emptyElement(const std::string& uri, const std::string& localName, const std::string& qname);
    void emptyElement(const std::string& uri, const std::string& localName, const std::string& qname,
                      const XML::Attributes& attributes);

    /// An element with text and up to three attributes; an attribute without name is left out.
    void dataElement(const std::string& uri, const std::string& localName, const std::string& qname,
                     const std::string& data, const std::string& attr1 = std::string(),
                     const std::string& value1 = std::string(), const std::string& attr2 = std::string(),
                     const std::string& value2 = std::string(), const std::string& attr3 = std::string(),
                     const std::string& value3 = std::string());

    /// Throw FISException: whole documents only.
    void startFragment();
    void endFragment();

    /// The length in octets up to which strings are added to their tables (16); negative: all strings.
    void setMaxIndexedStringLength(int length);

    /// Adds typed data, merged into the value before it when that is of the same kind. In the strict mode a
    /// value of an application's algorithm is written with the index of the URI under which that is
    /// registered.
    void insertEncoding(const AutoPtr<Encoding>& encoding);

    /// Writes a value as a chunk of its own, by the algorithm that the document declares by a URI; and the
    /// same with what is registered in encodingAlgorithms() for text. In the strict mode, else
    /// InvalidAccessException; a URI that is not declared, and text that cannot be encoded, throw
    /// FISEncodingException.
    void insertEncoding(const std::string& uri, const AutoPtr<Encoding>& encoding);
    void encodedText(const std::string& uri, const std::string& text);

    /// The table of algorithms, to which an application adds its own. The header of the strict mode declares
    /// those that have a URI.
    EncodingAlgorithm& encodingAlgorithms();

private:
    struct Engine;

    template<class T>
    void insertValues(std::span<const T> values) {
        for (const T& value : values) {
            encodedData(value);
        }
    }
    template<class E, class T>
    void insertValue(const T& value);
    StrictEvents& strictEvents(const char* what);
    XML::AttributesImpl& givenAttributes() noexcept;
    const std::string& namespaceBoundTo(std::string_view prefix) const;

    std::unique_ptr<Engine> _pEngine;
};

} // namespace Tamo::FastInfoset

#endif
