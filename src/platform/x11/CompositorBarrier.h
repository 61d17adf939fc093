#pragma once

#include "platform/x11/X11Connection.h"

#include "base/Geometry.h"

#include <vector>

namespace snapvane::x11 {

/// Waits until the compositing manager has drawn everything that happened to windows before the
/// call: shows a one-pixel window of a known colour outside `area` and looks at the screen until
/// the pixel is there. A compositor works through changes in order, so all earlier ones are then on
/// the glass; round trips and damage reports prove no such thing. Where `area` leaves no room, the
/// probe is shown inside it, taken away again, and waited for to be gone. Gives up after 150 ms.
/// Without a compositor a round trip is enough. Blocks; any thread, with a connection of its own.
void passCompositorBarrier(const Server& server, const DeviceRect& area,
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

} // namespace snapvane::x11
