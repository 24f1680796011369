#ifndef TAMO_FASTINFOSET_LEGALSTRINGS_H
#define TAMO_FASTINFOSET_LEGALSTRINGS_H

#include "Forms.h"
#include "Tamo/Export.h"
#include "Tamo/XML/Characters.h"
#include <cstddef>
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
        if (!XML::Characters::isPlain(text)) {
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
    static void requireOtherText(const char* what, std::string_view text);
    [[noreturn]] TAMO_COLD static void refuseText(const char* what, std::string_view text, std::size_t place);
    [[noreturn]] TAMO_COLD static void refuseSize(const char* what, std::size_t size);
    [[noreturn]] TAMO_COLD static void refuseName(const char* what, std::string_view name);
};

} // namespace Tamo::FastInfoset

#endif
