#pragma once

#include "base/Geometry.h"
#include "platform/x11/X11Connection.h"

#include <vector>

namespace snapvane::x11 {

/// Which pixels belong to a shape: those whose centres lie inside, or, where their transparency
/// smooths the edge, all that it touches.
enum class ShapeEdge { Centres, Touched };

/// The rows, or blocks of rows, that a rectangle with round corners consists of, in pixels from its
/// upper-left corner.
std::vector<xcb_rectangle_t> roundedRows(PixelSize size, double radius, ShapeEdge edge);

/// Cuts a window to a rectangle with round corners (native pixels). Nothing happens on a server
/// without the extension for it.
void setRoundedShape(const Server& server, xcb_window_t window, PixelSize size, double radius,
                     ShapeEdge edge);

} // namespace snapvane::x11
