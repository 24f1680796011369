#ifndef TAMO_XML_SYSTEMIDENTIFIER_H
#define TAMO_XML_SYSTEMIDENTIFIER_H

#include <string>

namespace Tamo::XML {

/// System identifiers as Expat delivers them, made fit for use. Pure functions, thread-safe.
class SystemIdentifier {
public:
    /// The identifier with its line ends normalised: Expat leaves them as they are, against XML 1.0, 2.11.
    /// Null is the empty one.
    static std::string normalized(const char* identifier);

    /// The identifier as it is to be opened: a relative one starts from base, that of the entity that
    /// declares it, which may be null or empty.
    static std::string absolute(const char* base, const std::string& identifier);
};

} // namespace Tamo::XML

#endif
