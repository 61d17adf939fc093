#pragma once

#include "base/Geometry.h"

#include <QByteArray>
#include <QDateTime>
#include <QImage>

namespace snapvane {

/// A picture with a size in points that is independent of its pixels.
struct PlatformImage {
    QImage bitmap;
    GlobalSize size;
};

/// One finished capture. Made by CaptureService, handed to everything that happens after a capture;
/// never changed, copied freely (the pixels and bytes are shared).
struct CaptureResult {
    /// The captured pixels at full density as PNG.
    QByteArray pngData;
    /// The same pixels; the size is that of the captured rectangle.
    PlatformImage image;
    /// Taken right after the pixels were copied and encoded.
    QDateTime capturedAt;
    /// What was captured: the user's rectangle, standardised and clipped to the chosen display.
    /// Global points.
    GlobalRect globalCaptureRect;
};

} // namespace snapvane
