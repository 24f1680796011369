#include "Tamo/URI.h"
#include "Tamo/Exception.h"
#include "Tamo/HexBinary.h"
#include <algorithm>
#include <cstddef>
#include <utility>

namespace Tamo {

namespace {

bool isAlpha(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isSchemeCharacter(char c) noexcept {
    return isAlpha(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Takes the beginning of text up to the first of the delimiters, or all of it.
std::string_view takeUntil(std::string_view& text, std::string_view delimiters) noexcept {
    const std::string_view taken = text.substr(0, text.find_first_of(delimiters));
    text.remove_prefix(taken.size());
    return taken;
}

// RFC 3986, 5.2.4, segment by segment.
std::string removeDotSegments(std::string_view path) {
    std::string result;
    const bool absolute = path.starts_with('/');
    for (std::size_t begin = absolute ? 1 : 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view segment = path.substr(begin, end - begin);
        const bool last = end == path.size();
        if (segment == "..") {
            const std::size_t slash = result.rfind('/', result.size() < 2 ? 0 : result.size() - 2);
            result.erase(slash == std::string::npos ? 0 : slash + 1);
        } else if (segment != ".") {
            result.append(segment);
            if (!last) {
                result.push_back('/');
            }
        }
        begin = end + 1;
    }
    return absolute ? "/" + result : result;
}

} // namespace

URI::URI(const std::string& text) : _scheme(schemeOf(text)) {
    std::string_view rest(text);
    if (!_scheme.empty()) {
        rest.remove_prefix(_scheme.size() + 1);
    }
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        _authority = takeUntil(rest, "/?#");
        _hasAuthority = true;
    }
    setPath(std::string(takeUntil(rest, "?#")), text);
    if (rest.starts_with('?')) {
        rest.remove_prefix(1);
        _query = takeUntil(rest, "#");
        _hasQuery = true;
    }
    if (rest.starts_with('#')) {
        _fragment = rest.substr(1);
        _hasFragment = true;
    }
}

std::string URI::toString() const {
    std::string text;
    if (!_scheme.empty()) {
        text.append(_scheme).append(":");
    }
    if (_hasAuthority) {
        text.append("//").append(_authority);
    }
    text.append(_rawPath);
    if (_hasQuery) {
        text.append("?").append(_query);
    }
    if (_hasFragment) {
        text.append("#").append(_fragment);
    }
    return text;
}

URI URI::resolve(const URI& reference) const {
    URI result(reference);
    if (reference._scheme.empty()) {
        result._scheme = _scheme;
        if (!reference._hasAuthority) {
            result._authority = _authority;
            result._hasAuthority = _hasAuthority;
            if (reference._rawPath.empty()) {
                result.setPath(_rawPath, _rawPath);
                if (!reference._hasQuery) {
                    result._query = _query;
                    result._hasQuery = _hasQuery;
                }
                return result;
            }
            if (!reference._rawPath.starts_with('/')) {
                const std::string base =
                    _hasAuthority && _rawPath.empty() ? "/" : _rawPath.substr(0, _rawPath.rfind('/') + 1);
                result._rawPath = base + reference._rawPath;
            }
        }
    }
    result.setPath(removeDotSegments(result._rawPath), result._rawPath);
    return result;
}

std::string URI::schemeOf(std::string_view text) {
    const std::string_view scheme = text.substr(0, text.find(':'));
    if (scheme.size() == text.size() || scheme.empty() || !isAlpha(scheme.front()) ||
        !std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter)) {
        return std::string();
    }
    std::string result(scheme);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

void URI::setPath(std::string rawPath, std::string_view whole) {
    std::string path;
    path.reserve(rawPath.size());
    for (std::size_t i = 0; i < rawPath.size();) {
        if (rawPath[i] != '%') {
            path.push_back(rawPath[i++]);
            continue;
        }
        const std::string_view digits = std::string_view(rawPath).substr(i + 1, 2);
        if (digits.size() != 2 || !HexBinary::decode(digits, path)) {
            throw SyntaxException("URI with an incomplete percent-encoding",
                                  "\"" + std::string(whole) + "\"");
        }
        i += 3;
    }
    _rawPath = std::move(rawPath);
    _path = std::move(path);
}

} // namespace Tamo
