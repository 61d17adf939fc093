#pragma once

#include "platform/x11/X11Connection.h"

#include "base/Geometry.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace snapvane::x11 {

/// What one wait leaves behind for the next; kept by whoever waits.
struct CompositorHabits {
    /// Whether the last probe was seen. Some compositors draw panels of their own above it.
    bool showsProbes = true;
};

/// Waits until the compositing manager has drawn everything that happened to windows before the
/// call: shows a one-pixel window of a known colour outside `area` and looks at the screen until
/// the pixel is there. A compositor works through changes in order, so all earlier ones are then on
/// the glass; round trips and damage reports prove no such thing. After 150 ms a beginning of the
/// colour is enough, since some fade windows in; without any it waits for up to a second, but not
/// again as long as probes are never seen. Where `area` leaves no room, the probe is shown inside
/// it, taken away again, and waited for to be gone, for up to two seconds. Without a compositor a
/// round trip is enough. Blocks; any thread, with a connection of its own.
void passCompositorBarrier(const Server& server, CompositorHabits& habits, const DeviceRect& area,
                           const std::vector<DeviceRect>& screens);

/// Where the probe goes: a corner of a screen that is outside `area`, else the corner of the first
/// screen. Nothing without screens. Pure.
struct ProbePlace {
    DevicePoint position;
    bool insideArea = false;

    friend bool operator==(const ProbePlace&, const ProbePlace&) = default;
};
std::optional<ProbePlace> probePlace(const DeviceRect& area,
                                     const std::vector<DeviceRect>& screens);

/// Tells from the pixel of a probe that is being taken away whether it is gone, also from one that
/// a fade has not shown fully. What lies beneath may meanwhile have become another than before,
/// since a veil may have gone with the last change. Colours are 0x00rrggbb. Pure.
class VanishingProbe {
public:
    VanishingProbe(std::uint32_t before, std::uint32_t color);

    /// To be asked with one look at the pixel after another, from before the probe is taken away.
    bool isGone(std::uint32_t pixel);

private:
    std::uint32_t m_before;
    std::uint32_t m_color;
    // A fade only ever brings the pixel nearer to the probe's colour.
    int m_nearest = std::numeric_limits<int>::max();
};

} // namespace snapvane::x11
