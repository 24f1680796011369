#ifndef TAMO_REFCOUNTEDOBJECT_H
#define TAMO_REFCOUNTEDOBJECT_H

#include "Tamo/Export.h"
#include <atomic>

namespace Tamo {

/// Base of objects that their holders share by counting references.
///
/// Prefer a value or std::unique_ptr; this base is for objects that several parties keep and none owns. An
/// object starts with one reference, the one that `new` made; AutoPtr takes it over. The count is atomic, so
/// that threads may hold the object; the object itself is not synchronised.
class TAMO_API RefCountedObject {
public:
    /// An object with a reference count of one.
    RefCountedObject() = default;

    RefCountedObject(const RefCountedObject&) = delete;
    RefCountedObject& operator=(const RefCountedObject&) = delete;

    /// Adds a reference.
    void duplicate() const noexcept { _count.fetch_add(1, std::memory_order_relaxed); }

    /// Removes a reference; the last one deletes the object.
    void release() const noexcept {
        if (_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }

    /// The number of references now held.
    int referenceCount() const noexcept { return _count.load(std::memory_order_acquire); }

protected:
    virtual ~RefCountedObject() = default;

private:
    mutable std::atomic<int> _count{1};
};

} // namespace Tamo

#endif
