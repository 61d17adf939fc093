#include "platform/x11/X11SpriteWindow.h"

#include "platform/x11/RoundedShape.h"
#include "platform/x11/StackingOrder.h"

#include <QCoreApplication>
#include <QTimer>

#include <array>
#include <chrono>

#include <xcb/xfixes.h>

namespace snapvane::x11 {

namespace {

// From the shape extension's protocol: what is seen, and what takes clicks.
constexpr std::uint8_t boundingShape = 0;
constexpr std::uint8_t inputShape = 2;

// Several frames of a slow compositor.
constexpr std::chrono::milliseconds parkedLifetime(500);

std::uint32_t coordinate(int value) {
    return static_cast<std::uint32_t>(value);
}

} // namespace

X11SpriteWindow::X11SpriteWindow(const Server& server, const SpriteOptions& options, Pixels pixels,
                                 std::uint32_t background)
    : m_server(server), m_level(options.level), m_pixels(pixels),
      m_depth(pixels == Pixels::Translucent ? std::uint8_t{32} : server.screen->root_depth),
      m_area{{-1, -1}, {1, 1}} {
    create(background);
    setWindowIdentity(server, m_window, options.name.toUtf8());
    setCompositorHints(server, m_window);
    ignoreInput();
}

X11SpriteWindow::~X11SpriteWindow() {
    hide();
    const auto destroy = [server = m_server, window = m_window, colormap = m_colormap] {
        xcb_destroy_window(server.connection, window);
        if (colormap != XCB_NONE) {
            xcb_free_colormap(server.connection, colormap);
        }
        xcb_flush(server.connection);
    };
    // A compositor that is told of the moving away and of the end in one go fades out the window at
    // its old place.
    if (m_mapped && QCoreApplication::instance() != nullptr && hasCompositor(m_server)) {
        QTimer::singleShot(parkedLifetime, QCoreApplication::instance(), destroy);
    } else {
        destroy();
    }
}

void X11SpriteWindow::mapParked() {
    park();
    map();
    xcb_flush(m_server.connection);
}

void X11SpriteWindow::show(const DeviceRect& area) {
    move(area);
    map();
    if (!std::exchange(m_visible, true)) {
        ++m_showing;
    }
    StackingOrder::hold(m_server, m_window, m_level);
}

void X11SpriteWindow::hide() {
    if (!std::exchange(m_visible, false)) {
        return;
    }
    StackingOrder::remove(m_window);
    if (m_pixels == Pixels::Translucent) {
        // For compositors that let windows glide to where they are moved.
        xcb_clear_area(m_server.connection, 0, m_window, 0, 0, 0, 0);
    }
    park();
    xcb_flush(m_server.connection);
}

void X11SpriteWindow::unmapLater() {
    QTimer::singleShot(parkedLifetime, &m_context, [this, showing = m_showing] {
        if (showing == m_showing && !m_visible) {
            xcb_unmap_window(m_server.connection, m_window);
            xcb_flush(m_server.connection);
            m_mapped = false;
        }
    });
}

void X11SpriteWindow::setShape(const std::vector<RoundedArea>& shape) {
    if (shape == m_shape || !hasExtension(m_server, &xcb_xfixes_id)) {
        return;
    }
    m_shape = shape;
    std::vector<xcb_rectangle_t> rows;
    for (const RoundedArea& rounded : shape) {
        const PixelRect& area = rounded.area;
        for (xcb_rectangle_t row :
             roundedRows({area.width, area.height}, rounded.radius, ShapeEdge::Centres)) {
            row.x = static_cast<std::int16_t>(row.x + area.x);
            row.y = static_cast<std::int16_t>(row.y + area.y);
            rows.push_back(row);
        }
    }
    const xcb_xfixes_region_t region = xcb_generate_id(m_server.connection);
    xcb_xfixes_create_region(m_server.connection, region, static_cast<std::uint32_t>(rows.size()),
                             rows.data());
    xcb_xfixes_set_window_shape_region(m_server.connection, m_window, boundingShape, 0, 0, region);
    xcb_xfixes_destroy_region(m_server.connection, region);
}

void X11SpriteWindow::create(std::uint32_t background) {
    xcb_connection_t* connection = m_server.connection;
    xcb_visualid_t visual = m_server.screen->root_visual;
    xcb_colormap_t colormap = m_server.screen->default_colormap;
    if (m_pixels == Pixels::Translucent) {
        visual = argbVisual(m_server);
        m_colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, m_colormap, m_server.root(),
                            visual);
        colormap = m_colormap;
    }
    const std::array<std::uint32_t, 4> values = {background, 0, 1, colormap};
    m_window = xcb_generate_id(connection);
    xcb_create_window(
        connection, m_depth, m_window, m_server.root(), static_cast<std::int16_t>(m_area.origin.x),
        static_cast<std::int16_t>(m_area.origin.y), static_cast<std::uint16_t>(m_area.size.width),
        static_cast<std::uint16_t>(m_area.size.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
        values.data());
}

void X11SpriteWindow::map() {
    if (!std::exchange(m_mapped, true)) {
        xcb_map_window(m_server.connection, m_window);
    }
}

void X11SpriteWindow::ignoreInput() {
    if (!hasExtension(m_server, &xcb_xfixes_id)) {
        return;
    }
    const xcb_xfixes_region_t nothing = xcb_generate_id(m_server.connection);
    xcb_xfixes_create_region(m_server.connection, nothing, 0, nullptr);
    xcb_xfixes_set_window_shape_region(m_server.connection, m_window, inputShape, 0, 0, nothing);
    xcb_xfixes_destroy_region(m_server.connection, nothing);
}

void X11SpriteWindow::move(const DeviceRect& area) {
    if (area == m_area) {
        return;
    }
    const bool resized = area.size != m_area.size;
    m_area = area;
    const std::array<std::uint32_t, 4> values = {
        coordinate(area.origin.x), coordinate(area.origin.y), coordinate(area.size.width),
        coordinate(area.size.height)};
    const int place = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y;
    const int size = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    xcb_configure_window(m_server.connection, m_window,
                         static_cast<std::uint16_t>(resized ? place | size : place), values.data());
}

void X11SpriteWindow::park() {
    move({{-m_area.size.width - 1, -m_area.size.height - 1}, m_area.size});
}

} // namespace snapvane::x11
