#pragma once

#include "platform/x11/X11Connection.h"

namespace snapvane::x11 {

/// The keyboard, asked for a window that no window manager focuses. Who had it gets it back with
/// the end of the object, if the window has it still: whoever took it from the window keeps it.
/// Owned by whoever shows the window; main thread, Qt's connection.
class BorrowedFocus {
public:
    /// The window must outlive the object.
    BorrowedFocus(const Server& server, xcb_window_t window);
    ~BorrowedFocus();
    BorrowedFocus(const BorrowedFocus&) = delete;
    BorrowedFocus& operator=(const BorrowedFocus&) = delete;

    /// The window must be shown. May be asked again, for when somebody else was quicker.
    void take();
    bool isHeld() const;

private:
    xcb_window_t focused() const;
    void give(xcb_window_t window) const;

    Server m_server;
    xcb_window_t m_window;
    xcb_window_t m_lender = XCB_NONE;
};

} // namespace snapvane::x11
