#include "platform/x11/ReservedEdges.h"

#include "platform/x11/Xcb.h"

#include <algorithm>

namespace snapvane::x11 {

namespace {

constexpr std::uint32_t plentyOfWords = 4096;

bool overlaps(int start, int length, std::uint32_t from, std::uint32_t to) {
    return static_cast<long long>(start) <= static_cast<long long>(to) &&
           static_cast<long long>(start) + length > static_cast<long long>(from);
}

/// How much of the screen is taken when `reach` pixels from an edge are, of which `before` lie
/// outside the screen. A claim that reaches right across the screen is meant for one behind it.
int taken(std::uint32_t reach, int before, int length) {
    const auto into = static_cast<long long>(reach) - before;
    return into > 0 && into < length ? static_cast<int>(into) : 0;
}

Owned<xcb_get_property_reply_t> property(const Server& server, xcb_get_property_cookie_t cookie) {
    auto reply = owned(xcb_get_property_reply(server.connection, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return nullptr;
    }
    return reply;
}

std::vector<xcb_window_t> managedWindows(const Server& server) {
    const auto reply = property(server, xcb_get_property(server.connection, 0, server.root(),
                                                         atom(server, "_NET_CLIENT_LIST"),
                                                         XCB_ATOM_WINDOW, 0, plentyOfWords));
    if (!reply) {
        return {};
    }
    const auto* windows = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    const auto count =
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / sizeof(xcb_window_t);
    return {windows, windows + count};
}

std::optional<Strut> strutFrom(const xcb_get_property_reply_t& reply) {
    const auto count = static_cast<std::size_t>(xcb_get_property_value_length(&reply)) / 4;
    if (count < Strut::FieldCount) {
        return std::nullopt;
    }
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(&reply));
    Strut strut;
    std::copy_n(values, std::size_t{Strut::FieldCount}, strut.fields.begin());
    return strut;
}

std::vector<Strut> struts(const Server& server) {
    std::vector<xcb_get_property_cookie_t> cookies;
    const xcb_atom_t partial = atom(server, "_NET_WM_STRUT_PARTIAL");
    for (const xcb_window_t window : managedWindows(server)) {
        cookies.push_back(xcb_get_property(server.connection, 0, window, partial, XCB_ATOM_CARDINAL,
                                           0, Strut::FieldCount));
    }
    std::vector<Strut> result;
    for (const auto cookie : cookies) {
        if (const auto reply = property(server, cookie)) {
            if (const auto strut = strutFrom(*reply)) {
                result.push_back(*strut);
            }
        }
    }
    return result;
}

PixelSize rootSize(const Server& server) {
    const auto reply = owned(xcb_get_geometry_reply(
        server.connection, xcb_get_geometry(server.connection, server.root()), nullptr));
    return reply ? PixelSize{reply->width, reply->height} : PixelSize{};
}

} // namespace

ScreenMapping::NativeScreen::Reserved reservedBy(const Strut& strut, const DeviceRect& screen,
                                                 PixelSize root) {
    const auto& f = strut.fields;
    const int x = screen.origin.x;
    const int y = screen.origin.y;
    const int width = screen.size.width;
    const int height = screen.size.height;
    ScreenMapping::NativeScreen::Reserved reserved;
    if (overlaps(y, height, f[Strut::LeftStart], f[Strut::LeftEnd])) {
        reserved.left = taken(f[Strut::Left], x, width);
    }
    if (overlaps(y, height, f[Strut::RightStart], f[Strut::RightEnd])) {
        reserved.right = taken(f[Strut::Right], root.width - (x + width), width);
    }
    if (overlaps(x, width, f[Strut::TopStart], f[Strut::TopEnd])) {
        reserved.top = taken(f[Strut::Top], y, height);
    }
    if (overlaps(x, width, f[Strut::BottomStart], f[Strut::BottomEnd])) {
        reserved.bottom = taken(f[Strut::Bottom], root.height - (y + height), height);
    }
    return reserved;
}

void reserveDockEdges(const Server& server, std::vector<ScreenMapping::NativeScreen>& screens) {
    const PixelSize root = rootSize(server);
    for (const Strut& strut : struts(server)) {
        for (auto& screen : screens) {
            const auto more = reservedBy(strut, screen.nativeFrame, root);
            screen.reserved.left = std::max(screen.reserved.left, more.left);
            screen.reserved.right = std::max(screen.reserved.right, more.right);
            screen.reserved.top = std::max(screen.reserved.top, more.top);
            screen.reserved.bottom = std::max(screen.reserved.bottom, more.bottom);
        }
    }
}

} // namespace snapvane::x11
