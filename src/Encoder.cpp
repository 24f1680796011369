#include "Tamo/FastInfoset/Encoder.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/FastInfoset/BitStreamWriter.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/Types.h"

namespace Tamo::FastInfoset {

namespace {

void integerAtPosition1(BitStreamWriter& aWriter, unsigned int val) {
    if (val == 0) {
        aWriter.write(0x7Fu, 7);
    } else if (val <= 64) {
        aWriter.write(val - 1, 7);
    } else if (val <= 8256) {
        aWriter.write(0x4000u | (val - 65), 15);
    } else {
        aWriter.write(0x600000u | (val - 8257), 23);
    }
    tamo_assert(aWriter.bitPos() == 0);
}

void integerAtPosition2(BitStreamWriter& aWriter, unsigned int val) {
    if (val <= 32) {
        aWriter.write(val - 1, 6);
    } else if (val <= 2080) {
        aWriter.write(0x2000u | (val - 33), 14);
    } else if (val <= 526368) {
        aWriter.write(0x280000u | (val - 2081), 22);
    } else {
        aWriter.write(0x30000000u | (val - 526369), 30);
    }
    tamo_assert(aWriter.bitPos() == 0);
}

void integerAtPosition3(BitStreamWriter& aWriter, unsigned int val) {
    if (val <= 16) {
        aWriter.write(val - 1, 5);
    } else if (val <= 1040) {
        aWriter.write(0x1000u | (val - 17), 13);
    } else if (val <= 263184) {
        aWriter.write(0x140000u | (val - 1041), 21);
    } else {
        aWriter.write(0x18000000u | (val - 263185), 29);
    }
    tamo_assert(aWriter.bitPos() == 0);
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
        integerAtPosition1(aWriter, val);
        break;
    case 2:
        integerAtPosition2(aWriter, val);
        break;
    case 3:
        integerAtPosition3(aWriter, val);
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
        if (strLen <= 64) {
            aWriter.write(static_cast<unsigned int>(strLen - 1), 7);
        } else if (strLen <= 320) {
            aWriter.write(0x4000u | static_cast<unsigned int>(strLen - 65), 15);
        } else {
            aWriter.write(0x60u, 7);
            aWriter.write(static_cast<unsigned int>(strLen - 321), 32);
        }
        break;
    case 4:
        if (strLen <= 8) {
            aWriter.write(static_cast<unsigned int>(strLen - 1), 4);
        } else if (strLen <= 264) {
            aWriter.write(0x800u | static_cast<unsigned int>(strLen - 9), 12);
        } else {
            aWriter.write(0xCu, 4);
            aWriter.write(static_cast<unsigned int>(strLen - 265), 32);
        }
        break;
    case 6:
        if (strLen <= 2) {
            aWriter.write(static_cast<unsigned int>(strLen - 1), 2);
        } else if (strLen <= 258) {
            aWriter.write(0x200u | static_cast<unsigned int>(strLen - 3), 10);
        } else {
            aWriter.write(0x3u, 2);
            aWriter.write(static_cast<unsigned int>(strLen - 259), 32);
        }
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

} // namespace Tamo::FastInfoset
