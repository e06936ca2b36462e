#pragma once

/// Intrusive smart pointer to a `McHandable`. Converts to `T*`; null when empty.
template <class T>
class McHandle {
public:
    McHandle() = default;
    McHandle(T* object) : pointer(object) {
        if (pointer) pointer->ref();
    }
    McHandle(McHandle const& other) : McHandle(other.pointer) {}
    McHandle(McHandle&& other) noexcept : pointer(other.pointer) { other.pointer = nullptr; }
    ~McHandle() { release(); }

    /// The new object is taken before the old one is given up, so that assigning the held object keeps it alive.
    McHandle& operator=(T* object) {
        if (object) object->ref();
        release();
        pointer = object;
        return *this;
    }
    McHandle& operator=(McHandle const& other) { return *this = other.pointer; }
    McHandle& operator=(McHandle&& other) noexcept {
        // The old object may own `other`: it goes last.
        McHandle taken(static_cast<McHandle&&>(other));
        T* old = pointer;
        pointer = taken.pointer;
        taken.pointer = old;
        return *this;
    }

    operator T*() const { return pointer; }
    T* operator->() const { return pointer; }

    /// Empties the handle without deleting the object, which keeps one reference less: the caller owns it from now on.
    T* handOut() {
        T* object = pointer;
        pointer = nullptr;
        if (object) object->unrefNoDelete();
        return object;
    }

private:
    void release() {
        T* old = pointer;
        pointer = nullptr;
        if (old) old->unref();
    }

    T* pointer = nullptr;
};
