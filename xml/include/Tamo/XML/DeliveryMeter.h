#ifndef TAMO_XML_DELIVERYMETER_H
#define TAMO_XML_DELIVERYMETER_H

#include "Tamo/Export.h"
#include "Tamo/XML/DeliveryLimits.h"
#include <string>

namespace Tamo::XML {

/// Counts what a reader delivers, for the reader to keep to DeliveryLimits. Used by one thread at a time.
class TAMO_API DeliveryMeter {
public:
    /// Begins with a document.
    void start(const DeliveryLimits& limits) noexcept;

    /// Counts delivered octets. False when they may be too many, which exceeds() decides.
    TAMO_ALWAYS_INLINE bool add(UInt64 octets) noexcept { return (_delivered += octets) <= _most; }

    /// Whether they are too many after readOctets have been read: the limit with its number, else an empty
    /// text, and add() counts on.
    std::string exceeds(UInt64 readOctets);

private:
    DeliveryLimits _limits;
    UInt64 _delivered = 0;
    UInt64 _most = 0; // that needs no second look
};

} // namespace Tamo::XML

#endif
