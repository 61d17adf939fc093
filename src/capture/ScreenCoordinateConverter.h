#pragma once

#include "platform/Screens.h"

/// Measures the whole desktop.
namespace snapvane::ScreenCoordinateConverter {

/// The smallest rectangle around the frames of all screens, in global points; the zero rectangle
/// when there is no screen.
GlobalRect unionFrameOfAllScreens(const ScreenList& screens);

} // namespace snapvane::ScreenCoordinateConverter
