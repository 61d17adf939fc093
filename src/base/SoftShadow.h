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

    friend bool operator==(const SoftShadow&, const SoftShadow&) = default;
};

/// The shadow that was asked for last: it takes a while to make, and what throws it seldom changes.
/// Owned by whoever paints it.
class CachedShadow {
public:
    /// As SoftShadow::of; made anew only for other values.
    const QImage& of(const SoftShadow& shadow, const QSizeF& size, double cornerRadius,
                     double pixelsPerPoint);

private:
    struct Key {
        SoftShadow shadow;
        QSizeF size;
        double cornerRadius = 0;
        double pixelsPerPoint = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };

    Key m_key;
    QImage m_picture;
};

} // namespace snapvane
