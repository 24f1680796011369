#ifndef TAMO_FINF_STATISTICSPICTURE_H
#define TAMO_FINF_STATISTICSPICTURE_H

#include "inspect/DocumentStatistics.h"
#include <ostream>
#include <vector>

namespace finf {

/// The statistics of documents as a picture (SVG 1.1): for each document the sizes of its forms, the one of
/// Fast Infoset divided by what its octets are spent on.
class StatisticsPicture {
public:
    /// Writes the picture to a stream.
    static void write(std::ostream& out, const std::vector<DocumentStatistics>& documents);
};

} // namespace finf

#endif
