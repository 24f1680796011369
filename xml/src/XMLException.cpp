#include "Tamo/XML/XMLException.h"

namespace Tamo::XML {

TAMO_IMPLEMENT_EXCEPTION(XMLException, ::Tamo::RuntimeException, "Tamo::XML::", "XML exception")

} // namespace Tamo::XML
