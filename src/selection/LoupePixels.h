#pragma once

#include "capture/DisplaySnapshot.h"

#include <array>

/// The pixels of a snapshot that the loupe enlarges. Pure; any thread, but for the grey of pixels
/// that cannot be read, which is the desktop's.
namespace snapvane::LoupePixels {

/// Pixels that are shown on every side of the one in the middle.
constexpr int reach = 7;
/// Cells along one side of the loupe.
constexpr int side = 2 * reach + 1;
constexpr std::size_t cellCount = std::size_t{side} * side;

/// The colour of a pixel straight from the picture's bytes: red, green, blue and, where a pixel has
/// four bytes or more, alpha. The system's grey when the picture has no such bytes.
QRgb readPixel(const QImage& image, int x, int y);

/// The cells around a place, row 0 at the top, left to right, with premultiplied alpha.
struct Cells {
    std::array<QRgb, cellCount> colors = {};
    /// Columns outside the picture are not shown: only these are, up to but not including the end.
    int firstColumn = 0;
    int endColumn = 0;

    QRgb& at(int column, int row) { return colors[index(column, row)]; }
    QRgb at(int column, int row) const { return colors[index(column, row)]; }

    static std::size_t index(int column, int row) {
        return static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column);
    }
};

/// The cells around `local`: points, relative to the lower-left corner of the snapshot's screen.
/// Beyond the upper and lower edge the row at the edge is repeated, beyond the left and right edge
/// there is nothing. A place that is not finite is a program error.
Cells around(const DisplaySnapshot& snapshot, GlobalPoint local);

} // namespace snapvane::LoupePixels
