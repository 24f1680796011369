#ifndef TAMO_FINF_WALK_H
#define TAMO_FINF_WALK_H

#include "walk/DocumentWalker.h"
#include <functional>
#include <string>

namespace finf {

/// Walks over the documents as long as goesOn() is true, which is asked at every step, and behind each of
/// them endDocument(). Returns what is wrong with the walker's current field, or nothing; octets that begin
/// no document are wrong.
std::string faultOf(
    DocumentWalker& walker, const std::function<bool()>& goesOn = [] { return true; },
    const std::function<bool()>& endDocument = [] { return true; });

} // namespace finf

#endif
