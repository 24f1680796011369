#include "walk/Text.h"
#include "Tamo/UTF8Encoding.h"
#include <charconv>

namespace finf {

namespace {

const char DIGITS[] = "0123456789abcdef";

void appendHexOctet(std::string& line, unsigned char octet) {
    line.push_back(DIGITS[octet >> 4]);
    line.push_back(DIGITS[octet & 0x0F]);
}

/// Calls use(code point or -1, octets) for each character of text.
template<class Use>
void forEachCharacter(std::string_view text, Use use) {
    const Tamo::UTF8Encoding utf8;
    while (!text.empty()) {
        std::size_t length = 0;
        const int codePoint =
            utf8.decode(reinterpret_cast<const unsigned char*>(text.data()), text.size(), length);
        use(codePoint, text.substr(0, length));
        text.remove_prefix(length);
    }
}

/// Characters that a terminal does not show, or obeys.
bool isControl(int codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
           codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
           (codePoint >= 0x2066 && codePoint <= 0x2069);
}

} // namespace

void Text::appendQuoted(std::string& line, std::string_view text, std::size_t limit) {
    const std::string_view shown = beginning(text, limit);
    line.push_back('"');
    forEachCharacter(shown, [&](int codePoint, std::string_view octets) {
        if (codePoint == '\n') {
            line.append("\\n");
        } else if (codePoint == '\t') {
            line.append("\\t");
        } else if (isControl(codePoint)) { // invalid sequences among them
            for (const char octet : octets) {
                line.append("\\x");
                appendHexOctet(line, static_cast<unsigned char>(octet));
            }
        } else {
            line.append(codePoint == '"' || codePoint == '\\' ? "\\" : "").append(octets);
        }
    });
    line.push_back('"');
    if (shown.size() < text.size()) {
        line.append("... (").append(std::to_string(text.size())).append(" octets)");
    }
}

void Text::appendJson(std::string& json, std::string_view text, std::size_t limit) {
    json.push_back('"');
    forEachCharacter(beginning(text, limit), [&](int codePoint, std::string_view octets) {
        if (codePoint < 0) {
            json.append("\xEF\xBF\xBD");
        } else if (codePoint < 0x20 || codePoint == 0x7F) {
            json.append("\\u00");
            appendHexOctet(json, static_cast<unsigned char>(codePoint));
        } else {
            json.append(codePoint == '"' || codePoint == '\\' ? "\\" : "").append(octets);
        }
    });
    json.push_back('"');
}

void Text::appendHex(std::string& line, std::string_view octets, std::string_view separator) {
    bool first = true;
    for (const char octet : octets) {
        line.append(first ? std::string_view() : separator);
        first = false;
        appendHexOctet(line, static_cast<unsigned char>(octet));
    }
}

void Text::appendNumber(std::string& line, unsigned long number, std::size_t width, int base) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, number, base);
    const auto count = static_cast<std::size_t>(result.ptr - digits);
    line.append(count < width ? width - count : 0, base == 16 ? '0' : ' ').append(digits, count);
}

// Not more than limit octets, and no part of a character; a little more than that is shown whole.
std::string_view Text::beginning(std::string_view text, std::size_t limit) {
    constexpr std::size_t SLACK = 8;
    if (limit >= text.size() || text.size() - limit <= SLACK) {
        return text;
    }
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80) {
        --limit;
    }
    return text.substr(0, limit);
}

} // namespace finf
