#include "platform/x11/CompositorBarrier.h"

#include "platform/x11/Xcb.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace snapvane::x11 {

namespace {

using Clock = std::chrono::steady_clock;

// A compositor that shows the probe but not fully by then fades windows in; it has drawn all that
// came before.
constexpr auto patience = std::chrono::milliseconds(150);
// One that shows nothing of it is busy, and may not even have drawn the concealment of a selection.
constexpr auto patienceWithTheBusy = std::chrono::seconds(1);
// A probe that was seen inside the area is in the picture unless it is waited for.
constexpr auto patienceUntilGone = std::chrono::seconds(2);
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

/// Looks at the pixel, once at least, until `accepts` does; false when time ran out or the pixel
/// cannot be read.
template <typename Accepts>
bool waitForPixel(const Server& server, DevicePoint position, Clock::time_point deadline,
                  Accepts accepts) {
    for (;;) {
        const auto pixel = pixelAt(server, position);
        if (!pixel || accepts(*pixel)) {
            return pixel.has_value();
        }
        if (Clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

/// Adds up over the channels.
int distance(std::uint32_t one, std::uint32_t other) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const auto channel = [shift](std::uint32_t pixel) {
            return static_cast<int>(pixel >> shift & 0xffU);
        };
        sum += std::abs(channel(one) - channel(other));
    }
    return sum;
}

/// Leaves behind whether anything of the probe was seen.
void waitForProbe(const Server& server, DevicePoint position, std::uint32_t before,
                  std::uint32_t color, CompositorHabits& habits) {
    const auto start = Clock::now();
    const auto isShown = [color](auto pixel) { return pixel == color; };
    const auto isBegun = [color, far = distance(before, color)](auto pixel) {
        return distance(pixel, color) < far;
    };
    if (waitForPixel(server, position, start + patience, isShown)) {
        habits.showsProbes = true;
        return;
    }
    const Clock::duration more = habits.showsProbes ? patienceWithTheBusy : patience;
    habits.showsProbes = waitForPixel(server, position, start + more, isBegun);
}

/// Of a probe that is in the picture until it is gone from the glass.
void removeFromGlass(const Server& server, const Probe& probe, DevicePoint position,
                     std::uint32_t before, std::uint32_t color) {
    VanishingProbe vanishing(before, color);
    if (const auto pixel = pixelAt(server, position)) {
        vanishing.isGone(*pixel);
    }
    probe.conceal();
    waitForPixel(server, position, Clock::now() + patienceUntilGone,
                 [&vanishing](auto pixel) { return vanishing.isGone(pixel); });
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

void passCompositorBarrier(const Server& server, CompositorHabits& habits, const DeviceRect& area,
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
    // Far from what is there in every channel.
    const std::uint32_t color = *before ^ 0x00808080U;
    const Probe probe(server, place->position, color);
    waitForProbe(server, place->position, *before, color, habits);
    if (place->insideArea) {
        removeFromGlass(server, probe, place->position, *before, color);
    }
}

VanishingProbe::VanishingProbe(std::uint32_t before, std::uint32_t color)
    : m_before(before), m_color(color) {}

bool VanishingProbe::isGone(std::uint32_t pixel) {
    const int now = distance(pixel, m_color);
    const bool gone = pixel == m_before || now > m_nearest;
    m_nearest = std::min(m_nearest, now);
    return gone;
}

} // namespace snapvane::x11
