#ifndef TAMO_FASTINFOSET_NOTATION_H
#define TAMO_FASTINFOSET_NOTATION_H

#include "Tamo/Export.h"
#include <string>

namespace Tamo::FastInfoset {

/// A notation declaration (ITU-T X.891, 7.11). A plain value; strings are UTF-8.
class TAMO_API Notation {
public:
    /// All fields empty.
    Notation() = default;

    Notation(const std::string& name, const std::string& publicId, const std::string& systemId);

    /// The name of the notation.
    const std::string& getName() const noexcept { return _name; }
    /// The public identifier; empty when there is none.
    const std::string& getPublicId() const noexcept { return _publicId; }
    /// The system identifier; empty when there is none.
    const std::string& getSystemId() const noexcept { return _systemId; }

private:
    std::string _name;
    std::string _publicId;
    std::string _systemId;
};

} // namespace Tamo::FastInfoset

#endif
