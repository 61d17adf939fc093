#include "platform/x11/StackingOrder.h"

#include <algorithm>
#include <array>
#include <vector>

namespace snapvane::x11::StackingOrder {

namespace {

struct Entry {
    xcb_window_t window;
    int level;
};

using Entries = std::vector<Entry>;

/// Lowest level first; within a level the window raised last stands last.
Entries& entries() {
    static Entries order;
    return order;
}

Entries::iterator find(xcb_window_t window) {
    auto& order = entries();
    return std::find_if(order.begin(), order.end(),
                        [window](const Entry& entry) { return entry.window == window; });
}

/// Puts the window and everything that belongs above it over all other windows. From the top down,
/// each below the one above it, so that the server moves nothing that stands right already.
void restack(const Server& server, Entries::iterator lowest) {
    const auto& order = entries();
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(server.connection, order.back().window, XCB_CONFIG_WINDOW_STACK_MODE,
                         &above);
    for (auto upper = std::prev(order.end()); upper != lowest; --upper) {
        const std::array<std::uint32_t, 2> below = {upper->window, XCB_STACK_MODE_BELOW};
        xcb_configure_window(server.connection, std::prev(upper)->window,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             below.data());
    }
}

} // namespace

void raise(const Server& server, xcb_window_t window, int level) {
    remove(window);
    hold(server, window, level);
}

void hold(const Server& server, xcb_window_t window, int level) {
    auto& order = entries();
    auto held = find(window);
    if (held == order.end()) {
        const auto above = std::find_if(order.begin(), order.end(), [level](const Entry& entry) {
            return entry.level > level;
        });
        held = order.insert(above, {window, level});
    }
    restack(server, held);
}

void remove(xcb_window_t window) {
    std::erase_if(entries(), [window](const Entry& entry) { return entry.window == window; });
}

} // namespace snapvane::x11::StackingOrder
