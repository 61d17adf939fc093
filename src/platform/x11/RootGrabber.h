#pragma once

#include "platform/x11/PixelConversion.h"
#include "platform/x11/SharedSegment.h"

#include "base/Geometry.h"
#include "platform/Capturer.h"

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
    /// compositor runs, until all that happened to windows before the call is on the glass. Where
    /// the excluded windows (children of the root window) stand, the picture shows what lies
    /// beneath them, as far as the server keeps the pixels of that: see SubwindowRedirection.
    /// Throws PlatformError. Any thread; calls are served one after another.
    QImage grab(const DeviceRect& area, const std::vector<DeviceRect>& screens,
                const std::vector<std::uint32_t>& excluded = {});

    /// The windows that the query asks for, as ShareableContent has them. Throws PlatformError. Any
    /// thread.
    std::vector<ShareableWindow> windows(const ContentQuery& query);

    /// Only the wait of `grab`. Any thread.
    void waitForGlass(const std::vector<DeviceRect>& screens);

    /// Returns the memory kept for the next grab to the system; false when a grab is under way.
    /// Never waits. Any thread.
    bool trim();

private:
    struct Resources;

    std::shared_ptr<Resources> connected();
    QImage grabWithout(const std::vector<std::uint32_t>& excluded,
                       const std::shared_ptr<Resources>& resources, const DeviceRect& area);
    QImage grabShared(const std::shared_ptr<Resources>& resources, xcb_drawable_t drawable,
                      const DeviceRect& area);
    QImage grabBySocket(const Resources& resources, xcb_drawable_t drawable,
                        const DeviceRect& area);
    QImage read(const std::shared_ptr<Resources>& resources, xcb_drawable_t drawable,
                const DeviceRect& area);

    std::mutex m_mutex;
    std::shared_ptr<Resources> m_resources;
};

} // namespace snapvane::x11
