#include "platform/x11/OpenMenus.h"

#include "platform/x11/Xcb.h"

#include <algorithm>

namespace snapvane::x11 {

namespace {

struct Inquiry {
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
};

std::optional<DevicePoint> pointerPosition(const Server& server) {
    const auto cookie = xcb_query_pointer(server.connection, server.root());
    const auto reply = owned(xcb_query_pointer_reply(server.connection, cookie, nullptr));
    if (!reply || reply->same_screen == 0) {
        return std::nullopt;
    }
    return DevicePoint{reply->root_x, reply->root_y};
}

/// Asks about all windows first and reads the answers after, so that it takes one round trip.
std::vector<Inquiry> inquireChildren(const Server& server) {
    std::vector<Inquiry> inquiries;
    const auto cookie = xcb_query_tree(server.connection, server.root());
    const auto tree = owned(xcb_query_tree_reply(server.connection, cookie, nullptr));
    if (!tree) {
        return inquiries;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        inquiries.push_back({xcb_get_window_attributes(server.connection, children[i]),
                             xcb_get_geometry(server.connection, children[i])});
    }
    return inquiries;
}

bool coversScreen(const DeviceRect& window, const std::vector<DeviceRect>& screens) {
    return std::any_of(screens.begin(), screens.end(), [&window](const DeviceRect& screen) {
        const DevicePoint last = {screen.origin.x + screen.size.width - 1,
                                  screen.origin.y + screen.size.height - 1};
        return window.contains(screen.origin) && window.contains(last);
    });
}

/// The window's area when it could be a menu.
std::optional<DeviceRect> menuArea(const Server& server, const Inquiry& inquiry) {
    const auto attributes =
        owned(xcb_get_window_attributes_reply(server.connection, inquiry.attributes, nullptr));
    const auto geometry =
        owned(xcb_get_geometry_reply(server.connection, inquiry.geometry, nullptr));
    if (!attributes || !geometry || attributes->override_redirect == 0 ||
        attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
        return std::nullopt;
    }
    return DeviceRect{{geometry->x, geometry->y}, {geometry->width, geometry->height}};
}

} // namespace

bool isMenuAtPointer(const Server& server, const std::vector<DeviceRect>& screens) {
    const auto pointer = pointerPosition(server);
    bool found = false;
    // Every answer is read, also once one has been found, since each has to be freed.
    for (const Inquiry& inquiry : inquireChildren(server)) {
        const auto area = menuArea(server, inquiry);
        found =
            found || (area && pointer && area->contains(*pointer) && !coversScreen(*area, screens));
    }
    return found;
}

} // namespace snapvane::x11
