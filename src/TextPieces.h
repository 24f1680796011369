#ifndef TAMO_FASTINFOSET_TEXTPIECES_H
#define TAMO_FASTINFOSET_TEXTPIECES_H

#include <cstddef>
#include <limits>
#include <string_view>

namespace Tamo::FastInfoset {

/// Cuts text into pieces that SAX2, which counts in int, can take.
class TextPieces {
public:
    /// The longest piece, in octets.
    static constexpr std::size_t MOST = std::numeric_limits<int>::max();

    TextPieces() = delete;

    /// Calls use(piece) for the pieces of text, one after the other: once for a text of up to most octets,
    /// the empty one included. No piece but the last ends within a character of UTF-8.
    template<class Use>
    static void forEach(std::string_view text, const Use& use, std::size_t most = MOST) {
        while (text.size() > most)
            [[unlikely]] {
                const std::size_t size = endOfCharacter(text, most);
                use(text.substr(0, size));
                text.remove_prefix(size);
            }
        use(text);
    }

private:
    // Where a character ends that ends at most there; that place itself in octets that are no UTF-8.
    static std::size_t endOfCharacter(std::string_view text, std::size_t most) noexcept {
        constexpr std::size_t LONGEST = 4;
        for (std::size_t end = most; end > 0 && most - end < LONGEST; --end) {
            if ((static_cast<unsigned char>(text[end]) & 0xC0) != 0x80) {
                return end;
            }
        }
        return most;
    }
};

} // namespace Tamo::FastInfoset

#endif
