#include "Comparison.h"
#include <algorithm>
#include <cmath>
#include <ctime>
#include <stdexcept>

namespace Tamo::Benchmarks {

namespace {

double quantile(std::vector<double> values, double q) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(std::lround(q * static_cast<double>(values.size() - 1)))];
}

} // namespace

double Comparison::threadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::vector<Result> Comparison::measure(const DocumentSet& set) const {
    const std::size_t count = _jobs.size();
    std::vector<UInt64> numbers(count);
    std::vector<int> repetitions(count);
    for (std::size_t job = 0; job < count; ++job) {
        try {
            numbers[job] = _jobs[job].run(set);
        } catch (const NotPossible&) {
            continue;
        }
        const double start = threadSeconds();
        _jobs[job].run(set);
        const double once = std::max(threadSeconds() - start, 1e-7);
        repetitions[job] = static_cast<int>(std::ceil(_minSeconds / once));
    }

    std::vector<std::vector<double>> times(count);
    for (int round = 0; round < _rounds; ++round) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t job = (i + static_cast<std::size_t>(round)) % count;
            if (repetitions[job] == 0) {
                continue;
            }
            // What the job before has left in the processor's caches is not this one's merit or fault.
            _jobs[job].run(set);
            const double start = threadSeconds();
            for (int repetition = 0; repetition < repetitions[job]; ++repetition) {
                if (_jobs[job].run(set) != numbers[job]) {
                    throw std::runtime_error(set.name() + ": " + _jobs[job].name +
                                             " does not always give the same result");
                }
            }
            times[job].push_back((threadSeconds() - start) / repetitions[job]);
        }
    }

    std::vector<Result> results(count);
    for (std::size_t job = 0; job < count; ++job) {
        Result& result = results[job];
        if (repetitions[job] == 0) {
            result = {NONE, NONE, NONE, NONE, NONE};
            continue;
        }
        result.median = quantile(times[job], 0.5);
        result.best = quantile(times[job], 0);
        result.spread = (quantile(times[job], 0.75) - quantile(times[job], 0.25)) / result.median;
        std::vector<double> ratios;
        for (std::size_t round = 0; round < times[job].size(); ++round) {
            ratios.push_back(times[job][round] / times[0][round]);
        }
        result.ratio = quantile(ratios, 0.5);
        result.bestRatio = result.best / quantile(times[0], 0);
    }
    return results;
}

} // namespace Tamo::Benchmarks
