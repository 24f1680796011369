#ifndef TAMO_FASTINFOSET_FORMS_H
#define TAMO_FASTINFOSET_FORMS_H

#include "Tamo/Types.h"
#include <cstddef>

namespace Tamo::FastInfoset {

/// The forms of integers and lengths, and the bits by which constructs are known (ITU-T X.891, annex C): what
/// both directions have to agree upon. Constants, which any thread may use.
///
/// An integer or a length begins within an octet, behind the bits of its construct. Its first octet says how
/// many octets follow: by its MARK bits, or because none of them is set.
struct Forms {
    Forms() = delete;

    /// The largest integer: 2^20, as many entries as a table can have.
    static constexpr unsigned int MOST_INTEGER = 1048576;

    /// An integer from 1 on at bit position 2 (X.891, C.27), of up to 6 bits, 3 and 8, 3 and 16, or 20.
    struct IntegerAt2 {
        static constexpr unsigned int BITS = 0x3F;
        static constexpr unsigned int IN_ONE = 32; ///< the largest in the first octet
        static constexpr unsigned int MARK_TWO = 0x20;
        static constexpr unsigned int HIGH_TWO = 0x07; ///< the bits of the first octet that are part of it
        static constexpr unsigned int IN_TWO = 2080;
        static constexpr unsigned int MARK_THREE = 0x28;
        static constexpr unsigned int HIGH_THREE = 0x07;
        static constexpr unsigned int IN_THREE = 526368;
        static constexpr unsigned int MARK_FOUR = 0x30;
        static constexpr unsigned int END_THREE = MARK_FOUR; ///< the first octet of what is no such form
    };

    /// An integer from 1 on at bit position 3 (X.891, C.28), of up to 5 bits, 2 and 8, 2 and 16, or 20.
    struct IntegerAt3 {
        static constexpr unsigned int BITS = 0x1F;
        static constexpr unsigned int IN_ONE = 16;
        static constexpr unsigned int MARK_TWO = 0x10;
        static constexpr unsigned int HIGH_TWO = 0x03;
        static constexpr unsigned int IN_TWO = 1040;
        static constexpr unsigned int MARK_THREE = 0x14;
        static constexpr unsigned int HIGH_THREE = 0x03;
        static constexpr unsigned int IN_THREE = 263184;
        static constexpr unsigned int MARK_FOUR = 0x18;
        static constexpr unsigned int END_THREE = MARK_FOUR;
    };

    /// An integer from 0 on at bit position 1 (X.891, C.25 and C.26), of up to 7 bits, 5 and 8, or 4 and 16.
    struct IntegerAt1 {
        static constexpr unsigned int BITS = 0x7F;
        static constexpr unsigned int ZERO = 0x7F;
        static constexpr unsigned int IN_ONE = 64;
        static constexpr unsigned int MARK_TWO = 0x40;
        static constexpr unsigned int HIGH_TWO = 0x1F;
        static constexpr unsigned int IN_TWO = 8256;
        static constexpr unsigned int MARK_THREE = 0x60;
        static constexpr unsigned int HIGH_THREE = 0x0F;
        static constexpr unsigned int IN_THREE = MOST_INTEGER;
        static constexpr unsigned int END_THREE = 0x6F; ///< short of what may lie beyond MOST_INTEGER
    };

    /// A length, from 1 on, in octets. In the first octet alone, with one behind it, or with four.
    template<unsigned int POSITION_BITS, unsigned int MOST_IN_FIRST>
    struct Length {
        static constexpr unsigned int BITS = POSITION_BITS;
        static constexpr std::size_t IN_ONE = MOST_IN_FIRST;
        static constexpr unsigned int MARK_TWO = MOST_IN_FIRST;
        static constexpr std::size_t IN_TWO = IN_ONE + 256;
        static constexpr unsigned int MARK_FIVE = MOST_IN_FIRST + MOST_IN_FIRST / 2;
        static constexpr UInt64 MOST = UInt64{IN_TWO} + 0x100000000;
    };

    using LengthAt1 = Length<0x7F, 64>; ///< of an identifying string (X.891, C.22)
    using LengthAt4 = Length<0x0F, 8>;  ///< of an attribute value and the like (X.891, C.23)
    using LengthAt6 = Length<0x03, 2>;  ///< of a character chunk (X.891, C.24)

    /// A count of items (X.891, C.21).
    static constexpr unsigned int COUNT_IN_ONE = 128;

    /// Four bits 1111 end a list, an element and the document.
    static constexpr unsigned int TERMINATOR = 0x0F;
    static constexpr unsigned int TERMINATOR_FIRST = 0xF0; ///< in the first half of an octet
    static constexpr unsigned int TERMINATOR_TWICE = 0xFF;

    /// Children of the document and of elements by their first octet (X.891, C.2.11 and C.3.7).
    static constexpr unsigned int ELEMENT_END = 0x80; ///< below: an element
    static constexpr unsigned int HAS_ATTRIBUTES = 0x40;
    static constexpr unsigned int NAMESPACE_ATTRIBUTES = 0x38; ///< in six bits: declarations precede the name
    static constexpr unsigned int ELEMENT_NAME = 0x3C; ///< the name in full, with two bits of Presence
    static constexpr unsigned int CHARACTERS = 0x80;
    static constexpr unsigned int CHARACTERS_END = 0xC0; ///< from CHARACTERS to below: a character chunk
    static constexpr unsigned int CHARACTERS_INDEX = 0x20;
    static constexpr unsigned int DOCTYPE = 0xC4;
    static constexpr unsigned int ENTITY_REFERENCE = 0xC8;
    static constexpr unsigned int DECLARATION_BITS = 0xFC; ///< those that tell the last two
    static constexpr unsigned int PROCESSING_INSTRUCTION = 0xE1;
    static constexpr unsigned int COMMENT = 0xE2;

    static constexpr unsigned int CHARACTERS_ADDED = 0x10; ///< the literal is entered in its table
    static constexpr unsigned int CHARACTERS_FORM =
        0x0C; ///< the bits of DocumentVocabulary::CharacterStringForm

    /// Of strings on an octet boundary (X.891, C.13 and C.14).
    static constexpr unsigned int STRING_INDEX = 0x80; ///< not set: a literal
    static constexpr unsigned int STRING_ADDED = 0x40;
    static constexpr unsigned int STRING_FORM = 0x30;

    /// Of an attribute (X.891, C.4).
    static constexpr unsigned int ATTRIBUTE_NAME = 0x78; ///< the name in full, with two bits of presence
    static constexpr unsigned int ATTRIBUTE_NAME_PADDING = 0x04;
    static constexpr unsigned int NAMESPACE_ATTRIBUTE = 0xCC; ///< a declaration (X.891, C.12), the same

    /// Which parts of a name or a declaration there are.
    static constexpr unsigned int HAS_PREFIX = 0x02;
    static constexpr unsigned int HAS_NAMESPACE = 0x01;

    /// Of the header (X.891, C.2).
    static constexpr unsigned int NOTATION = 0x30;        ///< in six bits
    static constexpr unsigned int UNPARSED_ENTITY = 0x68; ///< in seven bits

    /// An index stands in place of a string (X.891, C.13 and C.14).
    static constexpr unsigned int INDEX = 0x80;
};

} // namespace Tamo::FastInfoset

#endif
