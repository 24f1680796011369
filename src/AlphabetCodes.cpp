#include "AlphabetCodes.h"
#include "Forms.h"
#include "LegalStrings.h"
#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/XML/Characters.h"
#include <algorithm>
#include <bit>

namespace Tamo::FastInfoset {

AlphabetCodes::AlphabetCodes(const RestrictedAlphabet& alphabet) {
    const std::string& characters = alphabet.characters();
    const auto refuse = [&](const char* why) {
        throw FISEncodingException("Cannot write the restricted alphabet " + LegalStrings::shown(characters) +
                                   ": " + why);
    };
    const char* const pEnd = characters.data() + characters.size();
    for (const char* p = characters.data(); p != pEnd;) {
        char32_t character = 0;
        const std::size_t length = XML::Characters::decode(p, pEnd, character);
        if (length == 0) {
            refuse("ill-formed UTF-8");
        }
        _codes.emplace_back(character, static_cast<UInt32>(_codes.size()));
        p += length;
    }
    if (_codes.size() < 2 || _codes.size() > Forms::MOST_INTEGER) {
        refuse("2 to 2^20 characters are possible");
    }
    _bits = static_cast<unsigned int>(std::bit_width(_codes.size()));
    std::sort(_codes.begin(), _codes.end());
    if (std::adjacent_find(_codes.begin(), _codes.end(),
                           [](const auto& a, const auto& b) { return a.first == b.first; }) != _codes.end()) {
        refuse("a character occurs twice");
    }
}

std::string AlphabetCodes::encode(std::string_view text) const {
    std::string octets;
    UInt64 pending = 0; // bits that make no octet yet
    unsigned int count = 0;
    const auto append = [&](UInt64 bits, unsigned int number) {
        pending = pending << number | bits;
        for (count += number; count >= 8;) {
            count -= 8;
            octets.push_back(static_cast<char>(pending >> count));
        }
    };
    const char* const pEnd = text.data() + text.size();
    for (const char* p = text.data(); p != pEnd;) {
        char32_t character = 0;
        const std::size_t length = XML::Characters::decode(p, pEnd, character);
        const auto it = std::lower_bound(_codes.begin(), _codes.end(), character,
                                         [](const auto& code, char32_t c) { return code.first < c; });
        if (length == 0 || it == _codes.end() || it->first != character) {
            const auto place = static_cast<std::size_t>(p - text.data());
            throw FISEncodingException("Cannot write text in a restricted alphabet, which does not have the "
                                       "character at octet " +
                                       std::to_string(place) + ", " +
                                       LegalStrings::shown(text.substr(place)));
        }
        append(it->second, _bits);
        p += length;
    }
    if (count != 0) {
        append((1u << (8 - count)) - 1, 8 - count);
    }
    return octets;
}

} // namespace Tamo::FastInfoset
