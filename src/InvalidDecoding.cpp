#include "Tamo/FastInfoset/InvalidDecoding.h"
#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

AutoPtr<Encoding> InvalidDecoding::decode(BitStreamReader&) {
    throw FISException("Invalid decoding defined");
}

} // namespace Tamo::FastInfoset
