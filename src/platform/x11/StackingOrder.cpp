#include "platform/x11/StackingOrder.h"

#include <algorithm>
#include <vector>

namespace snapvane::x11::StackingOrder {

namespace {

struct Entry {
    xcb_window_t window;
    int level;
};

/// Lowest level first; within a level the window raised last stands last.
std::vector<Entry>& entries() {
    static std::vector<Entry> order;
    return order;
}

} // namespace

void raise(const Server& server, xcb_window_t window, int level) {
    remove(window);
    auto& order = entries();
    const auto above = std::find_if(order.begin(), order.end(),
                                    [level](const Entry& entry) { return entry.level > level; });
    const auto raised = order.insert(above, {window, level});
    // Everything above it follows, so that the order among our own stays.
    for (auto entry = raised; entry != order.end(); ++entry) {
        const std::uint32_t mode = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(server.connection, entry->window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    }
}

void remove(xcb_window_t window) {
    std::erase_if(entries(), [window](const Entry& entry) { return entry.window == window; });
}

} // namespace snapvane::x11::StackingOrder
