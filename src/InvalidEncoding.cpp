#include "Tamo/FastInfoset/InvalidEncoding.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

void InvalidEncoding::encode(BitStreamWriter&, const std::string&) {
    throw FISException("Invalid encoding defined");
}

int InvalidEncoding::check(const std::string&) {
    return 0;
}

} // namespace Tamo::FastInfoset
