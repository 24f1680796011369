#ifndef TAMO_FASTINFOSET_LEGALSTRINGS_H
#define TAMO_FASTINFOSET_LEGALSTRINGS_H

#include "Forms.h"
#include "Tamo/Export.h"
#include "Tamo/XML/Characters.h"
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset {

/// What strict writing asks of strings: well-formed UTF-8 of characters that XML has, and names without
/// colon.
///
/// What is not so is refused by FISEncodingException, which says what the string is (as "the data of a
/// processing instruction"), shows it and says where it is wrong. Stateless; any thread.
struct LegalStrings {
    LegalStrings() = delete;

    /// Text of any length.
    static TAMO_ALWAYS_INLINE void requireText(const char* what, std::string_view text) {
        if (!isShortASCII(text)) {
            requireLongText(what, text);
        }
    }

    /// Text that is not empty.
    static void requireSomeText(const char* what, std::string_view text);

    /// A name without colon (NCName).
    static void requireName(const char* what, std::string_view name) {
        if (!XML::Characters::isNCName(name)) [[unlikely]] {
            refuseName(what, name);
        }
    }

    /// A length, in octets, that an identifying string or a value can have; chunks can be no longer.
    static void requireSize(const char* what, std::size_t size) {
        if (size > Forms::LengthAt6::MOST) [[unlikely]] {
            refuseSize(what, size);
        }
    }

    /// The first octets of text between quotation marks, those that cannot be printed as \\xNN.
    static std::string shown(std::string_view text);

private:
    static constexpr std::uint64_t ONES = 0x0101010101010101;
    static constexpr std::uint64_t HIGH_BITS = 0x8080808080808080;

    // Whether one of some octets may be beyond ASCII or a control character.
    static bool mayBeSpecial(std::uint64_t octets, std::uint64_t ones) noexcept {
        return ((octets | (octets - 0x20 * ones)) & HIGH_BITS) != 0;
    }

    template<class Word>
    static TAMO_ALWAYS_INLINE Word wordAt(const char* p) noexcept {
        Word word = 0;
        std::memcpy(&word, p, sizeof(word));
        return word;
    }

    // True for most short texts, without a loop; false says nothing.
    static TAMO_ALWAYS_INLINE bool isShortASCII(std::string_view text) noexcept {
        const char* const p = text.data();
        const std::size_t size = text.size();
        if (size > 16) {
            return false;
        }
        if (size >= 8) {
            return !mayBeSpecial(wordAt<std::uint64_t>(p), ONES) &&
                   !mayBeSpecial(wordAt<std::uint64_t>(p + size - 8), ONES);
        }
        if (size >= 4) {
            const std::uint64_t octets =
                wordAt<std::uint32_t>(p) | std::uint64_t{wordAt<std::uint32_t>(p + size - 4)} << 32;
            return !mayBeSpecial(octets, ONES);
        }
        std::uint64_t octets = 0x202020;
        for (std::size_t i = 0; i < size; ++i) {
            octets = octets << 8 | static_cast<unsigned char>(p[i]);
        }
        return !mayBeSpecial(octets & 0xFFFFFF, ONES & 0xFFFFFF);
    }

    static void requireLongText(const char* what, std::string_view text);
    [[noreturn]] TAMO_COLD static void refuseText(const char* what, std::string_view text, std::size_t place);
    [[noreturn]] TAMO_COLD static void refuseSize(const char* what, std::size_t size);
    [[noreturn]] TAMO_COLD static void refuseName(const char* what, std::string_view name);
};

} // namespace Tamo::FastInfoset

#endif
