#pragma once

#include "platform/Platform.h"

#include <memory>

namespace snapvane::x11 {

/// Empty when an X server can be reached, else why not. Asked before there is an application
/// object, since Qt ends the program without a word of its own.
QString x11Obstacle();

/// The X11 desktop. Needs the application object, on Qt's X11 platform.
std::unique_ptr<Platform> makeX11Platform();

} // namespace snapvane::x11
