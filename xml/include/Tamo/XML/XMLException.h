#ifndef TAMO_XML_XMLEXCEPTION_H
#define TAMO_XML_XMLEXCEPTION_H

/// @file
/// The base of the exceptions of the XML layer: an XML document, or events that cannot become one, are wrong.
/// Values like every Tamo::Exception; not thread-bound.

#include "Tamo/Exception.h"

namespace Tamo::XML {

/// Base of the XML layer's exceptions; thrown itself by XMLWriter for what XML cannot carry.
TAMO_DECLARE_EXCEPTION(XMLException, ::Tamo::RuntimeException)

} // namespace Tamo::XML

#endif
