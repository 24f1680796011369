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
        if (!isPlain(text)) {
            requireOtherText(what, text);
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

    // Not zero where one of eight octets may be beyond ASCII or a control character.
    static std::uint64_t special(std::uint64_t octets) noexcept {
        return (octets | (octets - 0x20 * ONES)) & HIGH_BITS;
    }
    static std::uint64_t special8(const char* p) noexcept { return special(wordAt<std::uint64_t>(p)); }

    template<class Word>
    static TAMO_ALWAYS_INLINE Word wordAt(const char* p) noexcept {
        Word word = 0;
        std::memcpy(&word, p, sizeof(word));
        return word;
    }

    // True for most texts that have no line ends; false says nothing.
    static TAMO_ALWAYS_INLINE bool isPlain(std::string_view text) noexcept {
        const char* p = text.data();
        const std::size_t size = text.size();
        if (size >= 8) {
            // The last eight octets, of which some are perhaps among the others as well.
            const char* const pLast = p + size - 8;
            std::uint64_t special = special8(pLast);
            for (; p < pLast; p += 8) {
                special |= special8(p);
            }
            return special == 0;
        }
        if (size >= 4) {
            const std::uint64_t octets =
                wordAt<std::uint32_t>(p) | std::uint64_t{wordAt<std::uint32_t>(p + size - 4)} << 32;
            return special(octets) == 0;
        }
        if (size == 0) {
            return true;
        }
        const auto octet = [p](std::size_t at) { return std::uint64_t{static_cast<unsigned char>(p[at])}; };
        return special((ONES * 0x20) << 24 | octet(0) | octet(size / 2) << 8 | octet(size - 1) << 16) == 0;
    }

    static void requireOtherText(const char* what, std::string_view text);
    [[noreturn]] TAMO_COLD static void refuseText(const char* what, std::string_view text, std::size_t place);
    [[noreturn]] TAMO_COLD static void refuseSize(const char* what, std::size_t size);
    [[noreturn]] TAMO_COLD static void refuseName(const char* what, std::string_view name);
};

} // namespace Tamo::FastInfoset

#endif
