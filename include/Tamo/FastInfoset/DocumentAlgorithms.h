#ifndef TAMO_FASTINFOSET_DOCUMENTALGORITHMS_H
#define TAMO_FASTINFOSET_DOCUMENTALGORITHMS_H

#include "Tamo/Export.h"
#include <string>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset {

/// The encoding algorithms that a document and its external vocabulary declare by their URIs (ITU-T X.891,
/// 8.3): the first one has the index 32, unless documents of its vocabulary begin at another one. Strict
/// reading and writing use them. A plain value.
class TAMO_API DocumentAlgorithms {
public:
    /// The index of the first algorithm by the standard.
    static constexpr unsigned int FIRST = 32;
    /// The largest index (X.891, C.29).
    static constexpr unsigned int LAST = 256;

    /// The index of the first algorithm.
    unsigned int firstIndex() const noexcept { return _firstIndex; }

    /// Makes the first algorithm that with an index from FIRST to LAST: 33 for documents of software that
    /// writes the number itself where the standard has the number less one. Another one throws
    /// InvalidArgumentException.
    void setFirstIndex(unsigned int index);

    /// Appends an algorithm and returns its index; one that is there already gets a second index. Beyond LAST
    /// it throws FISEncodingException.
    unsigned int add(const std::string& uri);

    /// The URIs, that at i with the index firstIndex() + i.
    const std::vector<std::string>& uris() const noexcept { return _uris; }

    /// The URI of the algorithm with an index; null when none is declared.
    const std::string* find(unsigned int index) const noexcept;

    /// The index of the algorithm with a URI; 0 when it is not declared.
    unsigned int indexOf(std::string_view uri) const noexcept;

private:
    unsigned int _firstIndex = FIRST;
    std::vector<std::string> _uris;
};

} // namespace Tamo::FastInfoset

#endif
