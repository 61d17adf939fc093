#pragma once

#include <cstdlib>
#include <memory>

// Small helpers for talking to the X server with xcb.

namespace snapvane::x11 {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// Replies, errors and events are the caller's to free.
template <typename T> using Owned = std::unique_ptr<T, FreeDeleter>;

template <typename T> Owned<T> owned(T* memory) {
    return Owned<T>(memory);
}

} // namespace snapvane::x11
