#pragma once

#include "X11TestDesktop.h"
#include "support/PatternPixmap.h"
#include "support/Wait.h"
#include "support/X11Probe.h"

#include <QByteArray>
#include <QRegion>

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include <xcb/render.h>
#include <xcb/xfixes.h>

namespace snapvane {

/// A visual with an alpha channel.
inline xcb_visualid_t alphaVisual(const testing::XcbConnection& connection) {
    auto depths = xcb_screen_allowed_depths_iterator(&connection.screen());
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth == 32) {
            return xcb_depth_visuals(depths.data)->visual_id;
        }
    }
    return XCB_NONE;
}

/// A window of another program on the test's desktop, on a connection of its own as programs have
/// it. Its picture is its background, so that the server itself paints it, but only where it is
/// shown: without a program that answers, nothing comes back by a repaint. Gone with the object.
class ForeignWindow {
public:
    struct Options {
        /// Inside the border, in native pixels of the desktop.
        QRect rect;
        int border = 0;
        /// The seed of the pattern that it shows; without an alpha channel.
        std::uint32_t seed = 1;
        /// Shows this colour instead: premultiplied 0xaarrggbb, with an alpha channel.
        std::optional<std::uint32_t> argb = {};
        /// 0 … 1.
        std::optional<double> opacity = {};
        /// From the window's corner; all of it when empty.
        QRegion shape = {};
        /// None when empty.
        QByteArray className = "Foreign";
        bool overrideRedirect = true;
        const char* windowType = nullptr;
        bool mapped = true;
    };

    explicit ForeignWindow(const Options& options)
        : m_connection(testDesktop().display()), m_id(xcb_generate_id(m_connection)) {
        create(options);
        describe(options);
        if (!options.shape.isEmpty()) {
            cut(options.shape);
        }
        if (options.mapped) {
            map();
        }
    }

    [[nodiscard]] xcb_window_t id() const { return m_id; }
    [[nodiscard]] const testing::XcbConnection& connection() const { return m_connection; }

    void map() const {
        xcb_map_window(m_connection, m_id);
        m_connection.sync();
        testing::require("a foreign window", [this] {
            const auto cookie = xcb_get_window_attributes(m_connection, m_id);
            const testing::Reply<xcb_get_window_attributes_reply_t> reply(
                xcb_get_window_attributes_reply(m_connection, cookie, nullptr));
            return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
        });
    }
    void unmap() const {
        xcb_unmap_window(m_connection, m_id);
        m_connection.sync();
    }
    void setText(const char* property, const QByteArray& text) const {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_id, m_connection.atom(property),
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()),
                            text.constData());
        m_connection.sync();
    }
    void setNumber(const char* property, xcb_atom_t type, std::uint32_t value) const {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_id, m_connection.atom(property),
                            type, 32, 1, &value);
        m_connection.sync();
    }

private:
    void create(const Options& options) {
        const QRect& rect = options.rect;
        std::uint8_t depth = XCB_COPY_FROM_PARENT;
        xcb_visualid_t visual = XCB_COPY_FROM_PARENT;
        xcb_colormap_t colormap = m_connection.screen().default_colormap;
        std::uint32_t background = XCB_CW_BACK_PIXMAP;
        std::uint32_t value = 0;
        if (options.argb) {
            depth = 32;
            visual = alphaVisual(m_connection);
            colormap = xcb_generate_id(m_connection);
            xcb_create_colormap(m_connection, XCB_COLORMAP_ALLOC_NONE, colormap,
                                m_connection.root(), visual);
            background = XCB_CW_BACK_PIXEL;
            value = *options.argb;
        } else {
            const testing::PixmapPainter painter(m_connection, m_connection.root());
            value = painter.create(rect.width(), rect.height());
            painter.paint(value, rect.width(), rect.height(), [&options](int x, int y) {
                return testing::patternPixel(x, y, options.seed);
            });
        }
        const std::array<std::uint32_t, 4> values = {value, 0xff2244aaU,
                                                     options.overrideRedirect ? 1U : 0U, colormap};
        // The place is that of the border's corner.
        xcb_create_window(
            m_connection, depth, m_id, m_connection.root(),
            static_cast<std::int16_t>(rect.x() - options.border),
            static_cast<std::int16_t>(rect.y() - options.border),
            static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height()),
            static_cast<std::uint16_t>(options.border), XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
            background | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
            values.data());
    }

    void describe(const Options& options) {
        setText("WM_NAME", "Foreign Window");
        if (!options.className.isEmpty()) {
            setText("WM_CLASS",
                    "foreign" + QByteArray(1, '\0') + options.className + QByteArray(1, '\0'));
        }
        if (options.opacity) {
            setNumber("_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL,
                      static_cast<std::uint32_t>(*options.opacity * 0xffffffffU));
        }
        if (options.windowType != nullptr) {
            setNumber("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, m_connection.atom(options.windowType));
        }
    }

    void cut(const QRegion& shape) {
        const testing::Reply<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(m_connection,
                                           xcb_xfixes_query_version(m_connection, 5, 0), nullptr));
        std::vector<xcb_rectangle_t> rectangles;
        for (const QRect& rect : shape) {
            rectangles.push_back({static_cast<std::int16_t>(rect.x()),
                                  static_cast<std::int16_t>(rect.y()),
                                  static_cast<std::uint16_t>(rect.width()),
                                  static_cast<std::uint16_t>(rect.height())});
        }
        const xcb_xfixes_region_t region = xcb_generate_id(m_connection);
        xcb_xfixes_create_region(m_connection, region,
                                 static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
        constexpr std::uint8_t boundingShape = 0;
        xcb_xfixes_set_window_shape_region(m_connection, m_id, boundingShape, 0, 0, region);
        xcb_xfixes_destroy_region(m_connection, region);
    }

    testing::XcbConnection m_connection;
    xcb_window_t m_id;
};

using ForeignWindows = std::vector<std::unique_ptr<ForeignWindow>>;

} // namespace snapvane
