#ifndef TAMO_BASE64_H
#define TAMO_BASE64_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace Tamo {

/// Octets in base64 (RFC 4648, standard alphabet, with padding), in whole blocks; Base64Encoder and
/// Base64Decoder are the streams.
///
/// Text is valid when it consists of alphabet characters, padding, and white space (CR, LF, space, tab)
/// anywhere, makes up whole groups of four characters, and has padding only as the last one or two characters
/// of the last group. Bits of the last group beyond its octets are ignored. Pure functions, thread-safe; they
/// throw nothing but std::bad_alloc.
class TAMO_API Base64 {
public:
    /// What decoding in pieces has to remember from one piece to the next.
    struct State {
        UInt32 bits = 0; ///< the bits of the group that is not complete
        int digits = 0;  ///< the characters in it, padding included
        int padding = 0; ///< the padding so far; after a padded group only white space may follow
    };

    /// Appends the base64 form of octets to text, with padding and without line breaks.
    static void encode(std::string_view octets, std::string& text);

    /// Appends the octets that text stands for. Returns false, and leaves octets as they were, when text is
    /// invalid.
    static bool decode(std::string_view text, std::string& octets);

    /// Checks text like decode and gives the number of its octets, without storing them.
    static bool decodedSize(std::string_view text, std::size_t& size) noexcept;

    /// Decodes a further piece of a text. Returns false when a character is invalid; the octets before it
    /// have been appended.
    static bool decodePiece(std::string_view text, std::string& octets, State& state);

    /// True when a text may end in this state.
    static bool complete(const State& state) noexcept { return state.digits == 0; }
};

} // namespace Tamo

#endif
