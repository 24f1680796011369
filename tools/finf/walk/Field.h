#ifndef TAMO_FINF_FIELD_H
#define TAMO_FINF_FIELD_H

#include "Tamo/FastInfoset/DocumentVocabulary.h"
#include "Tamo/Types.h"
#include <string>
#include <string_view>
#include <vector>

namespace finf {

/// What a field of a document is, in the terms of ITU-T X.891.
enum class Construct {
    XML_DECLARATION,
    IDENTIFICATION,
    VERSION_NUMBER,
    OPTIONAL_COMPONENTS,
    NUMBER_OF_ITEMS,
    ADDITIONAL_DATUM_ID,
    ADDITIONAL_DATUM,
    INITIAL_VOCABULARY,
    EXTERNAL_VOCABULARY,
    RESTRICTED_ALPHABET,
    ENCODING_ALGORITHM,
    TABLE_ENTRY,
    NAME_SURROGATE,
    NOTATION,
    NOTATIONS_END,
    UNPARSED_ENTITY,
    UNPARSED_ENTITIES_END,
    CHARACTER_ENCODING_SCHEME,
    STANDALONE,
    VERSION,
    CHILD_OR_END, ///< what cannot be told apart
    ELEMENT,
    ELEMENT_END,
    NAMESPACE_ATTRIBUTE,
    NAMESPACE_ATTRIBUTES_END,
    ATTRIBUTE,
    ATTRIBUTE_VALUE,
    ATTRIBUTES_END,
    QUALIFIED_NAME,
    PREFIX,
    NAMESPACE_NAME,
    LOCAL_NAME,
    CHARACTER_CHUNK,
    COMMENT,
    PROCESSING_INSTRUCTION,
    TARGET,
    CONTENT,
    UNEXPANDED_ENTITY_REFERENCE,
    DOCUMENT_TYPE_DECLARATION,
    DOCUMENT_TYPE_DECLARATION_END,
    NAME,
    SYSTEM_IDENTIFIER,
    PUBLIC_IDENTIFIER,
    NOTATION_NAME,
    DOCUMENT_END,
    TRAILING_OCTETS
};

/// The construct as text, such as "character chunk".
const char* nameOf(Construct construct);

/// What bits are spent on.
enum class BitKind { STRUCTURE, PADDING, LENGTH, INDEX, NAME, STRING, TYPED, TRAILING };
constexpr std::size_t BIT_KINDS = 8;

/// Adjacent bits of a field that serve one purpose.
struct FieldPart {
    /// The bits are free to have any value.
    static constexpr Tamo::Int64 ANY = -1;

    BitKind kind;
    Tamo::UInt64 bits;
    Tamo::Int64 expected = ANY; ///< what X.891 prescribes for the bits, of which there are at most 32 then
};

/// What a field does with a vocabulary table.
enum class TableUse { NONE, READ, ADDED, NOT_ADDED };

/// One construct of a document as it stands in the octets. The views are valid during
/// FieldVisitor::field only.
struct Field {
    using Table = Tamo::FastInfoset::DocumentVocabulary::ID;
    using Form = Tamo::FastInfoset::DocumentVocabulary::CharacterStringForm;

    Construct construct = Construct::IDENTIFICATION;
    std::size_t depth = 0;        ///< how deep the construct is nested
    Tamo::UInt64 bit = 0;         ///< where it begins, in bits from the start of the source
    Tamo::UInt64 bits = 0;        ///< how many bits it takes; 0 for an entry that the fields before it imply
    std::string_view octets;      ///< the octets that hold its bits, or as many of them as are at hand
    std::vector<FieldPart> parts; ///< its bits from first to last, by purpose

    std::string note;       ///< what its bits say, where they carry no value
    bool hasValue = false;  ///< it stands for a string, a name or typed values, which are:
    std::string_view value; ///< UTF-8 text
    bool isCut = false;     ///< the value is the beginning of what a large array stands for

    bool isEncoded = false; ///< an encoded character string, in this form:
    Form form = Form::UTF8;
    unsigned int formIndex = 0; ///< of the restricted alphabet or encoding algorithm
    std::string_view algorithm; ///< the URI that the document declares for the encoding algorithm

    TableUse use = TableUse::NONE;
    Table table = Table::PREFIX; ///< the table that is used
    unsigned int index = 0;      ///< the entry that is read or added

    /// The form of an encoded character string as text, such as "encoding algorithm 4 (int)".
    std::string encodingName() const;

    /// Where it is, or a part of it: "offset 0x1f, bit 4, in attribute value".
    std::string place(Tamo::UInt64 partBit = 0) const;

    /// The values of the bits from first on, at most 64, counted from the field's beginning.
    Tamo::UInt64 valueOf(Tamo::UInt64 first, Tamo::UInt64 count) const;
};

/// The table as text, as X.891 writes it: "LOCAL NAME".
const char* nameOf(Field::Table table);

} // namespace finf

#endif
