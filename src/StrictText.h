#ifndef TAMO_FASTINFOSET_STRICTTEXT_H
#define TAMO_FASTINFOSET_STRICTTEXT_H

#include "Refusal.h"
#include "Tamo/FastInfoset/RestrictedAlphabet.h"
#include "Tamo/XML/Characters.h"
#include <string>
#include <string_view>

namespace Tamo::FastInfoset {

/// Turns the forms of an encoded character string (ITU-T X.891, 7.17) into UTF-8 text, by the letter: what
/// cannot be turned back into the same octets is refused. Stateless; any thread.
///
/// The octets are those that the reader has read last, so that a refusal tells which of them is meant.
class StrictText {
public:
    StrictText() = delete;

    /// Refuses octets that are not well-formed UTF-8.
    static void requireUTF8(const BitStreamReader& reader, std::string_view text) {
        if (!XML::Characters::isASCII(text)) [[unlikely]] {
            requireWellFormed(reader, text);
        }
    }

    /// UTF-16, big-endian, to UTF-8, replacing text.
    static void decodeUTF16(const BitStreamReader& reader, std::string_view octets, std::string& text);

    /// The codes of a restricted alphabet (X.891, 7.17.6) to UTF-8, replacing text. A code is as wide as
    /// leaves that of nothing but ones free, which fills the last octet.
    static void decodeAlphabet(const BitStreamReader& reader, std::string_view octets,
                               const RestrictedAlphabet& alphabet, std::string& text);

    /// Refuses what is no alphabet: two characters or more, up to 2^20, all different (X.891, 8.2).
    static void requireAlphabet(const BitStreamReader& reader, std::string_view characters);

private:
    static void requireWellFormed(const BitStreamReader& reader, std::string_view text);
};

} // namespace Tamo::FastInfoset

#endif
