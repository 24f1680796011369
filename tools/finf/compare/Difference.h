#ifndef TAMO_FINF_DIFFERENCE_H
#define TAMO_FINF_DIFFERENCE_H

#include "compare/ComparedDocument.h"
#include <optional>
#include <string>

namespace finf {

/// The first place where two documents say something different.
struct Difference {
    std::string path;   ///< "/order/item[2]/@qty"; positions count the elements of that name from 1
    std::string first;  ///< what the first document has there: a value in quotes, or words
    std::string second; ///< and the second one

    /// Reads the documents up to the first difference or to their ends.
    static std::optional<Difference> between(ComparedDocument& first, ComparedDocument& second);
};

} // namespace finf

#endif
