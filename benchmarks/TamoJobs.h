#ifndef TAMO_BENCHMARKS_TAMOJOBS_H
#define TAMO_BENCHMARKS_TAMOJOBS_H

#include "Comparison.h"
#include <vector>

namespace Tamo::Benchmarks {

/// The jobs of this library and the limits that the interface sets.
class TamoJobs {
public:
    static std::vector<Job> all();
};

} // namespace Tamo::Benchmarks

#endif
