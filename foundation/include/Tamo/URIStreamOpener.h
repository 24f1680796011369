#ifndef TAMO_URISTREAMOPENER_H
#define TAMO_URISTREAMOPENER_H

/// @file
/// Opening of streams by URI or path.
///
/// An opener knows `file:` URIs and plain paths. An application registers a factory for every other scheme
/// that it wants to serve, with the default opener for the whole process or with an opener of its own.
/// Everything is thread-safe; factories run outside the lock.

#include "Tamo/Export.h"
#include "Tamo/URI.h"
#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Tamo {

/// Opens streams by URI or path. Thread-safe.
class TAMO_API URIStreamOpener {
public:
    /// Makes the stream of a URI; throws, or returns null, when it cannot.
    using Factory = std::function<std::unique_ptr<std::istream>(const URI& uri)>;

    /// An opener for files only.
    URIStreamOpener() = default;

    URIStreamOpener(const URIStreamOpener&) = delete;
    URIStreamOpener& operator=(const URIStreamOpener&) = delete;

    /// The opener of the process.
    static URIStreamOpener& defaultOpener();

    /// Opens a file by its path or a resource by its URI, for reading from its first octet; the caller
    /// deletes the stream. Text that starts with a scheme and ':' is a URI, all other text a path, taken
    /// literally.
    ///
    /// Throws UnknownURISchemeException that names the scheme; FileNotFoundException, or OpenFileException
    /// when the file is a directory or cannot be read, that names the path; SyntaxException for a malformed
    /// URI; and whatever a factory throws.
    std::istream* open(const std::string& pathOrURI) const;

    /// Makes factory serve a scheme, in any letter case; ExistsException when the scheme is served already.
    void registerScheme(const std::string& scheme, Factory factory);

    /// Ends a registration; NotFoundException when there is none.
    void unregisterScheme(const std::string& scheme);

    /// True when URIs of the scheme can be opened.
    bool supportsScheme(const std::string& scheme) const;

private:
    mutable std::mutex _mutex;
    std::map<std::string, Factory> _factories;
};

} // namespace Tamo

#endif
