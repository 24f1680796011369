#ifndef TAMO_FASTINFOSET_REQUIREDBITS_H
#define TAMO_FASTINFOSET_REQUIREDBITS_H

#include "Refusal.h"
#include "Tamo/FastInfoset/BitStreamReader.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

/// Reads bits that have to be there for the construct that a message names: without them its operations throw
/// FISParseException with the message.
class RequiredBits {
public:
    RequiredBits() = delete;

    static void require(BitStreamReader& reader, int numBits, const char* message) {
        if (!reader.hasBits(numBits)) [[unlikely]] {
            throw FISParseException(message);
        }
    }

    template<class T>
    static void read(BitStreamReader& reader, T& value, int numBits, const char* message) {
        require(reader, numBits, message);
        reader.read(value, numBits);
    }

    /// Up to eight bits.
    static unsigned char read(BitStreamReader& reader, int numBits, const char* message) {
        unsigned char bits = 0;
        read(reader, bits, numBits, message);
        return bits;
    }

    static bool readFlag(BitStreamReader& reader, const char* message) {
        require(reader, 1, message);
        bool bit = false;
        reader.read(bit);
        return bit;
    }

    /// Up to eight bits, which stay.
    static unsigned char peek(BitStreamReader& reader, int numBits, const char* message) {
        require(reader, numBits, message);
        unsigned char bits = 0;
        reader.peek(bits, numBits);
        return bits;
    }

    /// Up to eight bits that X.891 has as value: skipped, unless they are read strictly, and refused as what
    /// when they are another.
    static void readAs(BitStreamReader& reader, int numBits, unsigned int value, const char* message,
                       const char* what, const char* clause) {
        require(reader, numBits, message);
        if (reader.isStrict()) [[unlikely]] {
            unsigned char bits = 0;
            reader.read(bits, numBits);
            Refusal::unless(bits == value, reader, what, clause);
        } else {
            reader.skip(numBits);
        }
    }

    static void skip(BitStreamReader& reader, int numBits, const char* message) {
        require(reader, numBits, message);
        reader.skip(numBits);
    }
};

} // namespace Tamo::FastInfoset

#endif
