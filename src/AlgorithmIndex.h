#ifndef TAMO_FASTINFOSET_ALGORITHMINDEX_H
#define TAMO_FASTINFOSET_ALGORITHMINDEX_H

#include "Tamo/FastInfoset/DocumentAlgorithms.h"
#include "Tamo/FastInfoset/Encoding.h"
#include "Tamo/FastInfoset/EncodingAlgorithm.h"
#include <string>

namespace Tamo::FastInfoset {

/// Under which index the strict mode writes values by an encoding algorithm (ITU-T X.891, 8.3): that of the
/// URI which the document declares. What has none is refused by FISEncodingException, which names it.
/// Stateless; any thread.
struct AlgorithmIndex {
    AlgorithmIndex() = delete;

    /// Of the algorithm with a URI.
    static unsigned int of(const DocumentAlgorithms& declared, const std::string& uri);

    /// Of a value's own algorithm, which is a built-in one or registered with a URI.
    static unsigned int of(const DocumentAlgorithms& declared, const EncodingAlgorithm& registered,
                           const Encoding& value);
};

} // namespace Tamo::FastInfoset

#endif
