#pragma once

#include <QColor>
#include <QImage>
#include <QMargins>
#include <QSizeF>

namespace snapvane {

/// What stands a little above its background throws a shadow. Any thread.
struct SoftShadow {
    QColor color;
    /// How far the shadow fades out beyond the shape, and how far below the shape it lies; points.
    double reach = 0;
    double drop = 0;

    /// The points around the shape that the shadow needs at the most.
    QMargins margins() const;
    /// The shadow of a rounded rectangle of that size (points) at that many device pixels to the
    /// point: a picture as large as the shape and the margins, which are around it, at that ratio.
    QImage of(const QSizeF& size, double cornerRadius, double pixelsPerPoint) const;
};

} // namespace snapvane
