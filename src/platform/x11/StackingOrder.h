#pragma once

#include "platform/x11/X11Connection.h"

/// The order of the program's own surfaces among each other: all of them stand above every other
/// application's windows, a higher level above a lower one. Main thread, Qt's connection.
namespace snapvane::x11::StackingOrder {

/// Brings the window to the front of its level and keeps it in the order until `remove`.
void raise(const Server& server, xcb_window_t window, int level);
void remove(xcb_window_t window);

} // namespace snapvane::x11::StackingOrder
