#pragma once

#include "capture/DisplaySnapshot.h"

#include <vector>

namespace snapvane::testing {

/// The colour of a snapshot's pixel; no two of a picture of up to 256 × 256 pixels are alike, and
/// no two channels can be mistaken for each other.
inline QRgb snapshotColor(int x, int y, int alpha = 255) {
    return qRgba(x & 255, y & 255, 40 + ((x * 3 + y * 5) & 63), alpha);
}

/// A picture whose bytes are red, green, blue and alpha, in this order.
inline QImage snapshotImage(PixelSize size, int alpha = 255) {
    QImage image(size.width, size.height, QImage::Format_RGBA8888);
    for (int y = 0; y < size.height; ++y) {
        uchar* bytes = image.scanLine(y);
        for (int x = 0; x < size.width; ++x, bytes += 4) {
            const QRgb color = snapshotColor(x, y, alpha);
            bytes[0] = static_cast<uchar>(qRed(color));
            bytes[1] = static_cast<uchar>(qGreen(color));
            bytes[2] = static_cast<uchar>(qBlue(color));
            bytes[3] = static_cast<uchar>(qAlpha(color));
        }
    }
    return image;
}

/// A snapshot of a screen of that many pixels whose lower-left corner is the origin.
inline DisplaySnapshot snapshotOf(PixelSize pixels, double scale, int alpha = 255) {
    return {{{0, 0}, {pixels.width / scale, pixels.height / scale}},
            scale,
            snapshotImage(pixels, alpha)};
}

/// The lower-left corner of a pixel of such a screen, counted from the picture's upper-left one.
inline GlobalPoint localPlace(PixelPoint pixel, const DisplaySnapshot& snapshot) {
    return {pixel.x / snapshot.backingScale,
            (snapshot.cgImage.height() - 1 - pixel.y) / snapshot.backingScale};
}

} // namespace snapvane::testing
