#include "Tamo/Sink.h"

namespace Tamo {

Sink::~Sink() = default;

} // namespace Tamo
