#ifndef TAMO_BENCHMARKS_PEERJOBS_H
#define TAMO_BENCHMARKS_PEERJOBS_H

#include "Comparison.h"
#include <vector>

namespace Tamo::Benchmarks {

/// What other libraries do with the same information: libxml2, Xerces-C and pugixml, reading and writing XML
/// text, and a plain serializer that only escapes.
class PeerJobs {
public:
    static std::vector<Job> all();

    /// Proves that the peers' writers write the events that they are given; throws std::runtime_error.
    static void prove(const DocumentSet& set);
};

} // namespace Tamo::Benchmarks

#endif
