#pragma once

#include "platform/x11/PixelConversion.h"
#include "platform/x11/SharedSegment.h"

#include "base/Geometry.h"

#include <QImage>

#include <memory>
#include <mutex>

namespace snapvane::x11 {

/// Reads pixels of the live screen, the pointer left out, through a connection of its own, so that
/// it can work on any thread. Owned by X11Capturer.
class RootGrabber {
public:
    RootGrabber();
    ~RootGrabber();
    RootGrabber(const RootGrabber&) = delete;
    RootGrabber& operator=(const RootGrabber&) = delete;

    /// The pixels as an RGB32 image, which may share the grabber's memory. First waits, where a
    /// compositor runs, until all that happened to windows before the call is on the glass. Throws
    /// PlatformError. Any thread; calls are served one after another.
    QImage grab(const DeviceRect& area, const std::vector<DeviceRect>& screens);

    /// Only the wait of `grab`. Any thread.
    void waitForGlass(const std::vector<DeviceRect>& screens);

    /// Returns the memory kept for the next grab to the system; false when a grab is under way.
    /// Never waits. Any thread.
    bool trim();

private:
    struct Resources;

    std::shared_ptr<Resources> connected();
    QImage grabShared(const std::shared_ptr<Resources>& resources, const DeviceRect& area);
    QImage grabBySocket(const Resources& resources, const DeviceRect& area);

    std::mutex m_mutex;
    std::shared_ptr<Resources> m_resources;
};

} // namespace snapvane::x11
