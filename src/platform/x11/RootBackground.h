#pragma once

#include "platform/x11/PictureFormats.h"
#include "platform/x11/ServerResource.h"

#include "base/Geometry.h"

namespace snapvane::x11 {

/// Draws the area of the root window, as it looks where no window stands, into the upper-left
/// corner of the target. With a compositor that is the picture that it was told of by whoever set
/// the background, else the grey that compositors take instead; without one it is the root window's
/// real background. Any thread, blocks for a few round trips.
void drawRootBackground(const Server& server, const PictureFormats& formats,
                        const ServerPicture& target, const DeviceRect& area, bool composited);

} // namespace snapvane::x11
