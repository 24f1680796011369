#include "Tamo/VectorSink.h"

namespace Tamo {

void VectorSink::append(const char* data, std::size_t size) {
    const auto* const pOctets = reinterpret_cast<const std::byte*>(data);
    _octets.insert(_octets.end(), pOctets, pOctets + size); // octets do not throw when they are copied
}

} // namespace Tamo
