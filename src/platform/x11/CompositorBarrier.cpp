#include "platform/x11/CompositorBarrier.h"

#include "platform/x11/Xcb.h"

#include <array>
#include <chrono>
#include <cstring>
#include <thread>

namespace snapvane::x11 {

namespace {

using Clock = std::chrono::steady_clock;

// A compositor that has not drawn by then is busy or fades windows in; what it still shows of ours
// was concealed before, so the grab is right all the same.
constexpr auto patience = std::chrono::milliseconds(150);
constexpr auto pollInterval = std::chrono::milliseconds(1);
constexpr std::uint32_t colorBits = 0x00ffffff;

std::optional<std::uint32_t> pixelAt(const Server& server, DevicePoint position) {
    const auto cookie = xcb_get_image(server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, server.root(),
                                      static_cast<std::int16_t>(position.x),
                                      static_cast<std::int16_t>(position.y), 1, 1, ~0U);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_get_image_reply(server.connection, cookie, &error));
    const auto ownedError = owned(error);
    if (!reply || xcb_get_image_data_length(reply.get()) < 4) {
        return std::nullopt;
    }
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, xcb_get_image_data(reply.get()), sizeof pixel);
    return pixel & colorBits;
}

/// A one-pixel window of one colour, gone with the object. It has an alpha channel where the screen
/// offers one, so that it can be made invisible without a compositor fading it out.
class Probe {
public:
    Probe(const Server& server, DevicePoint position, std::uint32_t color)
        : m_server(server), m_window(xcb_generate_id(server.connection)) {
        const xcb_visualid_t argb = argbVisual(server);
        const bool alpha = argb != XCB_NONE;
        m_colormap = xcb_generate_id(server.connection);
        xcb_create_colormap(server.connection, XCB_COLORMAP_ALLOC_NONE, m_colormap, server.root(),
                            alpha ? argb : server.screen->root_visual);
        const std::array<std::uint32_t, 4> values = {0xff000000U | color, 0, 1, m_colormap};
        xcb_create_window(
            server.connection, alpha ? std::uint8_t{32} : std::uint8_t{XCB_COPY_FROM_PARENT},
            m_window, server.root(), static_cast<std::int16_t>(position.x),
            static_cast<std::int16_t>(position.y), 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            alpha ? argb : XCB_COPY_FROM_PARENT,
            XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
            values.data());
        setWindowIdentity(server, m_window, "Snapvane Probe");
        setCompositorHints(server, m_window);
        xcb_map_window(server.connection, m_window);
        xcb_flush(server.connection);
    }

    ~Probe() {
        xcb_destroy_window(m_server.connection, m_window);
        xcb_free_colormap(m_server.connection, m_colormap);
        xcb_flush(m_server.connection);
    }

    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    /// Takes it off the glass in a way that no compositor fades.
    void conceal() const {
        const std::uint32_t transparent = 0;
        xcb_change_window_attributes(m_server.connection, m_window, XCB_CW_BACK_PIXEL,
                                     &transparent);
        xcb_clear_area(m_server.connection, 0, m_window, 0, 0, 1, 1);
        const std::array<std::uint32_t, 2> offDesktop = {static_cast<std::uint32_t>(-2),
                                                         static_cast<std::uint32_t>(-2)};
        xcb_configure_window(m_server.connection, m_window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, offDesktop.data());
        xcb_flush(m_server.connection);
    }

private:
    const Server& m_server;
    xcb_window_t m_window;
    xcb_colormap_t m_colormap = XCB_NONE;
};

/// Looks at the pixel until it is, or is no longer, the colour; false when time ran out.
bool waitForPixel(const Server& server, DevicePoint position, std::uint32_t color, bool shown,
                  Clock::time_point deadline) {
    while (Clock::now() < deadline) {
        const auto pixel = pixelAt(server, position);
        if (!pixel || (*pixel == color) == shown) {
            return pixel.has_value();
        }
        std::this_thread::sleep_for(pollInterval);
    }
    return false;
}

} // namespace

std::optional<ProbePlace> probePlace(const DeviceRect& area,
                                     const std::vector<DeviceRect>& screens) {
    for (const DeviceRect& screen : screens) {
        const int left = screen.origin.x;
        const int top = screen.origin.y;
        const int right = left + screen.size.width - 1;
        const int bottom = top + screen.size.height - 1;
        for (const DevicePoint corner :
             {DevicePoint{left, top}, {right, top}, {left, bottom}, {right, bottom}}) {
            if (!area.contains(corner)) {
                return ProbePlace{corner, false};
            }
        }
    }
    if (screens.empty()) {
        return std::nullopt;
    }
    return ProbePlace{screens.front().origin, true};
}

void passCompositorBarrier(const Server& server, const DeviceRect& area,
                           const std::vector<DeviceRect>& screens) {
    const auto place = probePlace(area, screens);
    if (!place || !hasCompositor(server)) {
        roundTrip(server);
        return;
    }
    const auto before = pixelAt(server, place->position);
    if (!before) {
        return;
    }
    const auto deadline = Clock::now() + patience;
    // Far from what is there in every channel.
    const std::uint32_t color = *before ^ 0x00808080U;
    const Probe probe(server, place->position, color);
    const bool shown = waitForPixel(server, place->position, color, true, deadline);
    if (place->insideArea) {
        probe.conceal();
        // Where a fade kept the probe from showing fully, what was there before must come back.
        waitForPixel(server, place->position, shown ? color : *before, !shown,
                     Clock::now() + patience);
    }
}

} // namespace snapvane::x11
