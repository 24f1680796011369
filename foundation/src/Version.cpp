#include "Tamo/Version.h"

namespace Tamo {

const char* version() noexcept {
    return TAMO_VERSION_STRING;
}

} // namespace Tamo
