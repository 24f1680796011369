#ifndef TAMO_FASTINFOSET_RESTRICTEDALPHABET_H
#define TAMO_FASTINFOSET_RESTRICTEDALPHABET_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <string>
#include <vector>

namespace Tamo::FastInfoset {

/// One restricted alphabet (ITU-T X.891, clause 9): the characters that a string may consist of, each sent as
/// its position. A plain value.
class TAMO_API RestrictedAlphabet {
public:
    /// An empty alphabet: no characters, codes of 0 bits.
    RestrictedAlphabet() = default;

    /// An alphabet of these UTF-8 characters, at least one; a sequence that is not UTF-8 counts as "?".
    explicit RestrictedAlphabet(const std::string& utf8Characters);

    /// Width of one code in bits: the logarithm of the number of characters plus one, rounded down.
    /// Deliberate: for alphabets whose size plus one is no power of two not every code fits.
    unsigned int bitSize() const noexcept { return _bitSize; }

    /// The number of characters; 0 for the empty alphabet.
    std::size_t size() const noexcept { return _codes.empty() ? 0 : _codes.size() - 1; }

    /// True for the code behind the last character.
    bool isEndOfString(int code) const noexcept {
        return static_cast<std::size_t>(static_cast<UInt32>(code)) + 1 == _codes.size();
    }

    /// The code point at code, which is not checked; any code of bitSize() bits is within the table.
    UInt32 indexToChar(int code) const noexcept { return _codes[static_cast<std::size_t>(code)]; }

    /// The characters as given, UTF-8.
    const std::string& characters() const noexcept { return _characters; }

private:
    std::string _characters;
    std::vector<UInt32> _codes;
    unsigned int _bitSize = 0;
};

} // namespace Tamo::FastInfoset

#endif
