#include "Tamo/XML/Characters.h"
#include "Tamo/Export.h"
#include <algorithm>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Tamo::XML {

namespace {

/// NameStartChar of XML 1.0 (fifth edition) beyond ASCII.
bool isNameStart(char32_t c) noexcept {
    return (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) || (c >= 0x370 && c <= 0x1FFF && c != 0x37E) ||
           c == 0x200C || c == 0x200D || (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
           (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) || (c >= 0xFDF0 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0xEFFFF);
}

/// NameChar of XML 1.0 (fifth edition) beyond ASCII.
bool isNameCharacter(char32_t c) noexcept {
    return isNameStart(c) || c == 0xB7 || (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
}

// Well-formed UTF-8 as an automaton: what must follow. Each octet has a word with the next state for each
// state, six bits wide, so that a step is a shift.
enum State : std::uint64_t {
    ACCEPT,
    REJECT,
    ONE_MORE,
    TWO_MORE,
    THREE_MORE,
    BEHIND_E0,
    BEHIND_ED,
    BEHIND_F0,
    BEHIND_F4,
    STATES
};

constexpr unsigned int STATE_BITS = 6;

constexpr State next(State state, unsigned int octet) {
    const bool isContinuation = octet >= 0x80 && octet <= 0xBF;
    switch (state) {
    case ACCEPT:
        return octet < 0x80                   ? ACCEPT
               : octet < 0xC2 || octet > 0xF4 ? REJECT
               : octet < 0xE0                 ? ONE_MORE
               : octet == 0xE0                ? BEHIND_E0
               : octet == 0xED                ? BEHIND_ED
               : octet < 0xF0                 ? TWO_MORE
               : octet == 0xF0                ? BEHIND_F0
               : octet == 0xF4                ? BEHIND_F4
                                              : THREE_MORE;
    case ONE_MORE:
        return isContinuation ? ACCEPT : REJECT;
    case TWO_MORE:
        return isContinuation ? ONE_MORE : REJECT;
    case THREE_MORE:
        return isContinuation ? TWO_MORE : REJECT;
    case BEHIND_E0:
        return isContinuation && octet >= 0xA0 ? ONE_MORE : REJECT;
    case BEHIND_ED:
        return isContinuation && octet < 0xA0 ? ONE_MORE : REJECT;
    case BEHIND_F0:
        return isContinuation && octet >= 0x90 ? TWO_MORE : REJECT;
    case BEHIND_F4:
        return isContinuation && octet < 0x90 ? TWO_MORE : REJECT;
    default:
        return REJECT;
    }
}

constexpr std::array<std::uint64_t, 256> STEPS = [] {
    std::array<std::uint64_t, 256> steps{};
    for (unsigned int octet = 0; octet < 256; ++octet) {
        for (unsigned int state = ACCEPT; state < STATES; ++state) {
            steps[octet] |= (next(static_cast<State>(state), octet) * STATE_BITS) << (state * STATE_BITS);
        }
    }
    return steps;
}();

// Of well-formed text: control characters, and what U+FFFE and U+FFFF begin with.
constexpr std::array<bool, 256> MAY_BE_ILLEGAL = [] {
    std::array<bool, 256> octets{};
    for (std::size_t c = 0; c < 0x20; ++c) {
        octets[c] = c != '\t' && c != '\n' && c != '\r';
    }
    octets[0xEF] = true;
    return octets;
}();

bool mayBeIllegal(char octet) noexcept {
    return MAY_BE_ILLEGAL[static_cast<unsigned char>(octet)];
}

// The next state: in the lowest bits, as the number of bits to shift.
TAMO_ALWAYS_INLINE std::uint64_t step(std::uint64_t state, char octet) noexcept {
    return STEPS[static_cast<unsigned char>(octet)] >> (state & 63);
}

bool isAccepted(std::uint64_t state) noexcept {
    return (state & 63) == ACCEPT;
}

#if defined(__SSE2__)
template<class Word>
std::uint64_t wordAt(const char* p) noexcept {
    Word word = 0;
    std::memcpy(&word, p, sizeof(word));
    return word;
}

// Fewer than sixteen octets, and zeros behind them; put together from registers, because a load has to wait
// for stores of other widths.
__m128i lastOctets(const char* p, std::size_t left) noexcept {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (left >= 8) {
        low = wordAt<std::uint64_t>(p);
        high = left > 8 ? wordAt<std::uint64_t>(p + left - 8) >> (8 * (16 - left)) : 0;
    } else if (left >= 4) {
        low = wordAt<std::uint32_t>(p) | wordAt<std::uint32_t>(p + left - 4) << (8 * (left - 4));
    } else {
        for (std::size_t i = left; i-- > 0;) {
            low = low << 8 | static_cast<unsigned char>(p[i]);
        }
    }
    return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
}

// Whether text is well-formed and has none of the octets behind which not every continuation may follow,
// which is left to the automaton: sixteen octets at a time, a bit for each.
bool isCommonUTF8(std::string_view text) noexcept {
    constexpr std::size_t WIDTH = sizeof(__m128i);
    const char* p = text.data();
    std::size_t left = text.size();
    unsigned int expected = 0; // continuations, of the next octets
    while (left != 0) {
        const __m128i octets =
            left >= WIDTH ? _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)) : lastOctets(p, left);
        const auto areAbove = [octets](int octet) { // among those beyond ASCII
            return static_cast<unsigned int>(
                _mm_movemask_epi8(_mm_cmpgt_epi8(octets, _mm_set1_epi8(static_cast<char>(octet)))));
        };
        const auto are = [octets](int octet) {
            return _mm_cmpeq_epi8(octets, _mm_set1_epi8(static_cast<char>(octet)));
        };
        const auto beyondASCII = static_cast<unsigned int>(_mm_movemask_epi8(octets));
        const unsigned int leads = areAbove(0xBF) & beyondASCII;
        const unsigned int leadsOfThree = areAbove(0xDF) & beyondASCII;
        const unsigned int others = areAbove(0xEF) & beyondASCII;
        const __m128i restricting =
            _mm_or_si128(_mm_or_si128(are(0xC0), are(0xC1)), _mm_or_si128(are(0xE0), are(0xED)));
        expected |= leads << 1 | leadsOfThree << 2;
        if (((expected & 0xFFFF) ^ (beyondASCII & ~leads)) != 0 || others != 0 ||
            _mm_movemask_epi8(restricting) != 0) {
            return false;
        }
        expected >>= WIDTH;
        const std::size_t done = left < WIDTH ? left : WIDTH;
        p += done;
        left -= done;
    }
    return expected == 0;
}
#else
bool isCommonUTF8(std::string_view) noexcept {
    return false;
}
#endif

} // namespace

std::size_t Characters::decode(const char* p, const char* pEnd, char32_t& character) noexcept {
    const auto octet = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(p[i])); };
    const auto left = static_cast<std::size_t>(pEnd - p);
    const char32_t lead = octet(0);
    if (lead < 0x80) {
        character = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0 && left >= 2 && (octet(1) & 0xC0) == 0x80) {
        character = (lead & 0x1F) << 6 | (octet(1) & 0x3F);
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0 && left >= 3 && (octet(1) & 0xC0) == 0x80 && (octet(2) & 0xC0) == 0x80) {
        character = (lead & 0x0F) << 12 | (octet(1) & 0x3F) << 6 | (octet(2) & 0x3F);
        return character >= 0x800 && (character < 0xD800 || character > 0xDFFF) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead < 0xF5 && left >= 4 && (octet(1) & 0xC0) == 0x80 && (octet(2) & 0xC0) == 0x80 &&
        (octet(3) & 0xC0) == 0x80) {
        character =
            (lead & 0x07) << 18 | (octet(1) & 0x3F) << 12 | (octet(2) & 0x3F) << 6 | (octet(3) & 0x3F);
        return character >= 0x10000 && character <= 0x10FFFF ? 4 : 0;
    }
    return 0;
}

// ASCII eight octets at a time. A long text is gone through in two places at once, for a step has to wait for
// the one before.
bool Characters::isWellFormed(std::string_view text) noexcept {
    if (isCommonUTF8(text)) {
        return true;
    }
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    const char* q = p + text.size() / 2;
    while (q != p && (*q & 0xC0) == 0x80) {
        --q;
    }
    const char* const pMiddle = q;
    std::uint64_t state = ACCEPT;
    std::uint64_t other = ACCEPT;
    while (static_cast<std::size_t>(pMiddle - p) >= WORD && static_cast<std::size_t>(pEnd - q) >= WORD) {
        if (!isAccepted(state | other) || beyondASCII(wordAt(p) | wordAt(q)) != 0) {
            for (std::size_t i = 0; i < WORD; ++i) {
                state = step(state, p[i]);
                other = step(other, q[i]);
            }
        }
        p += WORD;
        q += WORD;
    }
    for (; p != pMiddle; ++p) {
        state = step(state, *p);
    }
    for (; q != pEnd; ++q) {
        other = step(other, *q);
    }
    return isAccepted(state) && isAccepted(other);
}

// The first octet that is not part of a character that is allowed.
template<class IsAllowed>
std::size_t Characters::find(std::string_view text, const IsAllowed& isAllowed) noexcept {
    const char* const pEnd = text.data() + text.size();
    for (const char* p = text.data(); p != pEnd;) {
        char32_t c = 0;
        const std::size_t length = decode(p, pEnd, c);
        if (length == 0 || !isAllowed(c)) {
            return static_cast<std::size_t>(p - text.data());
        }
        p += length;
    }
    return NONE;
}

std::size_t Characters::findIllFormed(std::string_view text) noexcept {
    return isWellFormed(text) ? NONE : find(text, [](char32_t) { return true; });
}

std::size_t Characters::findIllegal(std::string_view text) noexcept {
    return isWellFormed(text) && std::none_of(text.begin(), text.end(), mayBeIllegal)
               ? NONE
               : find(text, isCharacter);
}

bool Characters::isOtherNCName(std::string_view name) noexcept {
    const char* const pEnd = name.data() + name.size();
    for (const char* p = name.data(); p != pEnd;) {
        char32_t c = 0;
        const std::size_t length = decode(p, pEnd, c);
        const bool isFirst = p == name.data();
        if (length == 0 || (length == 1 && !(classOf(*p) & (isFirst ? NAME_START : NAME))) ||
            (length > 1 && !(isFirst ? isNameStart(c) : isNameCharacter(c)))) {
            return false;
        }
        p += length;
    }
    return true;
}

} // namespace Tamo::XML
