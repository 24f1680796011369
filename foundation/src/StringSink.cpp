#include "Tamo/StringSink.h"

namespace Tamo {

void StringSink::append(const char* data, std::size_t size) {
    _octets.append(data, size);
}

} // namespace Tamo
