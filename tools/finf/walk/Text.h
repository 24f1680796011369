#ifndef TAMO_FINF_TEXT_H
#define TAMO_FINF_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace finf {

/// Text of documents made fit to be shown, whatever octets it consists of. Stateless; all operations are
/// static.
class Text {
public:
    /// Appends text in quotes on one line: control characters and what is no UTF-8 as \xNN, quotes and
    /// backslashes behind a backslash. Of text longer than limit octets about that much, and how long it is.
    static void appendQuoted(std::string& line, std::string_view text, std::size_t limit);

    /// Appends text as a JSON string; octets that are no UTF-8 become U+FFFD. Of text longer than limit
    /// octets about that much.
    static void appendJson(std::string& json, std::string_view text, std::size_t limit = std::string::npos);

    /// Appends octets as two hexadecimal digits each.
    static void appendHex(std::string& line, std::string_view octets, std::string_view separator = {});

    /// Appends a number with at least width digits, base 10 or 16.
    static void appendNumber(std::string& line, unsigned long number, std::size_t width, int base);

private:
    static std::string_view beginning(std::string_view text, std::size_t limit);
};

} // namespace finf

#endif
