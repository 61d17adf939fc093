#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

namespace snapvane::testing {

/// What the header of a PNG file says.
struct PngHeader {
    QSize size;
    int bitDepth = 0;
    /// 2 is RGB, 3 a palette, 6 RGB with alpha.
    int colourType = 0;
    bool hasTransparency = false;
};

/// Reads a PNG file chunk by chunk, checking every checksum. Nothing unless it is whole: right
/// signature, header first, end chunk last and not a byte after it.
std::optional<PngHeader> readWholePng(const QByteArray& bytes);

} // namespace snapvane::testing
