#include "files/DocumentKind.h"
#include <algorithm>

namespace finf {

namespace {

constexpr std::string_view IDENTIFICATION("\xE0\x00", 2); // X.891, 12.6
constexpr std::string_view BYTE_ORDER_MARKS[] = {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"};

bool isFastInfoset(std::string_view octets) {
    if (octets.starts_with("<?")) {
        const std::size_t size = std::min(octets.find('>'), octets.size() - 1) + 1;
        if (octets.substr(0, size).find("encoding='finf'") != std::string_view::npos) {
            return true;
        }
        octets.remove_prefix(size);
    }
    return octets.starts_with(IDENTIFICATION);
}

// In UTF-16, every other octet of what can stand here is zero.
bool isXML(std::string_view octets) {
    for (const std::string_view mark : BYTE_ORDER_MARKS) {
        if (octets.starts_with(mark)) {
            octets.remove_prefix(mark.size());
            break;
        }
    }
    const std::string_view ignored(" \t\r\n\0", 5);
    const std::size_t start = octets.find_first_not_of(ignored);
    if (start == std::string_view::npos || octets[start] != '<') {
        return false;
    }
    const std::size_t next = octets.find_first_not_of('\0', start + 1);
    if (next == std::string_view::npos) {
        return true;
    }
    const char c = octets[next];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80 ||
           std::string_view("?!_:").find(c) != std::string_view::npos;
}

} // namespace

bool mayBeFastInfoset(int octet) {
    return octet == static_cast<unsigned char>(IDENTIFICATION[0]) || octet == '<';
}

DocumentKind kindOf(std::string_view beginning) {
    const std::string_view octets = beginning.substr(0, KIND_OCTETS);
    return octets.empty()          ? DocumentKind::EMPTY
           : isFastInfoset(octets) ? DocumentKind::FAST_INFOSET
           : isXML(octets)         ? DocumentKind::XML
                                   : DocumentKind::UNKNOWN;
}

} // namespace finf
