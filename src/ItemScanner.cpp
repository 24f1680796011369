#include "ItemScanner.h"
#include "Forms.h"
#include "Tamo/FastInfoset/Encoder.h"
#include <algorithm>
#include <bit>

namespace Tamo::FastInfoset {

namespace {

// How many octets follow the first one of an integer, by its bits in that.
template<class Form>
TAMO_ALWAYS_INLINE unsigned int following(unsigned int bits) {
    return bits < Form::IN_ONE ? 0 : bits < Form::MARK_THREE ? 1 : bits < Form::MARK_FOUR ? 2 : 3;
}

constexpr unsigned int LONGEST_XML_DECLARATION = 56;

// An item of a usual form among octets that are there.
class CommonItem {
public:
    // What the lengths that are read here can express.
    static constexpr UInt64 LONGEST_STRING = Forms::LengthAt1::IN_TWO;

    TAMO_ALWAYS_INLINE CommonItem(const unsigned char* p, const unsigned char* pEnd, bool strict) noexcept
        : _p(p), _pEnd(pEnd), _strict(strict) {}

    TAMO_ALWAYS_INLINE const unsigned char* end() const noexcept { return _p; }

    // Goes behind the next item; false when it is not usual, not there, or the last one, and the place is
    // meaningless then, as is the depth.
    TAMO_ALWAYS_INLINE bool pass(UInt64& depth) noexcept {
        if (!areEnough()) {
            return false;
        }
        const unsigned int b = *_p;
        if (b < Forms::ELEMENT_END) {
            ++depth;
            return passName<Forms::IntegerAt2>(b, Forms::ELEMENT_NAME) &&
                   ((b & Forms::HAS_ATTRIBUTES) == 0 || passAttributes(depth));
        }
        if (b < Forms::CHARACTERS_END) {
            if (b & Forms::CHARACTERS_INDEX) {
                return passIndex<Forms::IntegerAt3>(b);
            }
            return (b & 0x08) == 0 && passString<Forms::LengthAt6>(b);
        }
        return b >= Forms::TERMINATOR_FIRST && depth-- > 0 && passEnd(b, depth);
    }

private:
    static constexpr std::ptrdiff_t ENOUGH = 6;

    TAMO_ALWAYS_INLINE bool areEnough() const noexcept { return _pEnd - _p >= ENOUGH; }

    template<class Form>
    TAMO_ALWAYS_INLINE bool passIndex(unsigned int b) noexcept {
        const unsigned int bits = b & Form::BITS;
        _p += bits < Form::IN_ONE ? 1 : bits < Form::MARK_THREE ? 2 : 3;
        return bits < Form::END_THREE;
    }

    template<class Form>
    TAMO_ALWAYS_INLINE bool passString(unsigned int b) noexcept {
        const unsigned int bits = b & Form::BITS;
        const std::size_t size = bits < Form::IN_ONE ? bits + 2 : std::size_t{_p[1]} + Form::IN_ONE + 3;
        if (bits > Form::MARK_TWO || static_cast<std::size_t>(_pEnd - _p) < size) {
            return false;
        }
        _p += size;
        return true;
    }

    // By its index or in full.
    template<class Form>
    TAMO_ALWAYS_INLINE bool passName(unsigned int b, unsigned int literal) noexcept {
        if ((b & literal) != literal) {
            return passIndex<Form>(b);
        }
        ++_p;
        for (unsigned int parts = 1 + (b >> 1 & 1) + (b & 1); parts != 0; --parts) {
            if (!areEnough() || !((*_p & Forms::INDEX) ? passIndex<Forms::IntegerAt1>(*_p)
                                                       : passString<Forms::LengthAt1>(*_p))) {
                return false;
            }
        }
        return true;
    }

    TAMO_ALWAYS_INLINE bool passAttributes(UInt64& depth) noexcept {
        for (;;) {
            if (!areEnough()) {
                return false;
            }
            const unsigned int b = *_p;
            if (b & 0x80) {
                return passEnd(b, depth);
            }
            if (!passName<Forms::IntegerAt1>(b, Forms::ATTRIBUTE_NAME) || !areEnough()) {
                return false;
            }
            const unsigned int value = *_p;
            if (value & Forms::STRING_INDEX) {
                if (!passIndex<Forms::IntegerAt1>(value)) {
                    return false;
                }
            } else if ((value & 0x20) || !passString<Forms::LengthAt4>(value)) {
                return false;
            }
        }
    }

    // The octet of an end that is not the document's, and what fills it.
    TAMO_ALWAYS_INLINE bool passEnd(unsigned int b, UInt64& depth) noexcept {
        ++_p;
        if ((b & 0x0F) == Forms::TERMINATOR) {
            return depth-- > 0;
        }
        return !_strict || (b & 0x0F) == 0;
    }

    const unsigned char* _p;
    const unsigned char* _pEnd;
    bool _strict;
};

} // namespace

void ItemScanner::begin(bool strict, UInt64 maxStringLength, UInt64 maxItemSize) noexcept {
    const UInt64 steps = _steps;
    *this = ItemScanner();
    _steps = steps;
    _strict = strict;
    _maxStringLength = maxStringLength;
    _maxItemSize = maxItemSize;
}

ItemScanner::Stand ItemScanner::scan(const unsigned char* pOctets, std::size_t size, Extent extent) noexcept {
    _pOctets = _p = _pItem = _pWhole = pOctets;
    _pEnd = pOctets + size;
    const Stand stand = run(extent);
    _sizeBefore = this->size();
    _pItem = _p;
    return stand;
}

ItemScanner::Stand ItemScanner::run(Extent extent) noexcept {
    for (;;) {
        ++_steps;
        if (_skip != 0) {
            const UInt64 passed = std::min(_skip, static_cast<UInt64>(_pEnd - _p));
            _p += passed;
            _skip -= passed;
            if (_skip != 0) {
                return stop(Stand::NEEDS_MORE);
            }
        }
        if (_step == Step::NEXT_PART) {
            takePart();
        }
        if (_step <= Step::DTD_ITEM) {
            if (size() > _maxItemSize) {
                return Stand::TOO_LARGE;
            }
            const bool isItem = size() != 0;
            _pWhole = _pItem = _p;
            _sizeBefore = 0;
            if (extent == Extent::ALL) {
                passCommonItems();
            } else if (isItem) {
                return Stand::ITEM_END;
            }
        }
        if (_p == _pEnd) {
            return stop(Stand::NEEDS_MORE);
        }
        if (!look(*_p++)) {
            return stop(_refusal);
        }
    }
}

// An item that is too large is refused as such however its octets came, and whatever else is wrong with it.
ItemScanner::Stand ItemScanner::stop(Stand stand) noexcept {
    if (stand == Stand::TOO_LARGE || size() > _maxItemSize) {
        return Stand::TOO_LARGE;
    }
    if (stand != Stand::NEEDS_MORE) {
        _pWhole = _p;
    }
    return stand;
}

bool ItemScanner::refuse(Stand stand) noexcept {
    _refusal = stand;
    return false;
}

// ---- integers, lengths, strings

void ItemScanner::skip(UInt64 octets) noexcept {
    const auto left = static_cast<UInt64>(_pEnd - _p);
    if (octets <= left) [[likely]] {
        _p += octets;
    } else {
        _skip = octets - left;
        _p = _pEnd;
    }
}

void ItemScanner::endString() noexcept {
    _step = _strings != 0 ? Step::IDENTIFYING : _next;
}

void ItemScanner::strings(unsigned int count, Step next) noexcept {
    _strings = count;
    _next = next;
    endString();
}

bool ItemScanner::index(unsigned int octets) noexcept {
    skip(octets);
    endString();
    return true;
}

bool ItemScanner::indexAtPosition1(unsigned int b) noexcept {
    using Form = Forms::IntegerAt1;
    const unsigned int bits = b & Form::BITS;
    return index(bits < Form::IN_ONE || bits == Form::ZERO ? 0 : bits < Form::MARK_THREE ? 1 : 2);
}

bool ItemScanner::string(UInt64 size) noexcept {
    if (size > _maxStringLength) [[unlikely]] {
        return refuse();
    }
    if (size > _maxItemSize - std::min(this->size(), _maxItemSize)) [[unlikely]] {
        return refuse(Stand::TOO_LARGE);
    }
    skip(size);
    endString();
    return true;
}

// A length by its bits in the first octet; half of them mark the longer forms (X.891, C.22 to C.24).
bool ItemScanner::length(unsigned int bits, unsigned int half) noexcept {
    if (bits < half) [[likely]] {
        return string(bits + 1);
    }
    const bool isShort = bits == half;
    if (_strict && !isShort && bits != half + half / 2) {
        return refuse();
    }
    _value = 0;
    _have = isShort ? 3 : 0;
    _lengthBefore = isShort ? half + 1 : half + 257;
    _step = Step::LENGTH_REST;
    return true;
}

// A string that is not identifying, at bit position 0 (X.891, C.14); _next stands behind it.
bool ItemScanner::other(unsigned int b) noexcept {
    if (b & Forms::STRING_INDEX) {
        return indexAtPosition1(b);
    }
    if (b & 0x20) { // an index of eight bits, four of them here
        _step = Step::LENGTH_AT_4;
        return true;
    }
    return length(b & Forms::LengthAt4::BITS, Forms::LengthAt4::IN_ONE);
}

// ---- items

// A name from bit position 2 of an octet on, behind which attributes may follow.
bool ItemScanner::elementName(unsigned int b) noexcept {
    using Form = Forms::IntegerAt2;
    const unsigned int bits = b & Form::BITS;
    const Step next = _hasAttributes ? Step::ATTRIBUTE : Step::CHILD;
    if ((bits & Forms::ELEMENT_NAME) == Forms::ELEMENT_NAME) {
        strings(1 + (bits >> 1 & 1) + (bits & 1), next);
        return true;
    }
    if (bits > Form::MARK_FOUR) [[unlikely]] {
        return refuse();
    }
    strings(0, next);
    return index(following<Form>(bits));
}

bool ItemScanner::child(unsigned int b) noexcept {
    if (b < Forms::ELEMENT_END) {
        ++_depth;
        _hasAttributes = (b & Forms::HAS_ATTRIBUTES) != 0;
        if ((b & Forms::IntegerAt2::BITS) == Forms::NAMESPACE_ATTRIBUTES) {
            _step = Step::NAMESPACE_ATTRIBUTE;
            return true;
        }
        return elementName(b);
    }
    if (b < Forms::CHARACTERS_END) {
        strings(0, Step::CHILD);
        if (b & Forms::CHARACTERS_INDEX) {
            return index(following<Forms::IntegerAt3>(b & Forms::IntegerAt3::BITS));
        }
        if (b & 0x08) { // an index of eight bits, two of them here
            _step = Step::LENGTH_AT_6;
            return true;
        }
        return length(b & Forms::LengthAt6::BITS, Forms::LengthAt6::IN_ONE);
    }
    if (b >= Forms::TERMINATOR_FIRST) {
        if (_depth == 0) {
            return refuse(Stand::DOCUMENT_END);
        }
        --_depth;
        return terminator(b);
    }
    if (b == Forms::PROCESSING_INSTRUCTION) {
        return instruction();
    }
    if (b == Forms::COMMENT) {
        _step = Step::DATA;
        return true;
    }
    switch (b & Forms::DECLARATION_BITS) {
    case Forms::DOCTYPE:
        _inDTD = true;
        strings((b >> 1 & 1) + (b & 1), Step::DTD_START);
        return true;
    case Forms::ENTITY_REFERENCE:
        strings(1 + (b >> 1 & 1) + (b & 1), Step::CHILD);
        return true;
    default:
        return refuse();
    }
}

bool ItemScanner::instruction() noexcept {
    strings(1, Step::DATA);
    return true;
}

// Within the declaration all but the terminator opens an instruction by default; strictly it is refused by
// who reads it.
bool ItemScanner::declarationItem(unsigned int b) noexcept {
    if (b < Forms::TERMINATOR_FIRST) {
        return instruction();
    }
    _inDTD = false;
    return terminator(b);
}

// The second half of an octet whose first half was an end: another one, or padding.
bool ItemScanner::terminator(unsigned int b) noexcept {
    _step = Step::CHILD;
    if ((b & 0x0F) == Forms::TERMINATOR) {
        if (_depth == 0) {
            return refuse(Stand::DOCUMENT_END);
        }
        --_depth;
        return true;
    }
    return !_strict || (b & 0x0F) == 0 || refuse();
}

bool ItemScanner::look(unsigned int b) noexcept {
    switch (_step) {
    case Step::CHILD:
        return child(b);
    case Step::ATTRIBUTE:
        if (b & 0x80) {
            return terminator(b);
        }
        if ((b & Forms::ATTRIBUTE_NAME) == Forms::ATTRIBUTE_NAME) {
            strings(1 + (b >> 1 & 1) + (b & 1), Step::VALUE);
            return true;
        }
        strings(0, Step::VALUE);
        return indexAtPosition1(b);
    case Step::VALUE:
        _next = Step::ATTRIBUTE;
        return other(b);
    case Step::IDENTIFYING:
        --_strings;
        if (b & Forms::INDEX) {
            return indexAtPosition1(b);
        }
        return length(b & Forms::LengthAt1::BITS, Forms::LengthAt1::IN_ONE);
    case Step::LENGTH_AT_4:
        return length(b & Forms::LengthAt4::BITS, Forms::LengthAt4::IN_ONE);
    case Step::LENGTH_AT_6:
        return length(b & Forms::LengthAt6::BITS, Forms::LengthAt6::IN_ONE);
    case Step::LENGTH_REST:
        _value = _value << 8 | b;
        if (++_have < 4) {
            return true;
        }
        _have = 0;
        return string(_value + _lengthBefore);
    case Step::DATA:
        _next = _inDTD ? Step::DTD_ITEM : Step::CHILD;
        return other(b);
    case Step::NAMESPACE_ATTRIBUTE:
        if (b >= Forms::TERMINATOR_FIRST) {
            _step = Step::ELEMENT_NAME;
            return true;
        }
        strings((b >> 1 & 1) + (b & 1), Step::NAMESPACE_ATTRIBUTE);
        return true;
    case Step::ELEMENT_NAME:
        return elementName(b);
    case Step::DTD_START:
    case Step::DTD_ITEM:
        return declarationItem(b);
    default:
        return lookAtHeader(b);
    }
}

// ---- the common items

// Passes over items of the usual forms that are there whole, as look() would do octet by octet. What is not
// so, be it only that an item is not there whole, is left from the item's first octet on: that much is looked
// at twice.
void ItemScanner::passCommonItems() noexcept {
    if (_step != Step::CHILD || _maxStringLength < CommonItem::LONGEST_STRING) {
        return;
    }
    const unsigned char* const pStart = _p;
    CommonItem item(_p, _pEnd, _strict);
    UInt64 depth = _depth;
    while (item.pass(depth) && static_cast<UInt64>(item.end() - _p) <= _maxItemSize) {
        _p = item.end();
        _depth = depth;
    }
    _steps += static_cast<UInt64>(item.end() - pStart);
    _pWhole = _pItem = _p;
}

// ---- the header

bool ItemScanner::lookAtHeader(unsigned int b) noexcept {
    switch (_step) {
    case Step::DECLARATION:
        if (_strict && size() > LONGEST_XML_DECLARATION) {
            return refuse();
        }
        if (b == '>') {
            _step = Step::START;
        }
        return true;
    case Step::IDENTIFICATION:
    case Step::START:
    case Step::VERSION:
    case Step::TABLES:
    case Step::COUNT_REST:
        _value = _value << 8 | b;
        return ++_have < 2 || lookAtWord();
    case Step::PARTS:
        _parts = b & 0x7F;
        _step = Step::NEXT_PART;
        return true;
    case Step::NOTATION:
        if (b >> 2 == Forms::NOTATION) {
            strings(1 + (b >> 1 & 1) + (b & 1), Step::NOTATION);
            return true;
        }
        _step = Step::NEXT_PART;
        return b >> 2 == Forms::TERMINATOR_FIRST >> 2 || refuse();
    case Step::ENTITY:
        if (b >> 1 == Forms::UNPARSED_ENTITY) {
            strings(3 + (b & 1), Step::ENTITY);
            return true;
        }
        _step = Step::NEXT_PART;
        return b >> 1 == Forms::TERMINATOR_FIRST >> 1 || refuse();
    case Step::PROPERTY:
        _next = Step::NEXT_PART;
        return other(b);
    default:
        return lookAtTableEntry(b);
    }
}

// Two octets, or the rest of a count (X.891, C.21).
bool ItemScanner::lookAtWord() noexcept {
    const UInt64 word = _value & 0xFFFF;
    _have = 0;
    switch (_step) {
    case Step::IDENTIFICATION:
        if (word == Encoder::XMLDECLARATION) {
            _step = Step::DECLARATION;
            return true;
        }
        [[fallthrough]];
    case Step::START:
        _step = Step::VERSION;
        return word == Encoder::DOCUMENTSTART || refuse();
    case Step::VERSION:
        _step = Step::PARTS;
        return word == Encoder::DOCUMENTVERSION || refuse();
    case Step::TABLES:
        _tables = static_cast<unsigned int>(word & 0x1FFF);
        _step = Step::NEXT_PART;
        return _tables != 0 || refuse();
    default:
        _count = (static_cast<unsigned int>(_value % Forms::MOST_INTEGER) + Forms::COUNT_IN_ONE + 1) *
                 _itemsOfEntry;
        _step = Step::NEXT_PART;
        return true;
    }
}

// A count of entries, or an entry.
bool ItemScanner::lookAtTableEntry(unsigned int b) noexcept {
    const Step step = _step;
    strings(0, Step::NEXT_PART);
    switch (step) {
    case Step::COUNT:
        _count = (b + 1) * _itemsOfEntry;
        if (b & 0x80) {
            _value = b;
            _step = Step::COUNT_REST;
        }
        return true;
    case Step::LITERAL:
        return length(b & Forms::LengthAt1::BITS, Forms::LengthAt1::IN_ONE);
    case Step::ENCODED:
        if (b & 0x20) { // an index of eight bits, which stands there twice by default
            _step = _strict ? Step::LENGTH_AT_4 : Step::ENCODED_INDEX;
            return true;
        }
        return length(b & Forms::LengthAt4::BITS, Forms::LengthAt4::IN_ONE);
    case Step::ENCODED_INDEX:
        _step = Step::LENGTH_AT_4;
        return true;
    case Step::SURROGATE:
        _indexes = 1 + (b >> 1 & 1) + (b & 1);
        _step = Step::SURROGATE_PART;
        return true;
    case Step::SURROGATE_PART:
        if (--_indexes != 0) {
            _next = Step::SURROGATE_PART;
        }
        return indexAtPosition1(b);
    default: // whether the document is standalone
        return true;
    }
}

// What stands behind a part of the header: the next entry, the next table, the next part, or the first child.
void ItemScanner::takePart() noexcept {
    if (_count != 0) {
        --_count;
        _step = _entry;
    } else if (_tables != 0) {
        takeTable(std::bit_floor(_tables));
    } else if (_parts != 0) {
        const unsigned int part = std::bit_floor(_parts);
        _parts ^= part;
        switch (part) {
        case 0x40: // additional data are pairs of strings
            table(Step::LITERAL, 2);
            break;
        case 0x20:
            _step = Step::TABLES;
            break;
        case 0x10:
            _step = Step::NOTATION;
            break;
        case 0x08:
            _step = Step::ENTITY;
            break;
        case 0x04:
            _step = Step::LITERAL;
            break;
        case 0x02:
            _step = Step::STANDALONE;
            break;
        default:
            _step = Step::PROPERTY;
        }
    } else {
        _step = Step::CHILD;
    }
}

void ItemScanner::takeTable(unsigned int flag) noexcept {
    _tables ^= flag;
    if (flag == 0x1000) { // the URI of the external vocabulary
        _step = Step::LITERAL;
    } else if (flag >= 0x0020) {
        table(Step::LITERAL, 1);
    } else {
        table(flag >= 0x0004 ? Step::ENCODED : Step::SURROGATE, 1);
    }
}

void ItemScanner::table(Step entry, unsigned int itemsOfEntry) noexcept {
    _entry = entry;
    _itemsOfEntry = itemsOfEntry;
    _step = Step::COUNT;
}

} // namespace Tamo::FastInfoset
