#include "files/DirectoryWalk.h"
#include "files/Compression.h"
#include <algorithm>
#include <system_error>

namespace finf {

namespace fs = std::filesystem;

std::vector<fs::path> DirectoryWalk::documentsBelow(const fs::path& directory, const std::string& extension,
                                                    const Failure& failure) {
    std::vector<fs::path> open{directory};
    std::vector<fs::path> files;
    bool failed = false;
    while (!open.empty()) {
        const fs::path current = open.back();
        open.pop_back();
        std::error_code error;
        for (fs::directory_iterator it(current, error), end; !error && it != end; it.increment(error)) {
            std::error_code ignored;
            // A directory behind a symbolic link may be one that is on the list already, or lead in a circle.
            if (it->is_directory(ignored)) {
                if (!it->is_symlink(ignored)) {
                    open.push_back(it->path());
                }
            } else if (uncompressed(it->path()).extension() == extension && it->is_regular_file(ignored)) {
                files.push_back(it->path());
            }
        }
        if (error) {
            failure(current, FinfError("cannot read", error.value()));
            failed = true;
        }
    }
    if (files.empty() && !failed) {
        failure(directory, FinfError("holds no " + extension + " file"));
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> DirectoryWalk::expand(const std::vector<std::string>& inputs, bool recursive,
                                               const Failure& failure) {
    const std::string extension = ".finf";
    std::vector<std::string> paths;
    for (const std::string& input : inputs) {
        std::error_code error;
        if (input == "-" || !fs::is_directory(input, error)) {
            paths.push_back(input);
        } else if (!recursive) {
            failure(input, isDirectory("reads", extension));
        } else {
            for (const fs::path& file : documentsBelow(input, extension, failure)) {
                paths.push_back(file);
            }
        }
    }
    return paths;
}

FinfError DirectoryWalk::isDirectory(const std::string& verb, const std::string& extension) {
    return FinfError("is a directory; --recursive " + verb + " the " + extension + " files in it");
}

fs::path DirectoryWalk::uncompressed(fs::path path) {
    const std::string extension = path.extension().string();
    if (std::any_of(std::begin(COMPRESSIONS), std::end(COMPRESSIONS),
                    [&](Compression each) { return extension == extensionOf(each); })) {
        path.replace_extension();
    }
    return path;
}

} // namespace finf
