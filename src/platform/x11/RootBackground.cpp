#include "platform/x11/RootBackground.h"

#include "platform/x11/Xcb.h"

#include <array>
#include <optional>

#include <xcb/composite.h>
#include <xcb/xfixes.h>

namespace snapvane::x11 {

namespace {

// The kind of shape that decides what takes clicks, from the shape extension's protocol.
constexpr std::uint8_t inputShape = 2;

constexpr std::uint16_t middle = 0x8080;
constexpr xcb_render_color_t grey = {middle, middle, middle, 0xffff};

xcb_rectangle_t wholeTarget(const DeviceRect& area) {
    return {0, 0, static_cast<std::uint16_t>(area.size.width),
            static_cast<std::uint16_t>(area.size.height)};
}

void fillGrey(const Server& server, std::uint32_t target, const DeviceRect& area) {
    const xcb_rectangle_t all = wholeTarget(area);
    xcb_render_fill_rectangles(server.connection, XCB_RENDER_PICT_OP_SRC, target, grey, 1, &all);
}

void copy(const Server& server, const ServerPicture& source, const ServerPicture& target,
          DevicePoint from, const DeviceRect& area) {
    const xcb_rectangle_t all = wholeTarget(area);
    xcb_render_composite(server.connection, XCB_RENDER_PICT_OP_SRC, source.id(), XCB_NONE,
                         target.id(), static_cast<std::int16_t>(from.x),
                         static_cast<std::int16_t>(from.y), 0, 0, 0, 0, all.width, all.height);
}

/// A pixmap that a property of the root window names, if it is one that fits the root window.
std::optional<xcb_pixmap_t> pixmapNamedBy(const Server& server, const char* property) {
    const auto cookie = xcb_get_property(server.connection, 0, server.root(),
                                         atom(server, property), XCB_ATOM_PIXMAP, 0, 1);
    const auto reply = owned(xcb_get_property_reply(server.connection, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) {
        return std::nullopt;
    }
    const auto pixmap = *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(reply.get()));
    const auto geometryCookie = xcb_get_geometry(server.connection, pixmap);
    // Whoever made the pixmap may have taken it away without telling.
    const auto geometry = owned(xcb_get_geometry_reply(server.connection, geometryCookie, nullptr));
    return geometry && geometry->depth == server.screen->root_depth ? std::optional(pixmap)
                                                                    : std::nullopt;
}

void drawAnnounced(const Server& server, const PictureFormats& formats, const ServerPicture& target,
                   const DeviceRect& area) {
    auto pixmap = pixmapNamedBy(server, "_XROOTPMAP_ID");
    if (!pixmap) {
        pixmap = pixmapNamedBy(server, "ESETROOT_PMAP_ID");
    }
    if (!pixmap) {
        fillGrey(server, target.id(), area);
        return;
    }
    const ServerPicture tile(server);
    const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    xcb_render_create_picture(server.connection, tile.id(), *pixmap, formats.ofRoot(),
                              XCB_RENDER_CP_REPEAT, &repeat);
    copy(server, tile, target, area.origin, area);
}

void makeBackgroundWindow(const Server& server, const ServerWindow& window,
                          const DeviceRect& area) {
    xcb_connection_t* connection = server.connection;
    const std::array<std::uint32_t, 2> values = {XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
    xcb_create_window(
        connection, XCB_COPY_FROM_PARENT, window.id(), server.root(),
        static_cast<std::int16_t>(area.origin.x), static_cast<std::int16_t>(area.origin.y),
        static_cast<std::uint16_t>(area.size.width), static_cast<std::uint16_t>(area.size.height),
        0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
    setWindowIdentity(server, window.id(), "Snapvane Background");
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(connection, window.id(), XCB_CONFIG_WINDOW_STACK_MODE, &below);
    if (hasExtension(server, &xcb_xfixes_id)) {
        const xcb_xfixes_region_t nothing = xcb_generate_id(connection);
        xcb_xfixes_create_region(connection, nothing, 0, nullptr);
        xcb_xfixes_set_window_shape_region(connection, window.id(), inputShape, 0, 0, nothing);
        xcb_xfixes_destroy_region(connection, nothing);
    }
    // Redirected by hand its pixels stay where we read them and never reach the glass.
    xcb_composite_redirect_window(connection, window.id(), XCB_COMPOSITE_REDIRECT_MANUAL);
    xcb_map_window(connection, window.id());
}

/// Only the server knows what it paints where the root window is uncovered, so a window that shows
/// its parent's background is made to say it.
void drawReal(const Server& server, const PictureFormats& formats, const ServerPicture& target,
              const DeviceRect& area) {
    const ServerWindow window(server);
    makeBackgroundWindow(server, window, area);
    const ServerPicture picture(server);
    xcb_render_create_picture(server.connection, picture.id(), window.id(), formats.ofRoot(), 0,
                              nullptr);
    // A root window that has no background leaves what there is: not a picture of our own windows.
    fillGrey(server, picture.id(), area);
    xcb_clear_area(server.connection, 0, window.id(), 0, 0, 0, 0);
    copy(server, picture, target, {0, 0}, area);
}

} // namespace

void drawRootBackground(const Server& server, const PictureFormats& formats,
                        const ServerPicture& target, const DeviceRect& area, bool composited) {
    if (composited) {
        drawAnnounced(server, formats, target, area);
    } else {
        drawReal(server, formats, target, area);
    }
}

} // namespace snapvane::x11
