#pragma once

#include "capture/CaptureResult.h"

#include <QString>

#include <functional>

namespace snapvane {

class CapturePreferences;
class FerryboxUploading;
class Pasteboard;

/// What the steps after a capture work with; everything must outlive them. Main thread.
struct AfterCaptureFacilities {
    CapturePreferences& preferences;
    Pasteboard& pasteboard;
    FerryboxUploading& uploader;
    /// Shows a notice for so many seconds.
    std::function<void(const QString& message, double duration)> showNotice;
    /// Opens the window in which the user chooses what happens to the capture.
    std::function<void(CaptureResult result)> askUser;
};

/// How long every notice of theirs stays, in seconds.
inline constexpr double noticeDuration = 2.0;

} // namespace snapvane
