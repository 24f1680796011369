#ifndef TAMO_FINF_ALPHABETCODES_H
#define TAMO_FINF_ALPHABETCODES_H

#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include "Tamo/Types.h"
#include <string>
#include <string_view>

namespace finf {

/// The codes of a string in a restricted alphabet by the letter (ITU-T X.891, 7.17.6): as wide as leaves that
/// of nothing but ones free, which fills the last octet. Stateless; any thread.
class AlphabetCodes {
public:
    /// The bits of a code; 0 for the alphabet of a reserved index.
    static unsigned int width(const Tamo::FastInfoset::RestrictedAlphabet& alphabet);

    /// Whether a code with so many bits left from its first one on is the filling instead.
    static bool isFilling(Tamo::UInt64 code, unsigned int width, Tamo::UInt64 bitsLeft) {
        return bitsLeft < width || (bitsLeft < 8 && code == (Tamo::UInt64{1} << width) - 1);
    }

    /// The characters, replacing text; U+FFFD for codes that the alphabet does not have. It has an alphabet
    /// that is not reserved.
    static void decode(std::string_view octets, const Tamo::FastInfoset::RestrictedAlphabet& alphabet,
                       std::string& text);
};

} // namespace finf

#endif
