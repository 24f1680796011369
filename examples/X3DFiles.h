#ifndef EXAMPLES_X3DFILES_H
#define EXAMPLES_X3DFILES_H

#include "X3DVocabulary.h"
#include <fstream>
#include <stdexcept>

namespace example {

inline std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    if (lines.empty()) {
        throw std::runtime_error("cannot read " + path);
    }
    return lines;
}

/// The lists in a directory like samples/x3d.
inline X3DLists x3dLists(const std::string& directory) {
    return {linesOf(directory + "/elements.txt"), linesOf(directory + "/attributes.txt"),
            linesOf(directory + "/values.txt"), linesOf(directory + "/algorithms.txt")};
}

} // namespace example

#endif
