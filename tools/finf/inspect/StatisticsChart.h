#ifndef TAMO_FINF_STATISTICSCHART_H
#define TAMO_FINF_STATISTICSCHART_H

#include "inspect/DocumentStatistics.h"
#include <ostream>
#include <string>

namespace finf {

/// The statistics of a document as text: bars and columns.
class StatisticsChart {
public:
    /// The stream is borrowed. Colours are for a terminal.
    StatisticsChart(std::ostream& out, bool colour) : _out(out), _colour(colour) {}

    void write(const DocumentStatistics& statistics);

private:
    void octets(const DocumentStatistics& statistics);
    void tables(const DocumentStatistics& statistics);
    void sizes(const DocumentStatistics& statistics);
    void bar(double fraction, const char* colour);

    std::ostream& _out;
    const bool _colour;
};

} // namespace finf

#endif
