#include "WindowManagerProbe.h"

#include "Wait.h"
#include "X11Probe.h"

namespace snapvane::testing {

bool managesNewWindows(const XcbConnection& connection) {
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection, window);
    connection.sync();
    const X11Probe probe(connection);
    const bool managed = waitUntil([&] { return probe.number(window, "WM_STATE").has_value(); },
                                   std::chrono::milliseconds(200));
    xcb_destroy_window(connection, window);
    connection.sync();
    return managed;
}

} // namespace snapvane::testing
