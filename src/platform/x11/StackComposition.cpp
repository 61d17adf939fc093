#include "platform/x11/StackComposition.h"

#include "platform/x11/RootBackground.h"
#include "platform/x11/X11Canvas.h"
#include "platform/x11/Xcb.h"

#include <algorithm>
#include <optional>

#include <xcb/composite.h>

namespace snapvane::x11 {

namespace {

constexpr int alphaDepth = 32;
// Of the opacity's 32 bits the protocol takes 16.
constexpr int opacityShift = 16;

/// Names our versions of the extensions, which have to be told before they are used.
bool greetExtensions(const Server& server) {
    if (!hasExtension(server, &xcb_composite_id) || !hasExtension(server, &xcb_render_id)) {
        return false;
    }
    const auto compositeCookie = xcb_composite_query_version(server.connection, 0, 4);
    const auto renderCookie = xcb_render_query_version(server.connection, 0, 11);
    const auto composite =
        owned(xcb_composite_query_version_reply(server.connection, compositeCookie, nullptr));
    const auto render =
        owned(xcb_render_query_version_reply(server.connection, renderCookie, nullptr));
    // Since 0.2 the pixels of a window have a name.
    return composite && render && (composite->major_version > 0 || composite->minor_version >= 2);
}

void clip(const Server& server, const ServerPicture& target, const QRegion& region) {
    const auto rectangles = rectanglesOf(region);
    xcb_render_set_picture_clip_rectangles(server.connection, target.id(), 0, 0,
                                           static_cast<std::uint32_t>(rectangles.size()),
                                           rectangles.data());
}

DeviceRect deviceRectOf(const QRect& rect) {
    return {{rect.x(), rect.y()}, {rect.width(), rect.height()}};
}

} // namespace

StackComposition::StackComposition(const Server& server)
    : m_server(server), m_formats(server),
      m_possible(greetExtensions(server) && m_formats.ofRoot() != XCB_NONE) {}

ServerPixmap StackComposition::compose(const WindowStack& stack,
                                       const std::vector<std::uint32_t>& excluded,
                                       const QRegion& region) const {
    const QRect box = region.boundingRect();
    ServerPixmap pixmap(m_server);
    xcb_create_pixmap(m_server.connection, m_server.screen->root_depth, pixmap.id(),
                      m_server.root(), static_cast<std::uint16_t>(box.width()),
                      static_cast<std::uint16_t>(box.height()));
    const ServerPicture target(m_server);
    xcb_render_create_picture(m_server.connection, target.id(), pixmap.id(), m_formats.ofRoot(), 0,
                              nullptr);
    clip(m_server, target, region.translated(-box.topLeft()));
    drawRootBackground(m_server, m_formats, target, deviceRectOf(box), stack.composited);
    for (const StackedWindow& stacked : stack.windows) {
        const QRegion part = stacked.shape.intersected(region);
        const bool isExcluded =
            std::find(excluded.begin(), excluded.end(), stacked.window.id) != excluded.end();
        if (!isExcluded && !part.isEmpty()) {
            clip(m_server, target, part.translated(-box.topLeft()));
            draw(stacked, stack.composited, target, part.boundingRect(), box.topLeft());
        }
    }
    return pixmap;
}

void StackComposition::draw(const StackedWindow& stacked, bool composited,
                            const ServerPicture& target, const QRect& source,
                            const QPoint& corner) const {
    const TopLevelWindow& window = stacked.window;
    xcb_connection_t* connection = m_server.connection;
    const ServerPixmap pixels(m_server);
    const ServerPicture picture(m_server);
    xcb_composite_name_window_pixmap(connection, window.id, pixels.id());
    xcb_render_create_picture(connection, picture.id(), pixels.id(), m_formats.of(window.visual), 0,
                              nullptr);
    std::optional<ServerPicture> mask;
    if (composited && stacked.opacity != fullOpacity) {
        mask.emplace(m_server);
        const auto alpha = static_cast<std::uint16_t>(stacked.opacity >> opacityShift);
        xcb_render_create_solid_fill(connection, mask->id(), {0, 0, 0, alpha});
    }
    // Without a compositor the server shows the colours as they are, whatever the alpha.
    const bool blended = composited && (window.depth == alphaDepth || mask);
    xcb_render_composite(
        connection,
        blended ? std::uint8_t{XCB_RENDER_PICT_OP_OVER} : std::uint8_t{XCB_RENDER_PICT_OP_SRC},
        picture.id(), mask ? mask->id() : xcb_render_picture_t{XCB_NONE}, target.id(),
        static_cast<std::int16_t>(source.x() - window.area.origin.x),
        static_cast<std::int16_t>(source.y() - window.area.origin.y), 0, 0,
        static_cast<std::int16_t>(source.x() - corner.x()),
        static_cast<std::int16_t>(source.y() - corner.y()),
        static_cast<std::uint16_t>(source.width()), static_cast<std::uint16_t>(source.height()));
}

} // namespace snapvane::x11
