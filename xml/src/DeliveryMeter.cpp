#include "Tamo/XML/DeliveryMeter.h"
#include <algorithm>

namespace Tamo::XML {

void DeliveryMeter::start(const DeliveryLimits& limits) noexcept {
    _limits = limits;
    _delivered = 0;
    _most = std::min(limits.maxDeliveredOctets, limits.amplificationThreshold);
}

std::string DeliveryMeter::exceeds(UInt64 readOctets) {
    if (_delivered > _limits.maxDeliveredOctets) {
        return "delivered octets: " + std::to_string(_limits.maxDeliveredOctets);
    }
    constexpr UInt64 ALL = 0xFFFFFFFFFFFFFFFF;
    const bool isBeyondAll = readOctets != 0 && _limits.maxAmplification > ALL / readOctets;
    const UInt64 amplified = isBeyondAll ? ALL : _limits.maxAmplification * readOctets;
    const UInt64 most = std::max(amplified, _limits.amplificationThreshold);
    if (_delivered > most) {
        return "delivered octets for each octet read: " + std::to_string(_limits.maxAmplification);
    }
    _most = std::min(most, _limits.maxDeliveredOctets);
    return {};
}

} // namespace Tamo::XML
