#ifndef TAMO_XML_DUPLICATEATTRIBUTES_H
#define TAMO_XML_DUPLICATEATTRIBUTES_H

#include "Tamo/HashKey.h"
#include "Tamo/XML/Attributes.h"
#include <optional>
#include <string>
#include <vector>

namespace Tamo::XML {

/// Finds attributes that an element has twice. Owned by one writer.
class DuplicateAttributes {
public:
    /// The local name of an attribute, or the qualified one where there is none.
    static const std::string& nameOf(const Attributes& attributes, int i) {
        const std::string& localName = attributes.getLocalName(i);
        return localName.empty() ? attributes.getQName(i) : localName;
    }

    /// An attribute that stands behind another one of its name, if there is one. Takes time in the number of
    /// attributes and its logarithm.
    std::optional<int> find(const Attributes& attributes);

private:
    struct Key {
        HashKey name;
        int index;
    };

    std::vector<Key> _keys; // of one element
};

} // namespace Tamo::XML

#endif
