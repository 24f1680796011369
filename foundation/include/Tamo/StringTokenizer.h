#ifndef TAMO_STRINGTOKENIZER_H
#define TAMO_STRINGTOKENIZER_H

#include "Tamo/Export.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tamo {

/// The pieces of a string between separator characters.
///
/// Every separator ends a piece, so n separators make n + 1 pieces: "a,,b" gives "a", "", "b"; ",a" gives "",
/// "a"; the empty string gives one empty piece. The options drop empty pieces or trim white space. The pieces
/// are copies; the string need not outlive the tokenizer. A value, used by one thread at a time.
class TAMO_API StringTokenizer {
public:
    /// Options, to be combined with `|`.
    enum Options {
        TOK_IGNORE_EMPTY = 1, ///< empty pieces are left out (after trimming, when both are given)
        TOK_TRIM = 2 ///< space, tab, line feed and carriage return are removed at both ends of a piece
    };

    using Iterator = std::vector<std::string>::const_iterator;

    /// Splits text at every character that occurs in separators.
    StringTokenizer(std::string_view text, std::string_view separators, int options = 0);

    /// The first piece.
    Iterator begin() const noexcept { return _tokens.begin(); }

    /// The end of the pieces.
    Iterator end() const noexcept { return _tokens.end(); }

    /// The number of pieces.
    std::size_t count() const noexcept { return _tokens.size(); }

    /// The piece with an index from 0; an index out of range throws std::out_of_range.
    const std::string& operator[](std::size_t index) const { return _tokens.at(index); }

private:
    std::vector<std::string> _tokens;
};

} // namespace Tamo

#endif
