#include "platform/x11/WindowStack.h"

#include "platform/x11/Xcb.h"

#include <algorithm>
#include <ranges>
#include <span>

#include <xcb/xfixes.h>

namespace snapvane::x11 {

namespace {

// The kind of shape that decides what is seen, from the shape extension's protocol.
constexpr std::uint8_t boundingShape = 0;

// The first version of the extension that knows regions.
constexpr std::uint32_t fixesVersion = 2;

QRect rectOf(const DeviceRect& area) {
    return {area.origin.x, area.origin.y, area.size.width, area.size.height};
}

/// Asks for the shapes of all windows at once; reading the answers makes regions of them.
class ShapeInquiry {
public:
    ShapeInquiry(const Server& server, const std::vector<TopLevelWindow>& windows)
        : m_server(server) {
        if (!hasExtension(server, &xcb_xfixes_id)) {
            return;
        }
        // The extension answers those who have named their version.
        m_version = xcb_xfixes_query_version(server.connection, fixesVersion, 0);
        for (const TopLevelWindow& window : windows) {
            const xcb_xfixes_region_t region = xcb_generate_id(server.connection);
            xcb_xfixes_create_region_from_window(server.connection, region, window.id,
                                                 boundingShape);
            m_cookies.push_back(xcb_xfixes_fetch_region(server.connection, region));
            xcb_xfixes_destroy_region(server.connection, region);
        }
    }

    /// Puts them into the windows that were asked about; those whose shape is not known are taken
    /// for rectangles.
    void readInto(std::vector<StackedWindow>& windows) {
        for (std::size_t i = 0; i < windows.size(); ++i) {
            windows[i].shape = rectOf(windows[i].window.area);
            if (i < m_cookies.size()) {
                read(m_cookies[i], windows[i]);
            }
        }
        if (!m_cookies.empty()) {
            owned(xcb_xfixes_query_version_reply(m_server.connection, m_version, nullptr));
        }
    }

private:
    void read(xcb_xfixes_fetch_region_cookie_t cookie, StackedWindow& into) {
        const auto reply =
            owned(xcb_xfixes_fetch_region_reply(m_server.connection, cookie, nullptr));
        if (!reply) {
            return;
        }
        const std::span rectangles(
            xcb_xfixes_fetch_region_rectangles(reply.get()),
            static_cast<std::size_t>(xcb_xfixes_fetch_region_rectangles_length(reply.get())));
        std::vector<QRect> rects;
        rects.reserve(rectangles.size());
        for (const xcb_rectangle_t& each : rectangles) {
            rects.emplace_back(each.x, each.y, each.width, each.height);
        }
        // The server keeps regions in the order that Qt wants them in.
        into.shape.setRects(rects.data(), static_cast<int>(rects.size()));
        // They count from the inside of the border.
        into.shape.translate(into.window.area.origin.x + into.window.border,
                             into.window.area.origin.y + into.window.border);
    }

    const Server& m_server;
    xcb_xfixes_query_version_cookie_t m_version = {};
    std::vector<xcb_xfixes_fetch_region_cookie_t> m_cookies;
};

std::optional<std::uint32_t> numberIn(const Server& server, xcb_get_property_cookie_t cookie) {
    const auto reply = owned(xcb_get_property_reply(server.connection, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) {
        return std::nullopt;
    }
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

/// Window managers may or may not pass a window's opacity on to its frame.
void readOpacities(const Server& server, std::vector<StackedWindow>& windows,
                   const std::vector<xcb_window_t>& clients) {
    const xcb_atom_t opacity = atom(server, "_NET_WM_WINDOW_OPACITY");
    const auto ask = [&server, opacity](xcb_window_t window) {
        return xcb_get_property(server.connection, 0, window, opacity, XCB_ATOM_CARDINAL, 0, 1);
    };
    std::vector<std::pair<xcb_get_property_cookie_t, xcb_get_property_cookie_t>> cookies;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        cookies.emplace_back(ask(windows[i].window.id), ask(clients[i]));
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto ofFrame = numberIn(server, cookies[i].first);
        const auto ofClient = numberIn(server, cookies[i].second);
        windows[i].opacity = ofFrame.value_or(ofClient.value_or(fullOpacity));
    }
}

} // namespace

WindowStack WindowStack::read(const Server& server) {
    WindowStack stack;
    stack.composited = hasCompositor(server);
    std::vector<TopLevelWindow> shown = topLevelWindows(server);
    std::erase_if(shown, [](const TopLevelWindow& window) { return !window.viewable; });
    for (const TopLevelWindow& window : shown) {
        stack.windows.push_back({window, {}, fullOpacity});
    }
    ShapeInquiry(server, shown).readInto(stack.windows);
    if (stack.composited) {
        readOpacities(server, stack.windows, clientWindows(server, shown));
    }
    return stack;
}

QRegion WindowStack::regionOf(const std::vector<std::uint32_t>& excluded,
                              const DeviceRect& area) const {
    QRegion region;
    QRegion covered;
    for (const StackedWindow& each : std::ranges::reverse_view(windows)) {
        const bool isExcluded =
            std::find(excluded.begin(), excluded.end(), each.window.id) != excluded.end();
        const QRegion part = each.shape.intersected(rectOf(area));
        if (isExcluded) {
            region += part - covered;
        } else if (!composited) {
            covered += part;
        }
    }
    return region;
}

} // namespace snapvane::x11
