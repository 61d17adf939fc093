#pragma once

#include "base/Geometry.h"

#include <QCoroTask>
#include <QImage>

#include <cstdint>
#include <vector>

namespace snapvane {

/// A display as the capture facility sees it.
struct ShareableDisplay {
    std::uint32_t id = 0;
    /// Global points.
    GlobalRect frame;
};

/// What can be captured at the moment.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
};

/// Which content is listed.
struct ContentQuery {
    bool excludeDesktopWindows = false;
    bool onScreenWindowsOnly = true;
};

/// What a screenshot shows: one display, leaving no window out.
struct ContentFilter {
    std::uint32_t displayId = 0;
};

/// How a screenshot is taken.
struct StreamConfiguration {
    /// Points, relative to the lower-left corner of the display, y upwards.
    GlobalRect sourceRect;
    /// Native pixels of the result.
    PixelSize outputSize;
    bool showsCursor = false;
    bool scalesToFit = false;
};

/// Still pictures of the live screen.
class ScreenCapturer {
public:
    virtual ~ScreenCapturer() = default;

    /// Really tries whether this program may read the screen. Main thread, blocks for a round trip.
    virtual bool preflightAccess() = 0;
    /// Throws PlatformError. Called and resumed on the main thread.
    virtual QCoro::Task<ShareableContent> shareableContent(ContentQuery query) = 0;
    /// One picture, taken off the main thread once everything that this program has taken off the
    /// screen is really off the glass. The image may share memory with the facility: whoever keeps
    /// it makes a copy. Throws PlatformError. Called and resumed on the main thread.
    virtual QCoro::Task<QImage> screenshot(ContentFilter filter,
                                           StreamConfiguration configuration) = 0;
};

} // namespace snapvane
