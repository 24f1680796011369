#include "Tamo/FastInfoset/FISException.h"

namespace Tamo::FastInfoset {

TAMO_IMPLEMENT_EXCEPTION(FISException, ::Tamo::RuntimeException,
                         "Tamo::FastInfoset::", "FastInfoset Exception")
TAMO_IMPLEMENT_EXCEPTION(FISParseException, FISException,
                         "Tamo::FastInfoset::", "FastInfoset Parse Exception")
TAMO_IMPLEMENT_EXCEPTION(FISEncodingException, FISException,
                         "Tamo::FastInfoset::", "FastInfoset Encoding Exception")

} // namespace Tamo::FastInfoset
