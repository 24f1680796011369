#ifndef TAMO_XML_XMLFILTER_H
#define TAMO_XML_XMLFILTER_H

#include "Tamo/Export.h"
#include "Tamo/XML/XMLReader.h"

namespace Tamo::XML {

/// A reader that takes its events from another reader (SAX2). The parent is borrowed. Used
/// by one thread at a time.
class TAMO_API XMLFilter : public XMLReader {
public:
    /// The reader that the events come from, or null.
    virtual XMLReader* getParent() const = 0;

    /// Sets the reader that the events come from.
    virtual void setParent(XMLReader* pParent) = 0;
};

} // namespace Tamo::XML

#endif
