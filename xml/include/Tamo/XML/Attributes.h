#ifndef TAMO_XML_ATTRIBUTES_H
#define TAMO_XML_ATTRIBUTES_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// The attributes of an element (SAX2), in document order.
///
/// Owned by the reader and valid during the startElement call only. An index outside 0 ... getLength() - 1 is
/// an assertion. Look-ups by name take time in the number of attributes.
class TAMO_API Attributes {
public:
    /// The number of attributes.
    virtual int getLength() const = 0;

    /// The namespace name of attribute i; empty when it has none.
    virtual const std::string& getURI(int i) const = 0;

    /// The local name of attribute i; may be empty when the reader does not process namespaces.
    virtual const std::string& getLocalName(int i) const = 0;

    /// The qualified name of attribute i; may be empty when the reader does not know it.
    virtual const std::string& getQName(int i) const = 0;

    /// The declared type of attribute i ("CDATA" without a declaration); may be empty when unknown.
    virtual const std::string& getType(int i) const = 0;

    /// The value of attribute i.
    virtual const std::string& getValue(int i) const = 0;

    /// The index of the attribute with this expanded name; -1 when there is none.
    virtual int getIndex(const std::string& uri, const std::string& localName) const = 0;

    /// The index of the attribute with this qualified name; -1 when there is none.
    virtual int getIndex(const std::string& qname) const = 0;

    /// The type of the attribute with this expanded name; empty when there is none.
    virtual const std::string& getType(const std::string& uri, const std::string& localName) const = 0;

    /// The type of the attribute with this qualified name; empty when there is none.
    virtual const std::string& getType(const std::string& qname) const = 0;

    /// The value of the attribute with this expanded name; empty when there is none.
    virtual const std::string& getValue(const std::string& uri, const std::string& localName) const = 0;

    /// The value of the attribute with this qualified name; empty when there is none.
    virtual const std::string& getValue(const std::string& qname) const = 0;

    virtual ~Attributes() = default;
};

} // namespace Tamo::XML

#endif
