#ifndef TAMO_URI_H
#define TAMO_URI_H

#include "Tamo/Export.h"
#include <string>
#include <string_view>

namespace Tamo {

/// A URI reference of RFC 3986: scheme, authority, path, query and fragment.
///
/// A text without a scheme, such as a plain path, is a relative reference. The parts are kept as written, but
/// for the scheme, which is in lower case; only getPath decodes. A value, used by one thread at a time when
/// it is changed.
class TAMO_API URI {
public:
    /// The empty relative reference.
    URI() = default;

    /// The parts of text. A path with a '%' that two hexadecimal digits do not follow throws SyntaxException
    /// that names the text.
    explicit URI(const std::string& text);

    /// The scheme in lower case, empty for a relative reference.
    const std::string& getScheme() const noexcept { return _scheme; }

    /// The authority as written, without the leading "//"; empty when there is none.
    const std::string& getAuthority() const noexcept { return _authority; }

    /// The path with percent-encoded octets decoded.
    const std::string& getPath() const noexcept { return _path; }

    /// The path as written.
    const std::string& getRawPath() const noexcept { return _rawPath; }

    /// The query as written, without the '?'; empty when there is none.
    const std::string& getQuery() const noexcept { return _query; }

    /// The fragment as written, without the '#'; empty when there is none.
    const std::string& getFragment() const noexcept { return _fragment; }

    /// True when there is no scheme.
    bool isRelative() const noexcept { return _scheme.empty(); }

    /// The reference as text, as it was written but for the scheme's case.
    std::string toString() const;

    /// What reference means relative to this URI (RFC 3986, 5.2).
    URI resolve(const URI& reference) const;

    /// The scheme of text in lower case, or an empty string when text does not start with one.
    static std::string schemeOf(std::string_view text);

private:
    void setPath(std::string rawPath, std::string_view whole);

    std::string _scheme;
    std::string _authority;
    std::string _rawPath;
    std::string _path;
    std::string _query;
    std::string _fragment;
    bool _hasAuthority = false;
    bool _hasQuery = false;
    bool _hasFragment = false;
};

} // namespace Tamo

#endif
