#ifndef TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREETEXT_H
#define TAMO_FASTINFOSET_ADAPTERS_DETAIL_TREETEXT_H

#include "Tamo/FastInfoset/FISException.h"
#include "Tamo/XML/Characters.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace Tamo::FastInfoset::Adapters {

/// What strings a tree may hold: those that XML text could have given it. Programs trust trees in that, and
/// what writes them as text does not look again. All else is refused with FISException. Stateless; any
/// thread.
struct TreeText {
    TreeText() = delete;

    /// Well-formed UTF-8 of characters that XML has, U+0000 not being one.
    static void require(const char* what, std::string_view text) {
        if (!XML::Characters::isPlain(text) && !isASCIIText(text)) {
            const std::size_t place = XML::Characters::findIllegal(text);
            if (place != XML::Characters::NONE) {
                refuse(what, text, "octet " + std::to_string(place) + " is no part of a character of XML");
            }
        }
    }

    /// A name without colon (NCName).
    static void requireName(const char* what, std::string_view name) {
        if (!XML::Characters::isNCName(name)) {
            refuse(what, name, "it is no name");
        }
    }

    static void requireComment(std::string_view text) {
        require("a comment", text);
        if (text.find("--") != std::string_view::npos || text.ends_with('-')) {
            refuse("a comment", text, "it has \"--\" or ends with \"-\"");
        }
    }

    static void requireInstruction(std::string_view target, std::string_view data) {
        requireName("the target of a processing instruction", target);
        if (target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
            (target[2] | 0x20) == 'l') {
            refuse("the target of a processing instruction", target, "it is reserved");
        }
        require("the data of a processing instruction", data);
        if (data.find("?>") != std::string_view::npos) {
            refuse("the data of a processing instruction", data, "it has \"?>\"");
        }
    }

    /// An identifier that can stand between one kind of quotation marks.
    static void requireSystemId(std::string_view identifier) {
        require("a system identifier", identifier);
        if (identifier.find('"') != std::string_view::npos &&
            identifier.find('\'') != std::string_view::npos) {
            refuse("a system identifier", identifier, "it has both kinds of quotation marks");
        }
    }

    /// XML allows few characters in public identifiers.
    static void requirePublicId(std::string_view identifier) {
        static constexpr std::string_view ALLOWED =
            " \r\n-'()+,./:=?;!*#@$_%0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
        if (identifier.find_first_not_of(ALLOWED) != std::string_view::npos) {
            refuse("a public identifier", identifier, "it has a character that XML does not allow there");
        }
    }

    static bool isWhiteSpace(std::string_view text) noexcept {
        return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    }

    [[noreturn]] static void refuse(const char* what, std::string_view text, const std::string& why) {
        throw FISException(std::string("No tree can hold ") + what + " " + shown(text) + ": " + why);
    }

private:
    // Whether all is ASCII and controls are line ends and tabs; in blocks that compilers turn into vectors.
    static bool isASCIIText(std::string_view text) noexcept {
        constexpr std::size_t BLOCK = 32;
        const char* p = text.data();
        const char* const pEnd = p + text.size();
        unsigned char others = 0;
        for (; static_cast<std::size_t>(pEnd - p) >= BLOCK && others == 0; p += BLOCK) {
            for (std::size_t i = 0; i < BLOCK; ++i) {
                others |= isOther(static_cast<unsigned char>(p[i]));
            }
        }
        for (; p != pEnd; ++p) {
            others |= isOther(static_cast<unsigned char>(*p));
        }
        return others == 0;
    }
    static unsigned char isOther(unsigned char octet) noexcept {
        return static_cast<unsigned char>(
            (octet >= 0x80) | ((octet < 0x20) & (octet != '\t') & (octet != '\n') & (octet != '\r')));
    }

    // The first octets between quotation marks, those that cannot be printed as \xNN.
    static std::string shown(std::string_view text) {
        static constexpr std::size_t MOST = 64;
        static constexpr char DIGITS[] = "0123456789abcdef";
        std::string result("\"");
        for (const char c : text.substr(0, MOST)) {
            const auto octet = static_cast<unsigned char>(c);
            if (octet >= 0x20 && octet < 0x7F) {
                result += c;
            } else {
                result.append("\\x").append(1, DIGITS[octet >> 4]).append(1, DIGITS[octet & 15]);
            }
        }
        return result.append(text.size() > MOST ? "...\"" : "\"");
    }
};

} // namespace Tamo::FastInfoset::Adapters

#endif
