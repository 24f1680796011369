#ifndef TAMO_FASTINFOSET_ITEMSCANNER_H
#define TAMO_FASTINFOSET_ITEMSCANNER_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// Finds where the items of a document end: its header, each child and each end (ITU-T X.891, annex C). It
/// knows the forms and their lengths; no tables and no values.
///
/// The octets come in any pieces: what is still expected of an item is kept, so that none is looked at again,
/// and a string of n octets that are not there yet is n octets to pass over. What starts no form is REFUSED.
/// Whoever reads the octets up to there meets the same fault; it may meet others before, which are none of
/// the forms. A plain value.
class ItemScanner {
public:
    /// Why a scan ended.
    enum class Stand {
        NEEDS_MORE,   ///< there are no more octets
        ITEM_END,     ///< an item is whole
        DOCUMENT_END, ///< the document is
        REFUSED,      ///< what is there is no document
        TOO_LARGE     ///< an item is larger than it may be, or is going to be
    };

    /// How far a scan goes.
    enum class Extent { ITEM, ALL };

    /// Begins a document. The octets of an item, and of a string as far as a reader takes it, are limited.
    void begin(bool strict, UInt64 maxStringLength, UInt64 maxItemSize) noexcept;

    /// Looks at octets that follow those of the scan before, up to the end of an item or as far as they go.
    /// None may follow another stand than NEEDS_MORE and ITEM_END.
    Stand scan(const unsigned char* pOctets, std::size_t size, Extent extent) noexcept;

    /// Of the last scan: the octets that whole items have taken, with those of what is refused.
    std::size_t whole() const noexcept { return static_cast<std::size_t>(_pWhole - _pOctets); }

    /// The steps that all scans together have taken: one for each octet that was looked at, and for each
    /// string that was passed over, or for each of its octets.
    UInt64 steps() const noexcept { return _steps; }

private:
    // What the next octet is.
    enum class Step : unsigned char {
        // Behind an item.
        CHILD, // or an end
        DTD_ITEM,
        // Within one.
        IDENTIFICATION, // of the document, or the XML declaration
        DECLARATION,
        START,
        VERSION,
        PARTS,
        NEXT_PART, // of the header; takes no octet
        TABLES,
        COUNT,
        COUNT_REST,
        LITERAL,
        ENCODED,
        ENCODED_INDEX,
        SURROGATE,
        SURROGATE_PART,
        NOTATION,
        ENTITY,
        DTD_START,
        ELEMENT_NAME, // behind namespace attributes
        NAMESPACE_ATTRIBUTE,
        ATTRIBUTE,
        VALUE,
        DATA, // of an instruction, or a comment
        STANDALONE,
        PROPERTY,    // of the document: the version
        IDENTIFYING, // the first of _strings
        LENGTH_AT_4,
        LENGTH_AT_6,
        LENGTH_REST
    };

    Stand run(Extent extent) noexcept;
    void passCommonItems() noexcept;
    Stand stop(Stand stand) noexcept;
    bool look(unsigned int b) noexcept;
    bool lookAtHeader(unsigned int b) noexcept;
    bool lookAtWord() noexcept;
    bool lookAtTableEntry(unsigned int b) noexcept;
    void takePart() noexcept;
    void takeTable(unsigned int flag) noexcept;
    void table(Step entry, unsigned int itemsOfEntry) noexcept;
    bool child(unsigned int b) noexcept;
    bool elementName(unsigned int b) noexcept;
    bool instruction() noexcept;
    bool declarationItem(unsigned int b) noexcept;
    bool terminator(unsigned int b) noexcept;
    bool other(unsigned int b) noexcept;
    void strings(unsigned int count, Step next) noexcept;
    void skip(UInt64 octets) noexcept;
    void endString() noexcept;
    bool index(unsigned int octets) noexcept;
    bool indexAtPosition1(unsigned int b) noexcept;
    bool length(unsigned int bits, unsigned int half) noexcept;
    bool string(UInt64 size) noexcept;
    bool refuse(Stand stand = Stand::REFUSED) noexcept;
    UInt64 size() const noexcept { return _sizeBefore + static_cast<UInt64>(_p - _pItem); }

    // Of the scan.
    const unsigned char* _pOctets = nullptr;
    const unsigned char* _p = nullptr;
    const unsigned char* _pEnd = nullptr;
    const unsigned char* _pItem = nullptr;
    const unsigned char* _pWhole = nullptr;

    // Of the item.
    UInt64 _sizeBefore = 0; // of the item in the scans before
    UInt64 _skip = 0;       // octets of no interest
    Step _step = Step::IDENTIFICATION;
    Step _next = Step::IDENTIFICATION; // behind the strings
    Stand _refusal = Stand::REFUSED;
    bool _hasAttributes = false;
    unsigned int _strings = 0; // identifying ones that are to come
    unsigned int _have = 0;    // octets of _value
    Step _entry = Step::LITERAL;
    unsigned int _itemsOfEntry = 1;
    unsigned int _count = 0;   // strings of a table, or names, that are to come
    unsigned int _indexes = 0; // of a name surrogate
    unsigned int _parts = 0;   // of the header
    unsigned int _tables = 0;  // of the initial vocabulary
    UInt64 _value = 0;
    UInt64 _lengthBefore = 0; // what the first octet of a length is worth

    // Of the document.
    UInt64 _depth = 0;
    bool _inDTD = false;
    bool _strict = false;
    UInt64 _maxStringLength = 0;
    UInt64 _maxItemSize = 0;

    UInt64 _steps = 0;
};

} // namespace Tamo::FastInfoset

#endif
