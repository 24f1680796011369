#ifndef TAMO_FASTINFOSET_ALPHABETCODES_H
#define TAMO_FASTINFOSET_ALPHABETCODES_H

#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tamo::FastInfoset {

/// Text as the codes of a restricted alphabet (ITU-T X.891, 7.17.6): each of the fewest bits that leave the
/// code of ones free, which fills the last octet. A plain value.
class AlphabetCodes {
public:
    /// Of an alphabet; one that is not well-formed UTF-8, has fewer than 2 characters, more than 2^20 or one
    /// of them twice throws FISEncodingException (X.891, 8.2).
    explicit AlphabetCodes(const RestrictedAlphabet& alphabet);

    /// The octets of a text; a character that the alphabet does not have throws FISEncodingException.
    std::string encode(std::string_view text) const;

private:
    std::vector<std::pair<char32_t, UInt32>> _codes; // by character
    unsigned int _bits = 0;                          // of a code
};

} // namespace Tamo::FastInfoset

#endif
