#pragma once

#include "platform/x11/X11Connection.h"

/// The order of the program's own surfaces among each other: all of them stand above every other
/// application's windows, a higher level above a lower one. Main thread, Qt's connection.
namespace snapvane::x11::StackingOrder {

/// Brings the window to the front of its level and keeps it in the order until `remove`.
void raise(const Server& server, xcb_window_t window, int level);
/// The same, but a window that is in the order already keeps its place in its level: what is shown
/// again and again in the right place costs the server nothing.
void hold(const Server& server, xcb_window_t window, int level);
void remove(xcb_window_t window);

} // namespace snapvane::x11::StackingOrder
