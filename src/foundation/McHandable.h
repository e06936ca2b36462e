#pragma once

#include "foundation/export.h"

/// Base of everything that is shared through `McHandle`: an intrusive reference count. Not thread-safe.
class TARNEX_API McHandable {
public:
    McHandable() = default;
    /// A copy is an object of its own that nobody holds yet.
    McHandable(McHandable const&) {}
    McHandable& operator=(McHandable const&) { return *this; }
    virtual ~McHandable();

    /// Runs just before the object is deleted by `unref`.
    virtual void notifyDelete();

    void ref() const { ++refCount; }

    /// Gives up one reference. A count below 1 deletes the object, so that an object which was never in a handle (count
    /// 0) is deleted as well.
    void unref() const;

    /// Gives up one reference without deleting: hands an object out of a handle to an owner that counts for itself.
    void unrefNoDelete() const { --refCount; }

    mutable int refCount = 0;
};
