#ifndef TAMO_FINF_WALK_H
#define TAMO_FINF_WALK_H

#include "walk/DocumentWalker.h"
#include <functional>
#include <string>

namespace finf {

/// Walks to the end of the document and over what is behind it, as long as goesOn() is true. Returns what is
/// wrong with the walker's current field, or nothing.
std::string faultOf(
    DocumentWalker& walker, const std::function<bool()>& goesOn = [] { return true; });

} // namespace finf

#endif
