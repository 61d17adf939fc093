#include "platform/x11/X11OverlaySurface.h"

#include "platform/x11/StackingOrder.h"

#include <array>

namespace snapvane::x11 {

namespace {

std::uint8_t veilAlpha(double dimAmount) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(dimAmount, 0.0, 1.0) * 255));
}

} // namespace

X11OverlaySurface::X11OverlaySurface(const Server& server, const Screen& screen,
                                     const OverlayOptions& options, bool translucent,
                                     xcb_cursor_t cursor)
    : m_server(server), m_area(screen.nativeFrame), m_level(options.level),
      m_translucent(translucent),
      m_depth(translucent ? std::uint8_t{32} : server.screen->root_depth),
      m_format(translucent ? RenderFormats::of(server).argb : RenderFormats::of(server).root) {
    m_backdrop.veilAlpha = veilAlpha(options.dimAmount);
    if (!m_translucent) {
        createBackdrop(m_backdrop.veilAlpha);
    }
    m_window = createWindow(options, cursor);
}

X11OverlaySurface::~X11OverlaySurface() {
    StackingOrder::remove(m_window);
    xcb_connection_t* connection = m_server.connection;
    xcb_destroy_window(connection, m_window);
    if (m_backBuffer != XCB_NONE) {
        xcb_render_free_picture(connection, m_backPicture);
        xcb_free_pixmap(connection, m_backBuffer);
        xcb_free_gc(connection, m_gc);
    }
    if (m_plainPixmap != XCB_NONE) {
        xcb_render_free_picture(connection, m_backdrop.plain);
        xcb_render_free_picture(connection, m_backdrop.veiled);
        xcb_free_pixmap(connection, m_plainPixmap);
        xcb_free_pixmap(connection, m_veiledPixmap);
    }
    if (m_colormap != XCB_NONE) {
        xcb_free_colormap(connection, m_colormap);
    }
}

void X11OverlaySurface::markExposed(const QRegion& region) {
    // As long as nothing was drawn the background is the right picture.
    if (m_backBuffer != XCB_NONE) {
        m_dirty += region;
    }
}

void X11OverlaySurface::paint(std::size_t index, OverlayClient& client) {
    const QRegion region = m_dirty.intersected(QRect(0, 0, m_area.size.width, m_area.size.height));
    m_dirty = {};
    if (region.isEmpty()) {
        return;
    }
    if (m_backBuffer == XCB_NONE) {
        createBackBuffer();
    }
    X11Canvas canvas(m_server, m_backPicture, m_backdrop, region);
    client.paintOverlay(index, canvas, region);
    copyToWindow(region);
}

void X11OverlaySurface::show() {
    xcb_map_window(m_server.connection, m_window);
    StackingOrder::raise(m_server, m_window, m_level);
}

void X11OverlaySurface::conceal() {
    if (m_translucent) {
        const std::uint32_t transparent = 0;
        xcb_change_window_attributes(m_server.connection, m_window, XCB_CW_BACK_PIXEL,
                                     &transparent);
        xcb_clear_area(m_server.connection, 0, m_window, 0, 0, 0, 0);
    }
    const std::array<std::uint32_t, 2> offDesktop = {
        static_cast<std::uint32_t>(-m_area.size.width - 1),
        static_cast<std::uint32_t>(-m_area.size.height - 1)};
    xcb_configure_window(m_server.connection, m_window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         offDesktop.data());
    // Nobody is to take what is left of it for a selection.
    setWindowIdentity(m_server, m_window, "Snapvane Concealed");
}

xcb_window_t X11OverlaySurface::createWindow(const OverlayOptions& options, xcb_cursor_t cursor) {
    xcb_connection_t* connection = m_server.connection;
    const xcb_visualid_t visual =
        m_translucent ? argbVisual(m_server) : m_server.screen->root_visual;
    xcb_colormap_t colormap = m_server.screen->default_colormap;
    if (m_translucent) {
        m_colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, m_colormap, m_server.root(),
                            visual);
        colormap = m_colormap;
    }
    const std::uint32_t veil = static_cast<std::uint32_t>(veilAlpha(options.dimAmount)) << 24;
    const std::array<std::uint32_t, 6> values = {
        m_translucent ? veil : m_veiledPixmap, 0, 1, XCB_EVENT_MASK_EXPOSURE, colormap, cursor};
    const std::uint32_t background =
        m_translucent ? std::uint32_t{XCB_CW_BACK_PIXEL} : std::uint32_t{XCB_CW_BACK_PIXMAP};
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(
        connection, m_depth, window, m_server.root(), static_cast<std::int16_t>(m_area.origin.x),
        static_cast<std::int16_t>(m_area.origin.y), static_cast<std::uint16_t>(m_area.size.width),
        static_cast<std::uint16_t>(m_area.size.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        background | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP | XCB_CW_CURSOR,
        values.data());
    setWindowIdentity(m_server, window, "Snapvane Selection");
    setCompositorHints(m_server, window);
    return window;
}

void X11OverlaySurface::createBackdrop(std::uint8_t alpha) {
    xcb_connection_t* connection = m_server.connection;
    m_plainPixmap = createPixmap();
    m_veiledPixmap = createPixmap();
    m_backdrop.plain = createPicture(m_plainPixmap, XCB_SUBWINDOW_MODE_CLIP_BY_CHILDREN);
    m_backdrop.veiled = createPicture(m_veiledPixmap, XCB_SUBWINDOW_MODE_CLIP_BY_CHILDREN);

    // Copying, unlike drawing, takes the windows that stand on the root along when it is told to.
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    const std::array<std::uint32_t, 2> values = {XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    xcb_create_gc(connection, gc, m_server.root(),
                  XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values.data());
    const auto width = static_cast<std::uint16_t>(m_area.size.width);
    const auto height = static_cast<std::uint16_t>(m_area.size.height);
    xcb_copy_area(connection, m_server.root(), m_plainPixmap, gc,
                  static_cast<std::int16_t>(m_area.origin.x),
                  static_cast<std::int16_t>(m_area.origin.y), 0, 0, width, height);
    xcb_copy_area(connection, m_plainPixmap, m_veiledPixmap, gc, 0, 0, 0, 0, width, height);
    xcb_free_gc(connection, gc);

    const xcb_rectangle_t all = {0, 0, width, height};
    const xcb_render_color_t veil = {0, 0, 0, static_cast<std::uint16_t>(alpha * 257)};
    xcb_render_fill_rectangles(connection, XCB_RENDER_PICT_OP_OVER, m_backdrop.veiled, veil, 1,
                               &all);
}

xcb_pixmap_t X11OverlaySurface::createPixmap() {
    const xcb_pixmap_t pixmap = xcb_generate_id(m_server.connection);
    xcb_create_pixmap(m_server.connection, m_depth, pixmap, m_server.root(),
                      static_cast<std::uint16_t>(m_area.size.width),
                      static_cast<std::uint16_t>(m_area.size.height));
    return pixmap;
}

xcb_render_picture_t X11OverlaySurface::createPicture(xcb_drawable_t drawable,
                                                      std::uint32_t subwindows) {
    const xcb_render_picture_t picture = xcb_generate_id(m_server.connection);
    xcb_render_create_picture(m_server.connection, picture, drawable, m_format,
                              XCB_RENDER_CP_SUBWINDOW_MODE, &subwindows);
    return picture;
}

void X11OverlaySurface::createBackBuffer() {
    m_backBuffer = createPixmap();
    m_backPicture = createPicture(m_backBuffer, XCB_SUBWINDOW_MODE_CLIP_BY_CHILDREN);
    m_gc = xcb_generate_id(m_server.connection);
    const std::uint32_t noExposures = 0;
    xcb_create_gc(m_server.connection, m_gc, m_backBuffer, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
}

void X11OverlaySurface::copyToWindow(const QRegion& region) {
    for (const xcb_rectangle_t& rect : rectanglesOf(region)) {
        xcb_copy_area(m_server.connection, m_backBuffer, m_window, m_gc, rect.x, rect.y, rect.x,
                      rect.y, rect.width, rect.height);
    }
}

} // namespace snapvane::x11
