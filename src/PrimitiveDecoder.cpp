#include "Tamo/FastInfoset/PrimitiveDecoder.h"
#include "Forms.h"
#include "Refusal.h"
#include "RequiredBits.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/FastInfoset/FISException.h"
#include <algorithm>
#include <limits>

namespace Tamo::FastInfoset {

namespace {

constexpr const char* INTEGER_END = "Unexpected end of stream while reading integer";

// What is read strictly is no larger than what an index can name.
void requireInRange(const BitStreamReader& reader, unsigned int val, const char* clause) {
    Refusal::unless(val <= Encoder::MAXINT20 || !reader.isStrict(), reader, "an integer beyond 2^20", clause);
}

// The bits of a form that say which one it is, padding included, where a strict reader wants them as they
// are.
void requireForm(const BitStreamReader& reader, bool holds, const char* clause) {
    if (!holds) [[unlikely]] {
        Refusal::unless(!reader.isStrict(), reader, "no form of an integer or a length", clause);
    }
}

// A number of whole octets, from an octet boundary on.
UInt32 readOctets(BitStreamReader& reader, std::size_t count, const char* message) {
    RequiredBits::require(reader, static_cast<int>(8 * count), message);
    const unsigned char* pOctets = nullptr;
    reader.cachedOctets(pOctets);
    UInt32 value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8 | pOctets[i];
    }
    reader.advance(8 * count);
    return value;
}

// The first group of bits, then the longer forms: an 8-bit or a 16-bit field behind some bits of the group.
unsigned int followed(BitStreamReader& reader, unsigned int high, int numBits, unsigned int offset) {
    unsigned int low = 0;
    RequiredBits::read(reader, low, numBits, INTEGER_END);
    return ((high << numBits) | low) + offset;
}

void integerAtPosition1(BitStreamReader& aReader, unsigned int& val) {
    using Form = Forms::IntegerAt1;
    unsigned char x = 0;
    RequiredBits::read(aReader, x, 7, INTEGER_END);
    if (x == Form::ZERO) {
        val = 0;
    } else if (x < Form::IN_ONE) {
        val = x + 1u;
    } else if (x < Form::MARK_THREE) {
        val = followed(aReader, x & Form::HIGH_TWO, 8, Form::IN_ONE + 1);
    } else {
        requireForm(aReader, x <= (Form::MARK_THREE | Form::HIGH_THREE), "C.25");
        val = followed(aReader, x & Form::HIGH_THREE, 16, Form::IN_TWO + 1);
        requireInRange(aReader, val, "C.25");
        tamo_assert(val <= Encoder::MAXINT20);
    }
    tamo_assert(aReader.bitPos() == 0);
}

// The forms of two and three octets; false for the one of four, whose first bits are x.
template<class Form>
bool readInteger(BitStreamReader& aReader, unsigned int& val, int numBits, unsigned char& x) {
    RequiredBits::read(aReader, x, numBits, INTEGER_END);
    if (x < Form::IN_ONE) {
        val = x + 1u;
    } else if (x < Form::MARK_THREE) {
        val = followed(aReader, x & Form::HIGH_TWO, 8, Form::IN_ONE + 1);
    } else if (x < Form::MARK_FOUR) {
        val = followed(aReader, x & Form::HIGH_THREE, 16, Form::IN_TWO + 1);
    } else {
        return false;
    }
    return true;
}

// The rest of the form of four octets.
template<class Form>
void readLongInteger(BitStreamReader& aReader, unsigned int& val, unsigned char x, const char* clause) {
    const unsigned char padding = RequiredBits::read(aReader, 4, INTEGER_END);
    requireForm(aReader, x == Form::MARK_FOUR && padding == 0, clause);
    val = followed(aReader, 0, 20, Form::IN_THREE + 1);
    requireInRange(aReader, val, clause);
    tamo_assert(val <= Encoder::MAXINT20);
}

void integerAtPosition2(BitStreamReader& aReader, unsigned int& val) {
    unsigned char x = 0;
    if (!readInteger<Forms::IntegerAt2>(aReader, val, 6, x)) {
        val = x;
        requireForm(aReader, val == 48, "C.27");
        tamo_assert(val == 48);
        readLongInteger<Forms::IntegerAt2>(aReader, val, x, "C.27");
    }
    tamo_assert(aReader.bitPos() == 0);
}

void integerAtPosition3(BitStreamReader& aReader, unsigned int& val) {
    unsigned char x = 0;
    if (!readInteger<Forms::IntegerAt3>(aReader, val, 5, x)) {
        readLongInteger<Forms::IntegerAt3>(aReader, val, x, "C.28");
    }
    tamo_assert(aReader.bitPos() == 0);
}

} // namespace

void PrimitiveDecoder::integerSlow(BitStreamReader& aReader, unsigned int& val) {
    switch (aReader.bitPos()) {
    case 0:
        throw FISEncodingException("Illegal bit position 0: Integers can never start there");
    case 1:
        integerAtPosition1(aReader, val);
        break;
    case 2:
        integerAtPosition2(aReader, val);
        break;
    case 3:
        integerAtPosition3(aReader, val);
        break;
    case 4:
    case 6: {
        unsigned char x = 0;
        RequiredBits::read(aReader, x, 8, INTEGER_END);
        val = x + 1u;
        break;
    }
    default:
        throw FISEncodingException(
            "Illegal bit position: No Integers are allowed to be read from pos 5 or 7.");
    }
}

void PrimitiveDecoder::nonEmptyStringLength(BitStreamReader& aReader, std::size_t& strLen) {
    static constexpr const char* END = "Unexpected end of stream while parsing string length";
    const int position = aReader.bitPos();
    if (position != 1 && position != 4 && position != 6) {
        throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
    }
    const int groupBits = 8 - position;
    const unsigned int half = 1u << (groupBits - 1);
    unsigned char x = 0;
    RequiredBits::read(aReader, x, groupBits, END);
    UInt64 length = UInt64{x} + 1;
    if (x == half) {
        length = UInt64{readOctets(aReader, 1, END)} + half + 1;
    } else if (x > half) {
        requireForm(aReader, x == half + half / 2, position == 1 ? "C.22" : position == 4 ? "C.23" : "C.24");
        length = UInt64{readOctets(aReader, 4, END)} + half + 257;
    }
    const UInt64 limit = std::min<UInt64>(aReader.maxStringLength(), std::numeric_limits<std::size_t>::max());
    if (length > limit) {
        throw FISException("Limit exceeded: string length", std::to_string(limit));
    }
    strLen = static_cast<std::size_t>(length);
    tamo_assert(strLen > 0);
    tamo_assert(aReader.bitPos() == 0);
}

void PrimitiveDecoder::nonEmptyOctetString(BitStreamReader& aReader, std::string& octets) {
    std::size_t length = 0;
    nonEmptyStringLength(aReader, length);
    if (!aReader.read(octets, length)) {
        throw FISParseException("Unexpected end of stream while reading octet string");
    }
}

void PrimitiveDecoder::lengthOfSequence(BitStreamReader& aReader, unsigned int& len) {
    static constexpr const char* END = "Unexpected end of stream while parsing sequence length";
    if (aReader.bitPos() != 0) {
        throw FISEncodingException("Illegal startposition for a lengthOfSequence value");
    }
    RequiredBits::require(aReader, 1, END);
    unsigned char first = 0;
    aReader.peek(first, 1);
    if (first == 0) {
        unsigned char x = 0;
        RequiredBits::read(aReader, x, 8, END);
        len = x + 1u;
    } else {
        unsigned int y = 0;
        RequiredBits::read(aReader, y, 24, END);
        requireForm(aReader, y >> 20 == 8, "C.21");
        len = y % Forms::MOST_INTEGER + 129;
        requireInRange(aReader, len, "C.21");
    }
    if (len == 0) {
        throw FISEncodingException("Illegal value zero for lengthOfSequence");
    }
}

} // namespace Tamo::FastInfoset
