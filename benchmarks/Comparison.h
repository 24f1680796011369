#ifndef TAMO_BENCHMARKS_COMPARISON_H
#define TAMO_BENCHMARKS_COMPARISON_H

#include "DocumentSet.h"
#include "Tamo/Types.h"
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tamo::Benchmarks {

/// Thrown by a job that cannot process a set.
struct NotPossible : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One way to process a whole set.
struct Job {
    std::string name;
    std::string description;
    /// Processes all documents and returns a number that must be the same every time.
    std::function<UInt64(const DocumentSet&)> run;
};

/// What was measured of one job on one set.
struct Result {
    double median = 0;    ///< seconds
    double best = 0;      ///< seconds
    double spread = 0;    ///< distance of the quartiles over the median
    double ratio = 0;     ///< median over the rounds of job's time / Expat's time
    double bestRatio = 0; ///< best time / Expat's best time
};

/// Measures jobs in interleaved rounds: in every round each job runs once, beginning with a different one, so
/// that a disturbance of the machine hits all of them alike. Times are those of the thread, not of the clock
/// on the wall.
class Comparison {
public:
    /// What a job that is not possible is reported with.
    static constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

    /// Compares jobs, of which the first is the yardstick, in rounds of at least minSeconds each.
    Comparison(std::vector<Job> jobs, int rounds, double minSeconds)
        : _jobs(std::move(jobs)), _rounds(rounds), _minSeconds(minSeconds) {}

    /// The results in the order of the jobs; those of a job that is NotPossible are not a number. Throws
    /// std::runtime_error when a job's number changes.
    std::vector<Result> measure(const DocumentSet& set) const;

    const std::vector<Job>& jobs() const { return _jobs; }

    /// Seconds of processor time that this thread has used.
    static double threadSeconds();

private:
    std::vector<Job> _jobs;
    int _rounds;
    double _minSeconds;
};

} // namespace Tamo::Benchmarks

#endif
