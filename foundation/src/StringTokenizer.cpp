#include "Tamo/StringTokenizer.h"
#include <algorithm>

namespace Tamo {

namespace {

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view WHITE_SPACE = " \t\n\r";
    text.remove_prefix(std::min(text.find_first_not_of(WHITE_SPACE), text.size()));
    return text.substr(0, text.find_last_not_of(WHITE_SPACE) + 1);
}

} // namespace

StringTokenizer::StringTokenizer(std::string_view text, std::string_view separators, int options) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
        std::string_view piece = text.substr(begin, end - begin);
        if (options & TOK_TRIM) {
            piece = trimmed(piece);
        }
        if (!piece.empty() || !(options & TOK_IGNORE_EMPTY)) {
            _tokens.emplace_back(piece);
        }
        begin = end + 1;
    }
}

} // namespace Tamo
