#pragma once

#include "base/Geometry.h"

#include <QCoroTask>
#include <QImage>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace snapvane {

/// A display as the capture facility sees it.
struct ShareableDisplay {
    std::uint32_t id = 0;
    /// Global points.
    GlobalRect frame;
};

/// The program that a window belongs to.
struct RunningApplication {
    QString bundleIdentifier;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// A window as the capture facility sees it, with all that its window manager put around it.
struct ShareableWindow {
    std::uint32_t id = 0;
    /// Nothing when the window does not tell.
    std::optional<RunningApplication> owningApplication;

    friend bool operator==(const ShareableWindow&, const ShareableWindow&) = default;
};

/// What can be captured at the moment.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
    /// From the bottom of the stack to its top; empty unless the query wanted them.
    std::vector<ShareableWindow> windows;
};

/// Which content is listed.
struct ContentQuery {
    /// Leaves out the windows that a desktop shows its background and its icons on.
    bool excludeDesktopWindows = false;
    /// Leaves out windows that are not shown: closed, minimised, on another workspace.
    bool onScreenWindowsOnly = true;
    /// Whether windows are listed at all. Whoever excludes none saves the time.
    bool listsWindows = true;
};

/// What a screenshot shows: one display, as if some windows were not there.
struct ContentFilter {
    std::uint32_t displayId = 0;
    /// Ids of ShareableContent; those of windows that are gone by now do no harm.
    std::vector<std::uint32_t> excludedWindows = {};
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
    /// screen is really off the glass. Where an excluded window stands the picture shows what lies
    /// beneath it. The image may share memory with the facility: whoever keeps it makes a copy.
    /// Throws PlatformError. Called and resumed on the main thread.
    virtual QCoro::Task<QImage> screenshot(ContentFilter filter,
                                           StreamConfiguration configuration) = 0;
};

} // namespace snapvane
