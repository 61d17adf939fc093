#pragma once

#include <QString>

/// What the user has chosen to happen after a capture.
namespace snapvane::CapturePreferences {

/// "Snapvane" in the user's pictures folder, or in the home folder when there is none. Nothing is
/// created.
QString defaultSaveFolderPath();

/// The folder that captures are saved into; created where that is possible.
QString resolvedSaveFolderPath();

} // namespace snapvane::CapturePreferences
