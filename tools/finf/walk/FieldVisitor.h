#ifndef TAMO_FINF_FIELDVISITOR_H
#define TAMO_FINF_FIELDVISITOR_H

#include "walk/Field.h"

namespace finf {

/// What looks at the fields of a document, one after the other in the order of the octets.
class FieldVisitor {
public:
    virtual ~FieldVisitor() = default;

    /// The next field. The fields of a document leave no bit out and share none.
    virtual void field(const Field& field) = 0;
};

} // namespace finf

#endif
