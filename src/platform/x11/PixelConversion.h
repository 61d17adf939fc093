#pragma once

#include "platform/x11/X11Connection.h"

#include <QColor>
#include <QImage>

#include <cstdint>

namespace snapvane::x11 {

/// How the server stores the pixels of the root window.
struct PixelLayout {
    int depth = 0;
    int bitsPerPixel = 0;
    int scanlinePad = 0;
    bool mostSignificantByteFirst = false;
    std::uint32_t redMask = 0;
    std::uint32_t greenMask = 0;
    std::uint32_t blueMask = 0;

    /// Bytes of one row of `width` pixels.
    int bytesPerLine(int width) const;
    /// True when the pixels can be used as QImage::Format_RGB32 as they are.
    bool isNativeRgb32() const;

    friend bool operator==(const PixelLayout&, const PixelLayout&) = default;
};

PixelLayout rootPixelLayout(const Server& server);

/// The pixel that shows the colour, its alpha left out, as near as the layout gets to it. Pure.
std::uint32_t pixelOf(const QColor& color, const PixelLayout& layout);

/// Copies pixels of any true-colour layout of 8, 16, 24 or 32 bits a pixel into an RGB32 image;
/// each channel is widened to 8 bits so that its largest value becomes 255. Null for other layouts.
/// Pure.
QImage rgb32FromPixels(const std::uint8_t* data, int width, int height, const PixelLayout& layout);

} // namespace snapvane::x11
