#pragma once

#include "platform/Overlay.h"

#include <QImage>
#include <QPainter>

namespace snapvane::null {

/// Black at the opacity, which is brought into the range 0 … 1.
QColor veilColor(double dimAmount);

/// Draws a surface into an image with an alpha channel; what a see-through surface would show.
class ImageCanvas : public OverlayCanvas {
public:
    /// `image` is premultiplied ARGB and has the size of the surface.
    ImageCanvas(QImage& image, double dimAmount, const QRegion& region);

    void veil(const PixelRect& area) override;
    void clear(const PixelRect& area) override;
    void fill(const PixelRect& area, const QColor& color) override;
    void draw(PixelPoint topLeft, const QImage& image) override;

private:
    QPainter m_painter;
    QColor m_veil;
};

} // namespace snapvane::null
