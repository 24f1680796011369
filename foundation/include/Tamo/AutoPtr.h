#ifndef TAMO_AUTOPTR_H
#define TAMO_AUTOPTR_H

#include "Tamo/Bugcheck.h"
#include "Tamo/Export.h"
#include <cstddef>
#include <utility>

namespace Tamo {

/// A counting pointer to an object with `duplicate` and `release` (see RefCountedObject).
///
/// Construction from a plain pointer takes over the reference that `new` made; copies add references of their
/// own. One AutoPtr is used by one thread at a time.
template<class C>
class TAMO_API AutoPtr {
public:
    /// A null pointer.
    AutoPtr() noexcept = default;

    /// Takes over the caller's reference to ptr, which may be null.
    AutoPtr(C* ptr) noexcept : _ptr(ptr) {}

    /// Leaves the caller's reference to ptr, which may be null, to the caller, and adds one.
    static AutoPtr share(C* ptr) noexcept { return AutoPtr(duplicated(ptr)); }

    AutoPtr(const AutoPtr& other) noexcept : _ptr(duplicated(other._ptr)) {}

    AutoPtr(AutoPtr&& other) noexcept : _ptr(std::exchange(other._ptr, nullptr)) {}

    /// A further reference to an object of a derived class.
    template<class Other>
    AutoPtr(const AutoPtr<Other>& other) noexcept : _ptr(duplicated(other.get())) {}

    ~AutoPtr() {
        if (_ptr) {
            _ptr->release();
        }
    }

    AutoPtr& operator=(AutoPtr other) noexcept {
        swap(other);
        return *this;
    }

    /// Exchanges the objects of two pointers.
    void swap(AutoPtr& other) noexcept { std::swap(_ptr, other._ptr); }

    /// The object; a null pointer throws NullPointerException.
    C* operator->() const {
        tamo_check_ptr(_ptr);
        return _ptr;
    }

    /// The object; a null pointer throws NullPointerException.
    C& operator*() const {
        tamo_check_ptr(_ptr);
        return *_ptr;
    }

    /// The plain pointer, still owned by this object.
    C* get() const noexcept { return _ptr; }

    /// True when there is no object.
    bool isNull() const noexcept { return _ptr == nullptr; }

    explicit operator bool() const noexcept { return _ptr != nullptr; }

    bool operator==(const AutoPtr& other) const noexcept { return _ptr == other._ptr; }
    bool operator==(const C* ptr) const noexcept { return _ptr == ptr; }
    bool operator==(std::nullptr_t) const noexcept { return _ptr == nullptr; }

private:
    static C* duplicated(C* ptr) noexcept {
        if (ptr) {
            ptr->duplicate();
        }
        return ptr;
    }

    C* _ptr = nullptr;
};

} // namespace Tamo

#endif
