#ifndef TAMO_XML_DELIVERYLIMITS_H
#define TAMO_XML_DELIVERYLIMITS_H

#include "Tamo/Export.h"
#include "Tamo/Types.h"

namespace Tamo::XML {

/// What a reader hands to its handlers of one document, at most.
///
/// Delivered octets are those of all names, namespace names, values and texts, each time that they are handed
/// over, and CALLBACK for each call. A document can stand for many times what it is: in Fast Infoset a short
/// index for a long string, in XML text a default value for every element. A plain value: one thread
/// at a time changes it.
struct TAMO_API DeliveryLimits {
    /// What a call counts, in octets, beside what it hands over.
    static constexpr UInt64 CALLBACK = 8;

    /// The delivered octets; no limit by default.
    UInt64 maxDeliveredOctets = 0xFFFFFFFFFFFFFFFF;

    /// The delivered octets for each octet that has been read, once there are more than
    /// amplificationThreshold. Real documents have been seen to come to 28 in Fast Infoset and to 8 in XML
    /// text.
    UInt64 maxAmplification = 200;

    /// Up to here a document may be amplified as it likes: in octets.
    UInt64 amplificationThreshold = 64 * 1024 * 1024;
};

} // namespace Tamo::XML

#endif
