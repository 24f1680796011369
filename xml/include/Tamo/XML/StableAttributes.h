#ifndef TAMO_XML_STABLEATTRIBUTES_H
#define TAMO_XML_STABLEATTRIBUTES_H

#include "Tamo/Export.h"
#include "Tamo/XML/Attributes.h"

namespace Tamo::XML {

/// Attributes that promise more: every reference that the list has returned stays valid, and what it refers
/// to unchanged, until startElement returns. A writer need not copy them. Used by one
/// thread at a time.
class TAMO_API StableAttributes : public Attributes {};

} // namespace Tamo::XML

#endif
