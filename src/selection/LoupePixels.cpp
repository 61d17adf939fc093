#include "selection/LoupePixels.h"

#include "base/SystemColors.h"
#include "platform/ScreenMapping.h"

#include <algorithm>

namespace snapvane::LoupePixels {

QRgb readPixel(const QImage& image, int x, int y) {
    const int bytesPerPixel = image.depth() / 8;
    if (image.isNull() || bytesPerPixel < 3) {
        return SystemColors::gray().rgb();
    }
    const uchar* bytes =
        image.constBits() + qsizetype{y} * image.bytesPerLine() + qsizetype{x} * bytesPerPixel;
    return qRgba(bytes[0], bytes[1], bytes[2], bytesPerPixel >= 4 ? bytes[3] : 255);
}

Cells around(const DisplaySnapshot& snapshot, GlobalPoint local) {
    const QImage& image = snapshot.cgImage;
    const PixelPoint middle =
        ScreenMapping::picturePixel(local, snapshot.backingScale, image.height());
    Cells cells;
    // In 64 bits, so that places far away from the screen are far away here, too.
    const std::int64_t left = std::int64_t{middle.x} - reach;
    const std::int64_t top = std::int64_t{middle.y} - reach;
    cells.firstColumn = static_cast<int>(std::clamp<std::int64_t>(-left, 0, side));
    cells.endColumn =
        static_cast<int>(std::clamp<std::int64_t>(image.width() - left, cells.firstColumn, side));
    for (int row = 0; row < side; ++row) {
        const auto y = std::clamp<std::int64_t>(top + row, 0, std::max(0, image.height() - 1));
        for (int column = cells.firstColumn; column < cells.endColumn; ++column) {
            cells.at(column, row) = qPremultiply(
                readPixel(image, static_cast<int>(left + column), static_cast<int>(y)));
        }
    }
    return cells;
}

} // namespace snapvane::LoupePixels
