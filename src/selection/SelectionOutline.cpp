#include "selection/SelectionOutline.h"

#include <algorithm>
#include <cmath>

namespace snapvane::SelectionOutline {

namespace {

/// A run of pixels along one axis and how far each of them lies in the outer and the inner
/// rectangle between which the stroke is.
struct Band {
    int start = 0;
    int length = 0;
    double outer = 0;
    double inner = 0;
};

/// The part of the pixel that lies between `from` and `to`.
double covered(int pixel, double from, double to) {
    return std::clamp(std::min(to, pixel + 1.0) - std::max(from, static_cast<double>(pixel)), 0.0,
                      1.0);
}

/// Single pixels near both edges and one band for everything between.
std::vector<Band> bands(int start, int length, double halfWidth) {
    const int distance = static_cast<int>(std::ceil(halfWidth));
    const int end = start + length;
    std::vector<Band> result;
    const auto addPixel = [&](int pixel) {
        const double inner =
            2 * halfWidth < length ? covered(pixel, start + halfWidth, end - halfWidth) : 0.0;
        result.push_back({pixel, 1, covered(pixel, start - halfWidth, end + halfWidth), inner});
    };
    const int innerStart = start + distance;
    const int innerEnd = end - distance;
    for (int pixel = start - distance; pixel < std::min(innerStart, end + distance); ++pixel) {
        addPixel(pixel);
    }
    if (innerEnd > innerStart) {
        result.push_back({innerStart, innerEnd - innerStart, 1, 1});
    }
    for (int pixel = std::max(innerStart, innerEnd); pixel < end + distance; ++pixel) {
        addPixel(pixel);
    }
    return result;
}

} // namespace

int reach(double width) {
    return static_cast<int>(std::ceil(width / 2));
}

std::vector<Cell> cells(const PixelRect& rect, double width) {
    const auto columns = bands(rect.x, rect.width, width / 2);
    const auto rows = bands(rect.y, rect.height, width / 2);
    std::vector<Cell> result;
    for (const Band& row : rows) {
        for (const Band& column : columns) {
            const double coverage = column.outer * row.outer - column.inner * row.inner;
            if (coverage > 0) {
                result.push_back({{column.start, row.start, column.length, row.length}, coverage});
            }
        }
    }
    return result;
}

} // namespace snapvane::SelectionOutline
