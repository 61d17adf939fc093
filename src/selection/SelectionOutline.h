#pragma once

#include "base/Geometry.h"

#include <vector>

/// The outline of a selection in native pixels: a stroke centred on the edge of a rectangle, with
/// the coverage that each pixel gets. Pure.
namespace snapvane::SelectionOutline {

/// Pixels that the stroke covers equally.
struct Cell {
    PixelRect area;
    /// 0 … 1, never 0.
    double coverage = 0;

    friend bool operator==(const Cell&, const Cell&) = default;
};

/// The stroke around `rect`, `width` pixels wide (it need not be a whole number).
std::vector<Cell> cells(const PixelRect& rect, double width);

/// How far the stroke reaches beyond the edge, and as far into the rectangle, in whole pixels.
int reach(double width);

} // namespace snapvane::SelectionOutline
