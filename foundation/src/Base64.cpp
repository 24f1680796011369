#include "Tamo/Base64.h"
#include <array>

namespace Tamo {

namespace {

constexpr char ALPHABET[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// What a character means: a value below 64, or one of these, all of which have the highest bit.
constexpr unsigned char WHITE_SPACE = 0x80;
constexpr unsigned char PADDING = 0x81;
constexpr unsigned char INVALID = 0x82;

constexpr auto MEANINGS = [] {
    std::array<unsigned char, 256> meanings{};
    meanings.fill(INVALID);
    for (const char c : {' ', '\t', '\n', '\r'}) {
        meanings[static_cast<unsigned char>(c)] = WHITE_SPACE;
    }
    meanings[static_cast<unsigned char>('=')] = PADDING;
    for (unsigned char i = 0; i < 64; ++i) {
        meanings[static_cast<unsigned char>(ALPHABET[i])] = i;
    }
    return meanings;
}();

unsigned meaning(char c) noexcept {
    return MEANINGS[static_cast<unsigned char>(c)];
}

/// Stores octets.
struct Store {
    char* pOctet;
    void put(UInt32 octet) noexcept { *pOctet++ = static_cast<char>(octet); }
};

/// Counts octets.
struct Count {
    std::size_t count = 0;
    void put(UInt32) noexcept { ++count; }
};

template<class Sink>
void putGroup(Sink& sink, UInt32 bits) noexcept {
    sink.put(bits >> 16);
    sink.put(bits >> 8 & 0xFF);
    sink.put(bits & 0xFF);
}

template<class Sink>
bool decodeCharacter(unsigned value, Sink& sink, Base64::State& state) noexcept {
    if (value == WHITE_SPACE) {
        return true;
    }
    if (value == INVALID) {
        return false;
    }
    if (value == PADDING) {
        if (state.digits < 2) {
            return false;
        }
        ++state.padding;
        value = 0;
    } else if (state.padding > 0) {
        return false;
    }
    state.bits = state.bits << 6 | value;
    if (++state.digits == 4) {
        state.digits = 0;
        sink.put(state.bits >> 16 & 0xFF);
        if (state.padding < 2) {
            sink.put(state.bits >> 8 & 0xFF);
        }
        if (state.padding < 1) {
            sink.put(state.bits & 0xFF);
        }
    }
    return true;
}

template<class Sink>
bool decodeAll(std::string_view text, Sink& sink, Base64::State& state) noexcept {
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    while (p != pEnd) {
        // Whole groups without white space or padding need no state.
        while (state.digits == 0 && state.padding == 0 && pEnd - p >= 4) {
            const unsigned a = meaning(p[0]), b = meaning(p[1]), c = meaning(p[2]), d = meaning(p[3]);
            if ((a | b | c | d) > 63) {
                break;
            }
            putGroup(sink, a << 18 | b << 12 | c << 6 | d);
            p += 4;
        }
        if (p != pEnd && !decodeCharacter(meaning(*p++), sink, state)) {
            return false;
        }
    }
    return true;
}

} // namespace

void Base64::encode(std::string_view octets, std::string& text) {
    const std::size_t before = text.size();
    text.resize(before + (octets.size() + 2) / 3 * 4, '=');
    char* pText = text.data() + before;
    const auto octet = [octets](std::size_t i) -> UInt32 { return static_cast<unsigned char>(octets[i]); };
    std::size_t i = 0;
    for (; octets.size() - i >= 3; i += 3, pText += 4) {
        const UInt32 bits = octet(i) << 16 | octet(i + 1) << 8 | octet(i + 2);
        pText[0] = ALPHABET[bits >> 18];
        pText[1] = ALPHABET[bits >> 12 & 63];
        pText[2] = ALPHABET[bits >> 6 & 63];
        pText[3] = ALPHABET[bits & 63];
    }
    if (const std::size_t left = octets.size() - i; left > 0) {
        const UInt32 bits = octet(i) << 16 | (left == 2 ? octet(i + 1) << 8 : 0);
        pText[0] = ALPHABET[bits >> 18];
        pText[1] = ALPHABET[bits >> 12 & 63];
        if (left == 2) {
            pText[2] = ALPHABET[bits >> 6 & 63];
        }
    }
}

bool Base64::decode(std::string_view text, std::string& octets) {
    const std::size_t before = octets.size();
    State state;
    if (decodePiece(text, octets, state) && complete(state)) {
        return true;
    }
    octets.resize(before);
    return false;
}

bool Base64::decodedSize(std::string_view text, std::size_t& size) noexcept {
    State state;
    Count sink;
    if (!decodeAll(text, sink, state) || !complete(state)) {
        return false;
    }
    size = sink.count;
    return true;
}

bool Base64::decodePiece(std::string_view text, std::string& octets, State& state) {
    const std::size_t before = octets.size();
    octets.resize(before + text.size() / 4 * 3 + 3);
    Store sink{octets.data() + before};
    const bool valid = decodeAll(text, sink, state);
    octets.resize(static_cast<std::size_t>(sink.pOctet - octets.data()));
    return valid;
}

} // namespace Tamo
