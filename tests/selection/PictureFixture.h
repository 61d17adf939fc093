#pragma once

#include "platform/null/ImageCanvas.h"
#include "selection/SelectionPicture.h"

namespace snapvane::testing {

inline constexpr double fixtureDim = 0.3;

/// The surface of a screen that shows the picture, painted in one go over `garbage`.
inline QImage paintedWhole(const SelectionPicture& picture, QColor garbage = Qt::magenta) {
    QImage image(picture.size.width, picture.size.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(garbage);
    null::ImageCanvas canvas(image, fixtureDim, image.rect());
    picture.paint(canvas, image.rect());
    return image;
}

inline int pixelCount(const QRegion& region) {
    int count = 0;
    for (const QRect& rect : region) {
        count += rect.width() * rect.height();
    }
    return count;
}

/// The pixels in which two pictures of the same size differ; nothing means they are equal.
inline QRegion differingPixels(const QImage& a, const QImage& b) {
    QRegion differing;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y)) {
                differing += QRect(x, y, 1, 1);
            }
        }
    }
    return differing;
}

inline Screen singleScreen(PixelSize pixels, double scale) {
    return ScreenMapping::layOut({{1, QStringLiteral("S"), {{0, 0}, pixels}, scale, {}}}).front();
}

} // namespace snapvane::testing
