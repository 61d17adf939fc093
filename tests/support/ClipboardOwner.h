#pragma once

#include "XcbConnection.h"

#include <string_view>

namespace snapvane::testing {

/// Another program that takes a selection, keeps it for its lifetime or until somebody else takes
/// it, and never answers anybody. Test thread only.
class ClipboardOwner {
public:
    explicit ClipboardOwner(const QString& display, std::string_view selection = "CLIPBOARD");

    /// Takes it, once more if need be.
    void take();
    [[nodiscard]] bool owns() const;

private:
    XcbConnection m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
};

} // namespace snapvane::testing
