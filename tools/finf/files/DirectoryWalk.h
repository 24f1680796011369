#ifndef TAMO_FINF_DIRECTORYWALK_H
#define TAMO_FINF_DIRECTORYWALK_H

#include "command/FinfError.h"
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace finf {

/// The documents in a directory and below it. Stateless; all operations are static.
class DirectoryWalk {
public:
    /// Takes a directory or file that cannot be used, and why.
    using Failure = std::function<void(const std::string& path, const FinfError& failure)>;

    /// The regular files whose names end with the extension, also with that of a compression behind it,
    /// sorted. Directories behind symbolic links are left out. That there is none is a failure, too.
    static std::vector<std::filesystem::path> documentsBelow(const std::filesystem::path& directory,
                                                             const std::string& extension,
                                                             const Failure& failure);

    /// The paths of a command line that reads Fast Infoset, directories replaced by the documents below them.
    /// A directory is a failure unless the walk is recursive.
    static std::vector<std::string> expand(const std::vector<std::string>& inputs, bool recursive,
                                           const Failure& failure);

    /// What is said of a directory where a file is wanted.
    static FinfError isDirectory(const std::string& verb, const std::string& extension);

    /// The name without the extension of a compression.
    static std::filesystem::path uncompressed(std::filesystem::path path);
};

} // namespace finf

#endif
