#pragma once

#include "base/Geometry.h"

#include <QImage>
#include <QString>

/// The label beside the selection that tells its size. Measuring and drawing: main thread.
namespace snapvane::SizeLabel {

/// "640 × 480 pt": points, rounded half away from zero.
QString text(GlobalSize size);

/// The measured size of the text in points.
GlobalSize textSize(const QString& text);

/// Where the label's box goes, in global points: 8 above the selection, or 8 below it where the box
/// would come closer than 8 to the top of `bounds`; centred on the selection, but 8 away from both
/// sides of `bounds`, the left one counting more. Pure.
GlobalRect box(const GlobalRect& selection, GlobalSize measuredText, const GlobalRect& bounds);

/// The label at `scale` pixels a point, `pixels` wide and high; premultiplied alpha.
QImage render(const QString& text, PixelSize pixels, double scale);

} // namespace snapvane::SizeLabel
