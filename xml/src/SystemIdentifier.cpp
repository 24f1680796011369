#include "SystemIdentifier.h"
#include "Tamo/URI.h"
#include <cstddef>
#include <string_view>

namespace Tamo::XML {

std::string SystemIdentifier::normalized(const char* identifier) {
    std::string result;
    for (const char* p = identifier; p && *p; ++p) {
        if (*p != '\r') {
            result += *p;
        } else if (p[1] != '\n') {
            result += '\n';
        }
    }
    return result;
}

std::string SystemIdentifier::absolute(const char* base, const std::string& identifier) {
    if (!base || !*base || !URI::schemeOf(identifier).empty()) {
        return identifier;
    }
    if (!URI::schemeOf(base).empty()) {
        return URI(base).resolve(URI(identifier)).toString();
    }
    if (identifier.starts_with('/')) {
        return identifier;
    }
    const std::string_view path(base); // a plain path, taken literally
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? identifier : std::string(path.substr(0, slash + 1)) + identifier;
}

} // namespace Tamo::XML
