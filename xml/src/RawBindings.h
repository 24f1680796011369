#ifndef TAMO_XML_RAWBINDINGS_H
#define TAMO_XML_RAWBINDINGS_H

#include "Tamo/XML/NamespaceSupport.h"
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace Tamo::XML {

/// The namespace declarations of the elements that are open, for a document whose names Expat delivers raw.
///
/// Only the declarations that are surely right are taken. An element without any costs nothing. Owned by one
/// parse.
class RawBindings {
public:
    /// Whether the attribute of this name declares a namespace.
    static bool isDeclaration(const char* name) {
        return name[0] == 'x' && std::strncmp(name, "xmlns", 5) == 0 && (name[5] == '\0' || name[5] == ':');
    }

    /// Whether one of these attributes does: names and values in turn, then null, as Expat has them.
    static bool haveDeclaration(const char** attributes) {
        bool found = false;
        for (; *attributes; attributes += 2) {
            found = found || isDeclaration(*attributes);
        }
        return found;
    }

    /// Binds the prefixes of an element that begins as the depth-th open one. False when one of its
    /// declarations may be an error, or binds a second prefix to a name, so that attributes with different
    /// prefixes could be the same; the object is then of no more use.
    bool declare(const char** attributes, std::size_t depth);

    /// Whether the depth-th open element has declared something; it is the innermost one.
    bool areOf(std::size_t depth) const noexcept { return !_depths.empty() && _depths.back() == depth; }

    /// The prefixes that the innermost of the elements that declare something has declared, the last one
    /// first. Valid until the next operation that is not const.
    const std::vector<const std::string*>& declaredBackwards();

    /// This element ends: forgets its declarations.
    void end();

    /// What is in force.
    const NamespaceSupport& inForce() const noexcept { return _bindings; }

private:
    NamespaceSupport _bindings;
    std::vector<std::size_t> _depths; // of the open elements that declare something
    std::vector<const std::string*> _declared;
};

} // namespace Tamo::XML

#endif
