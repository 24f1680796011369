#ifndef TAMO_FASTINFOSET_FASTINFOSETREADER_H
#define TAMO_FASTINFOSET_FASTINFOSETREADER_H

#include "Tamo/Export.h"
#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/FastInfoset/Notation.h"
#include "Tamo/FastInfoset/ParserLimits.h"
#include "Tamo/FastInfoset/SharedVocabulary.h"
#include "Tamo/FastInfoset/UnparsedEntity.h"
#include "Tamo/FastInfoset/detail/OpenVocabulary.h"
#include "Tamo/Types.h"
#include "Tamo/UUID.h"
#include "Tamo/XML/Attributes.h"
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

class BitStreamReader;
class DocumentParser;
class TypedAttributes;
class VocabularyLoader;

/// Reads a Fast Infoset document (ITU-T X.891) as a cursor that the program moves: for those who would rather
/// ask for the next event than be called with it.
///
/// Open a document, then call next() until it returns END_DOCUMENT. The source is borrowed and read as the
/// cursor moves on: memory is bounded by the tables, the depth and the largest single item, not by the
/// document. All views (names, attributes, text, values) belong to the reader and are valid until the next
/// call of next() or open(). Text is reported as the document carries it, so a run of text can take several
/// TEXT events, and an array of no values takes none.
///
/// A reader reads any number of documents, one at a time, also after an exception, and is used by one thread
/// at a time. Documents are read by the letter of X.891 unless setStrict(false) asks for the default of
/// FastInfosetParser.
///
/// Whatever a document can cause is a FISException, which says at which octet; where FastInfosetParser throws
/// std::out_of_range, AssertionViolationException or PoolOverflowException it has their message, as it has
/// that of what keeps a named vocabulary from being opened without a loader. Beside it there are IOException
/// for a failing stream, what the loader and the algorithms of the application throw (unless it is one of
/// those), and std::bad_alloc. After an exception, and before open(), next() throws InvalidAccessException.
class TAMO_API FastInfosetReader {
public:
    /// What the cursor stands on.
    enum class Event {
        NO_DOCUMENT,            ///< none is open, or next() was not called yet
        START_DOCUMENT,         ///< the header is read: notations(), unparsedEntities(), vocabulary()
        START_DTD,              ///< publicId(), systemId()
        END_DTD,                ///< behind the processing instructions of the document type declaration
        START_ELEMENT,          ///< uri(), localName(), qname(), attributes(), prefixMappings()
        END_ELEMENT,            ///< uri(), localName(), qname()
        TEXT,                   ///< text(), isCData(), valueType() and the values
        COMMENT,                ///< text()
        PROCESSING_INSTRUCTION, ///< target(), text()
        END_DOCUMENT,           ///< next() stays here
        ENTITY_REFERENCE ///< target(): the name of an entity that is not expanded; strict reading alone
    };

    /// The same without the name of the type. (Not `using enum`, which ends g++ 12 with an internal error
    /// where a template of the application uses them.)
    /// @{
    static constexpr Event NO_DOCUMENT = Event::NO_DOCUMENT;
    static constexpr Event START_DOCUMENT = Event::START_DOCUMENT;
    static constexpr Event START_DTD = Event::START_DTD;
    static constexpr Event END_DTD = Event::END_DTD;
    static constexpr Event START_ELEMENT = Event::START_ELEMENT;
    static constexpr Event END_ELEMENT = Event::END_ELEMENT;
    static constexpr Event TEXT = Event::TEXT;
    static constexpr Event COMMENT = Event::COMMENT;
    static constexpr Event PROCESSING_INSTRUCTION = Event::PROCESSING_INSTRUCTION;
    static constexpr Event END_DOCUMENT = Event::END_DOCUMENT;
    static constexpr Event ENTITY_REFERENCE = Event::ENTITY_REFERENCE;
    /// @}

    /// A piece of additional data (X.891, 7.2.7).
    struct AdditionalDatum {
        std::string id; ///< the URI that says what it is
        std::vector<std::byte> octets;
    };

    /// How a TEXT event is carried.
    enum class ValueType { PLAIN_TEXT, OCTETS, INT16, INT32, INT64, BOOLEAN, FLOAT, DOUBLE, UNIQUE_ID };

    /// The same without the name of the type.
    /// @{
    static constexpr ValueType PLAIN_TEXT = ValueType::PLAIN_TEXT;
    static constexpr ValueType OCTETS = ValueType::OCTETS;
    static constexpr ValueType INT16 = ValueType::INT16;
    static constexpr ValueType INT32 = ValueType::INT32;
    static constexpr ValueType INT64 = ValueType::INT64;
    static constexpr ValueType BOOLEAN = ValueType::BOOLEAN;
    static constexpr ValueType FLOAT = ValueType::FLOAT;
    static constexpr ValueType DOUBLE = ValueType::DOUBLE;
    static constexpr ValueType UNIQUE_ID = ValueType::UNIQUE_ID;
    /// @}

    /// A namespace declaration; an empty URI undeclares the prefix.
    struct PrefixMapping {
        std::string_view prefix;
        std::string_view uri;
    };

    /// A reader with tables of its own. The external vocabularies that documents name are opened.
    FastInfosetReader() : FastInfosetReader(Opening{&openVocabularyOrRefuse}) {}

    /// The same over a copy of a prepared vocabulary.
    explicit FastInfosetReader(const DocumentVocabulary& vocabulary)
        : FastInfosetReader(vocabulary, Opening{&openVocabularyOrRefuse}) {}

    /// Readers that open nothing: external vocabularies come from the loader, which is borrowed, or are
    /// refused with FISException where it is null. A program with no other readers does not need Expat.
    explicit FastInfosetReader(VocabularyLoader* pLoader);
    FastInfosetReader(const DocumentVocabulary& vocabulary, VocabularyLoader* pLoader);

    FastInfosetReader(const FastInfosetReader&) = delete;
    FastInfosetReader& operator=(const FastInfosetReader&) = delete;
    ~FastInfosetReader();

    /// Starts a document in a byte stream, which may be read further than the document goes unless it is read
    /// live (setLive).
    void open(std::istream& stream);

    /// Waits for the first octet of the next document of a stream and starts it, live (setLive) whatever
    /// isLive() says. False, and no document is open, when the stream has ended before that octet.
    bool openNext(std::istream& stream);

    /// Starts a document in memory, which is read in place.
    void open(std::span<const std::byte> octets);
    void open(std::string_view octets);
    /// Octets without a length are no document.
    void open(const char*) = delete;

    /// Moves to the next event and returns it.
    Event next();

    /// Where the cursor stands.
    Event event() const noexcept;

    /// The elements that are open: at START_ELEMENT with, at END_ELEMENT without the element itself.
    std::size_t depth() const noexcept;

    /// At START_ELEMENT: moves to the END_ELEMENT of the element, over all that is in it.
    void skipElement();

    /// At START_ELEMENT: moves to the END_ELEMENT of the element and returns the text of it and of the
    /// elements in it, typed data in text form.
    std::string elementText();

    /// The element's name; the qualified name is empty when the document gives no prefix.
    std::string_view uri() const noexcept;
    std::string_view localName() const noexcept;
    std::string_view qname() const noexcept;

    /// The element's attributes, without the namespace declarations.
    const XML::Attributes& attributes() const noexcept;

    /// The value of the element's attribute with this name; none when there is no such attribute. The same as
    /// attributes().find().
    std::optional<std::string_view> attribute(std::string_view localName, std::string_view uri = {}) const;

    /// How the document carries the value of the element's attribute i, PLAIN_TEXT too for a value of an
    /// application's class, and its values, empty unless it is of that type; attributes() has the text, made
    /// on the first call. An i outside of attributes() throws AssertionViolationException.
    ValueType attributeValueType(int i) const;
    std::span<const std::byte> attributeOctets(int i) const;
    std::span<const Int16> attributeInt16Values(int i) const;
    std::span<const Int32> attributeInt32Values(int i) const;
    std::span<const Int64> attributeInt64Values(int i) const;
    std::span<const float> attributeFloatValues(int i) const;
    std::span<const double> attributeDoubleValues(int i) const;
    std::span<const UUID> attributeUUIDValues(int i) const;
    const std::vector<bool>& attributeBoolValues(int i) const;

    /// The element's attributes with what else is known of their values, null where all are text.
    const TypedAttributes* typedAttributes() const noexcept;

    /// The namespace declarations of the element.
    std::span<const PrefixMapping> prefixMappings() const noexcept;

    /// The text of character data, a comment or a processing instruction; of typed data its text form, built
    /// on the first call.
    std::string_view text() const;

    /// Whether the text is a CDATA section.
    bool isCData() const noexcept;

    /// The target of the processing instruction, or the name of the entity.
    std::string_view target() const noexcept;

    /// The identifiers of the document type declaration; empty when absent.
    std::string_view publicId() const noexcept;
    std::string_view systemId() const noexcept;

    /// What the values are; an application's own encoding may deliver several kinds, and then this is the
    /// first.
    ValueType valueType() const noexcept;

    /// The index of the algorithm by which the document carries typed data, 0 for plain text, and the URI
    /// that it declares for it, empty for a built-in one; strict reading alone.
    unsigned int algorithm() const noexcept;
    std::string_view algorithmURI() const noexcept;

    /// The values of typed data; empty unless the text is of that type.
    std::span<const std::byte> octets() const noexcept;
    std::span<const Int16> int16Values() const noexcept;
    std::span<const Int32> int32Values() const noexcept;
    std::span<const Int64> int64Values() const noexcept;
    std::span<const float> floatValues() const noexcept;
    std::span<const double> doubleValues() const noexcept;
    std::span<const UUID> uuidValues() const noexcept;
    const std::vector<bool>& boolValues() const noexcept;

    /// What the header declares.
    const std::vector<Notation>& notations() const noexcept;
    const std::vector<UnparsedEntity>& unparsedEntities() const noexcept;

    /// Whether the document begins with an XML declaration.
    bool hasXMLDeclaration() const noexcept;

    /// What the header says of the XML document that this one stands for (X.891, 7.2.19 to 7.2.21), none
    /// where it is silent, and its additional data; strict reading alone.
    const std::optional<std::string>& characterEncodingScheme() const noexcept;
    std::optional<bool> standalone() const noexcept;
    const std::optional<std::string>& version() const noexcept;
    const std::vector<AdditionalDatum>& additionalData() const noexcept;

    /// The octet of the document, counted from 0, at which the construct begins that the cursor stands on, or
    /// that could not be read when next() has thrown; 0 for all of the header.
    UInt64 position() const noexcept;

    /// At END_DOCUMENT: the octets of the document, which is where the next may begin.
    UInt64 documentSize() const noexcept;

    /// Whether documents are read by the letter of X.891, see FastInfosetParser::setStrict; true at first. A
    /// document that has begun is not concerned.
    void setStrict(bool flag) noexcept;
    bool isStrict() const noexcept;

    /// Whether open() reads a stream live, see FastInfosetParser::setLive; false at first. At each event the
    /// stream stands behind the last octet that has been read for it.
    void setLive(bool flag) noexcept;
    bool isLive() const noexcept;

    /// The vocabulary as the document has left it so far.
    const DocumentVocabulary& vocabulary() const noexcept;

    /// Gives the reader a vocabulary that is shared: documents that name its URI begin with it, which costs
    /// nothing for its entries. Several can be given, a later one in place of one with its URI; they come
    /// before what the loader yields. To be set between documents.
    void useVocabulary(std::shared_ptr<const SharedVocabulary> pVocabulary);

    /// What yields external vocabularies, see FastInfosetParser; borrowed.
    void setExternalVocabularyLoader(VocabularyLoader* pLoader);

    /// What is accepted of a document; to be set before open(). Typed values are not counted as delivered
    /// octets.
    void setLimits(const ParserLimits& limits);

    /// The table of algorithms, to which an application adds its own.
    DecodingAlgorithm& decodingAlgorithms();

private:
    class Cursor;

    void start(std::unique_ptr<BitStreamReader> pInput);
    void read(BitStreamReader& input, bool isBeginning);
    [[noreturn]] void rethrowAsOne() const;
    void requireElement() const;
    const TypedAttributes* typedAttribute(int i) const;

    // What opens vocabularies, as in FastInfosetParser.
    struct Opening {
        DocumentVocabulary (*open)(const std::string& uri, bool strict);
    };

    explicit FastInfosetReader(Opening opening);
    FastInfosetReader(const DocumentVocabulary& vocabulary, Opening opening);

    std::unique_ptr<DocumentParser> _pParser;
    std::unique_ptr<Cursor> _pCursor;
    std::unique_ptr<BitStreamReader> _pInput; // null while no document is open
    UInt64 _failedAt = 0;
    bool _isLive = false;
};

} // namespace Tamo::FastInfoset

#endif
