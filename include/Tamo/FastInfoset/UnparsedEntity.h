#ifndef TAMO_FASTINFOSET_UNPARSEDENTITY_H
#define TAMO_FASTINFOSET_UNPARSEDENTITY_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::FastInfoset {

/// An unparsed entity declaration (ITU-T X.891, 7.10). A plain value; strings are UTF-8.
class TAMO_API UnparsedEntity {
public:
    /// All fields empty.
    UnparsedEntity() = default;

    UnparsedEntity(const std::string& name, const std::string& publicId, const std::string& systemId,
                   const std::string& notationName);

    /// The name of the entity.
    const std::string& getName() const noexcept { return _name; }
    /// The public identifier; empty when there is none.
    const std::string& getPublicId() const noexcept { return _publicId; }
    /// The system identifier.
    const std::string& getSystemId() const noexcept { return _systemId; }
    /// The name of the entity's notation.
    const std::string& getNotationName() const noexcept { return _notationName; }

private:
    std::string _name;
    std::string _publicId;
    std::string _systemId;
    std::string _notationName;
};

} // namespace Tamo::FastInfoset

#endif
