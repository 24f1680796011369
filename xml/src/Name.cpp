#include "Tamo/XML/Name.h"

namespace Tamo::XML {

void Name::split(const std::string& qname, std::string& prefix, std::string& localName) {
    const std::size_t colon = qname.find(':');
    if (colon == std::string::npos) {
        prefix.clear();
        localName = qname;
    } else {
        localName.assign(qname, colon + 1);
        prefix.assign(qname, 0, colon);
    }
}

std::string Name::prefix(const std::string& qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string::npos ? std::string() : qname.substr(0, colon);
}

std::string Name::localName(const std::string& qname) {
    const std::size_t colon = qname.find(':');
    return colon == std::string::npos ? qname : qname.substr(colon + 1);
}

} // namespace Tamo::XML
