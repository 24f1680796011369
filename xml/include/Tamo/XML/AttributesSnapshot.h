#ifndef TAMO_XML_ATTRIBUTESSNAPSHOT_H
#define TAMO_XML_ATTRIBUTESSNAPSHOT_H

#include "Tamo/Export.h"
#include "Tamo/XML/Attributes.h"
#include <memory>
#include <typeinfo>

namespace Tamo::XML {

class AttributesImpl;

/// What a writer needs of an attribute list: the strings of all attributes at the same time.
///
/// An attribute list may return references to one string that it fills anew for each call. AttributesImpl and
/// the lists that are StableAttributes do not, and are taken as they are; any other list is copied. Used by
/// one thread at a time.
class TAMO_API AttributesSnapshot {
public:
    AttributesSnapshot() noexcept;
    AttributesSnapshot(const AttributesSnapshot&) = delete;
    AttributesSnapshot& operator=(const AttributesSnapshot&) = delete;
    ~AttributesSnapshot();

    /// The list itself, or the copy of it, which is valid until the next call.
    TAMO_ALWAYS_INLINE const Attributes& of(const Attributes& attributes) {
        return isStable(attributes) ? attributes : look(attributes);
    }

    /// Whether the list is known to be taken as it is.
    TAMO_ALWAYS_INLINE bool isStable(const Attributes& attributes) const noexcept {
        return &typeid(attributes) == _pStable;
    }

private:
    const Attributes& look(const Attributes& attributes);

    const std::type_info* _pStable = nullptr; // the class of such a list, the last one seen
    // Its class is not known here: a compiler that sees one class of lists guesses that all are of that
    // class.
    std::unique_ptr<AttributesImpl> _pCopy; // null until one is needed
};

} // namespace Tamo::XML

#endif
