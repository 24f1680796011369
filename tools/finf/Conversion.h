#ifndef TAMO_FINF_CONVERSION_H
#define TAMO_FINF_CONVERSION_H

#include "Options.h"

namespace finf {

/// Converts XML text to a Fast Infoset document. Throws what FinfError::reason explains; no output is left
/// then.
void encode(const Options& options);

/// Converts a Fast Infoset document to XML text. Throws what FinfError::reason explains; no output is left
/// then.
void decode(const Options& options);

} // namespace finf

#endif
