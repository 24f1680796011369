#include "Tamo/FastInfoset/Encoder.h"
#include "Forms.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/Types.h"

namespace Tamo::FastInfoset {

namespace {

// An integer from 1 on in one octet, two, three or four, whose first one has numBits left.
template<class Form>
void writeInteger(BitStreamWriter& aWriter, unsigned int val, int numBits) {
    if (val <= Form::IN_ONE) {
        aWriter.write(val - 1, numBits);
    } else if (val <= Form::IN_TWO) {
        aWriter.write(Form::MARK_TWO << 8 | (val - Form::IN_ONE - 1), numBits + 8);
    } else if (val <= Form::IN_THREE) {
        aWriter.write(Form::MARK_THREE << 16 | (val - Form::IN_TWO - 1), numBits + 16);
    } else if constexpr (Form::IN_THREE < Forms::MOST_INTEGER) {
        aWriter.write(Form::MARK_FOUR << 24 | (val - Form::IN_THREE - 1), numBits + 24);
    }
    tamo_assert(aWriter.bitPos() == 0);
}

// A length from 1 on.
template<class Form>
void writeLength(BitStreamWriter& aWriter, std::size_t length, int numBits) {
    if (length > Form::MOST) {
        throw FISEncodingException("A string of " + std::to_string(length) +
                                   " octets is longer than the longest one that can be written, of " +
                                   std::to_string(Form::MOST));
    }
    if (length <= Form::IN_ONE) {
        aWriter.write(static_cast<unsigned int>(length - 1), numBits);
    } else if (length <= Form::IN_TWO) {
        aWriter.write(Form::MARK_TWO << 8 | static_cast<unsigned int>(length - Form::IN_ONE - 1),
                      numBits + 8);
    } else {
        aWriter.write(Form::MARK_FIVE, numBits);
        aWriter.write(static_cast<unsigned int>(length - Form::IN_TWO - 1), 32);
    }
}

} // namespace

void Encoder::documentPreHeader(BitStreamWriter& aWriter, bool writeXMLDecl) {
    if (writeXMLDecl) {
        aWriter.write("<?xml encoding='finf'?>");
    }
    aWriter.write(DOCUMENTSTART, 16);
    aWriter.write(DOCUMENTVERSION, 16);
    aWriter.write(false);
}

void Encoder::integer(BitStreamWriter& aWriter, unsigned int val) {
    const int position = aWriter.bitPos();
    if (val > MAXINT20) {
        throw FISEncodingException("Cannot encode integer value: too large, must be smaller than 2^20");
    }
    if (val == 0 && position != 1) {
        throw FISEncodingException("Value zero must start on the second bit of a byte");
    }
    switch (position) {
    case 0:
        throw FISEncodingException("Illegal bit position 0: Integers can never start there");
    case 1:
        if (val == 0) {
            aWriter.write(Forms::IntegerAt1::ZERO, 7);
        } else {
            writeInteger<Forms::IntegerAt1>(aWriter, val, 7);
        }
        break;
    case 2:
        writeInteger<Forms::IntegerAt2>(aWriter, val, 6);
        break;
    case 3:
        writeInteger<Forms::IntegerAt3>(aWriter, val, 5);
        break;
    case 4:
    case 6:
        if (val > 256) {
            throw FISEncodingException("Illegal bit position: Only Integers <= 256 can start at pos 4 or 6.");
        }
        aWriter.write(val - 1, 8);
        break;
    default:
        throw FISEncodingException(
            "Illegal bit position: No Integers are allowed to be written to pos 5 or 7.");
    }
}

void Encoder::pad0ThenInteger(BitStreamWriter& aWriter, unsigned int val) {
    if (aWriter.bitPos() == 0) {
        tamo_assert(val <= MAXINT20);
    }
    aWriter.write(false);
    integer(aWriter, val);
}

void Encoder::nonEmptyStringLength(BitStreamWriter& aWriter, std::size_t strLen) {
    tamo_assert(strLen > 0);
    switch (aWriter.bitPos()) {
    case 1:
        writeLength<Forms::LengthAt1>(aWriter, strLen, 7);
        break;
    case 4:
        writeLength<Forms::LengthAt4>(aWriter, strLen, 4);
        break;
    case 6:
        writeLength<Forms::LengthAt6>(aWriter, strLen, 2);
        break;
    default:
        throw FISEncodingException("illegal position for nonEmptyOctetString encoding");
    }
}

void Encoder::nonEmptyOctetString(BitStreamWriter& aWriter, const std::string& octets) {
    if (octets.empty()) {
        throw FISEncodingException("Encoder::nonEmptyOctetString cannot encode empty strings");
    }
    nonEmptyStringLength(aWriter, octets.size());
    aWriter.write(octets);
}

void Encoder::lengthOfSequence(BitStreamWriter& aWriter, unsigned int len) {
    if (aWriter.bitPos() != 0) {
        throw FISEncodingException("Illegal startposition for a lengthOfSequence value");
    }
    if (len == 0) {
        throw FISEncodingException("Illegal value zero for lengthOfSequence");
    }
    if (len <= 128) {
        aWriter.write(len - 1, 8);
    } else if (len > MAXINT20) {
        throw FISEncodingException("Illegal value for lengthOfSequence: larger than 2^20");
    } else {
        // Deliberate: the long form begins with a 0 bit, see the header.
        aWriter.write((len | 0x80000u) - 129, 24);
    }
}

void Encoder::countOfItems(BitStreamWriter& aWriter, std::size_t count) {
    if (aWriter.bitPos() != 0) {
        throw FISEncodingException("Illegal startposition for a count of items");
    }
    if (count == 0 || count > MAXINT20) {
        throw FISEncodingException("Cannot encode a count of " + std::to_string(count) +
                                   " items: 1 to 2^20 are possible (X.891, C.21)");
    }
    const auto number = static_cast<unsigned int>(count);
    if (number <= Forms::COUNT_IN_ONE) {
        aWriter.write(number - 1, 8);
    } else {
        aWriter.write(0x800000u | (number - Forms::COUNT_IN_ONE - 1), 24);
    }
}

} // namespace Tamo::FastInfoset
