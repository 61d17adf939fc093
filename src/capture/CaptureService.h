#pragma once

#include "capture/CaptureResult.h"
#include "platform/Capturer.h"
#include "platform/Screens.h"

#include <QCoroTask>

/// Turns a rectangle of the live screen into a CaptureResult.
namespace snapvane::CaptureService {

/// The platform facilities that a capture uses; they must outlive it.
struct Facilities {
    ScreenCapturer* capturer;
    Screens* screens;

    /// Those of the platform that the program runs on.
    static Facilities shared();
};

/// Captures the rectangle (global points; a negative size means the same area) from the display
/// that holds its centre, clipped to that display, at the display's pixel density. Throws
/// CaptureServiceError, or what the platform threw. Called and resumed on the main thread; the work
/// is done elsewhere.
QCoro::Task<CaptureResult> captureRegion(GlobalRect globalRect, Facilities facilities);

/// The first display that contains the rectangle's midpoint, else the first that it overlaps.
std::optional<ShareableDisplay> display(const GlobalRect& rect,
                                        const std::vector<ShareableDisplay>& displays);

/// The scale of the first screen that the rectangle overlaps, else the main screen's (the first of
/// the list), else 2.
double backingScaleFactor(const GlobalRect& rect, const ScreenList& screens);

/// The configuration of a screenshot that shows `clipped`, a part of the display, at `scale` pixels
/// a point. Sizes round half away from zero and are at least one pixel.
StreamConfiguration configuration(const GlobalRect& clipped, const ShareableDisplay& display,
                                  double scale);

} // namespace snapvane::CaptureService
