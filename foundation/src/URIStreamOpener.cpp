#include "Tamo/URIStreamOpener.h"
#include "Tamo/Bugcheck.h"
#include "Tamo/Exception.h"
#include "Tamo/Export.h"
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace Tamo {

namespace {

TAMO_CONSTINIT const std::string FILE_SCHEME("file");

std::unique_ptr<std::istream> openFile(const std::string& path) {
    // The system would cut the name off at a null character and open another file.
    if (path.find('\0') != std::string::npos) {
        throw OpenFileException(path, "null character in the name");
    }
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw FileNotFoundException(path);
    }
    if (status.type() == std::filesystem::file_type::directory) {
        throw OpenFileException(path, "is a directory");
    }
    // A pipe would make the program wait for whoever writes to it, a device has no end.
    if (status.type() != std::filesystem::file_type::regular && !error) {
        throw OpenFileException(path, "is no regular file");
    }
    auto pStream = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!pStream->is_open()) {
        throw OpenFileException(path);
    }
    return pStream;
}

std::unique_ptr<std::istream> openFileURI(const URI& uri) {
    if (!uri.getAuthority().empty() && uri.getAuthority() != "localhost") {
        throw OpenFileException(uri.toString(), "file on another host");
    }
    return openFile(uri.getPath());
}

// The scheme in lower case; text that is no scheme throws.
std::string checkedScheme(const std::string& scheme) {
    const std::string result = URI::schemeOf(scheme + ":");
    if (result.empty()) {
        throw InvalidArgumentException("Not a URI scheme", "\"" + scheme + "\"");
    }
    return result;
}

} // namespace

URIStreamOpener& URIStreamOpener::defaultOpener() {
    static URIStreamOpener opener;
    return opener;
}

std::istream* URIStreamOpener::open(const std::string& pathOrURI) const {
    const std::string scheme = URI::schemeOf(pathOrURI);
    if (scheme.empty()) {
        return openFile(pathOrURI).release();
    }
    const URI uri(pathOrURI);
    if (scheme == FILE_SCHEME) {
        return openFileURI(uri).release();
    }
    Factory factory;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        const auto it = _factories.find(scheme);
        if (it == _factories.end()) {
            throw UnknownURISchemeException(scheme);
        }
        factory = it->second;
    }
    std::unique_ptr<std::istream> pStream = factory(uri);
    if (!pStream) {
        throw OpenFileException(pathOrURI);
    }
    return pStream.release();
}

void URIStreamOpener::registerScheme(const std::string& scheme, Factory factory) {
    tamo_check_ptr(factory);
    const std::string name = checkedScheme(scheme);
    const std::lock_guard<std::mutex> lock(_mutex);
    if (name == FILE_SCHEME || !_factories.emplace(name, std::move(factory)).second) {
        throw ExistsException("URI scheme", name);
    }
}

void URIStreamOpener::unregisterScheme(const std::string& scheme) {
    const std::string name = checkedScheme(scheme);
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_factories.erase(name) == 0) {
        throw NotFoundException("URI scheme", name);
    }
}

bool URIStreamOpener::supportsScheme(const std::string& scheme) const {
    const std::string name = URI::schemeOf(scheme + ":");
    const std::lock_guard<std::mutex> lock(_mutex);
    return name == FILE_SCHEME || _factories.contains(name);
}

} // namespace Tamo
