#include "platform/null/ImageCanvas.h"

namespace snapvane::null {

QColor veilColor(double dimAmount) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(std::clamp(dimAmount, 0.0, 1.0)));
}

ImageCanvas::ImageCanvas(QImage& image, double dimAmount, const QRegion& region)
    : m_painter(&image), m_veil(veilColor(dimAmount)) {
    m_painter.setClipRegion(region);
}

void ImageCanvas::veil(const PixelRect& area) {
    m_painter.setCompositionMode(QPainter::CompositionMode_Source);
    m_painter.fillRect(area.toQRect(), m_veil);
}

void ImageCanvas::clear(const PixelRect& area) {
    m_painter.setCompositionMode(QPainter::CompositionMode_Source);
    m_painter.fillRect(area.toQRect(), Qt::transparent);
}

void ImageCanvas::fill(const PixelRect& area, const QColor& color) {
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    m_painter.fillRect(area.toQRect(), color);
}

void ImageCanvas::draw(PixelPoint topLeft, const QImage& image) {
    QImage pixels = image;
    pixels.setDevicePixelRatio(1);
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    m_painter.drawImage(topLeft.x, topLeft.y, pixels);
}

} // namespace snapvane::null
