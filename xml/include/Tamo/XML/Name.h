#ifndef TAMO_XML_NAME_H
#define TAMO_XML_NAME_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::XML {

/// Operations on qualified names (Namespaces in XML). Stateless; thread-safe; no check of the characters.
class TAMO_API Name {
public:
    /// Splits a qualified name at its first colon; without a colon the prefix is empty. The results are
    /// other strings than qname.
    static void split(const std::string& qname, std::string& prefix, std::string& localName);

    /// The part in front of the first colon; empty without a colon.
    static std::string prefix(const std::string& qname);

    /// The part behind the first colon; the whole name without a colon.
    static std::string localName(const std::string& qname);
};

} // namespace Tamo::XML

#endif
