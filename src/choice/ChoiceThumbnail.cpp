#include "choice/ChoiceThumbnail.h"

#include "base/Rounding.h"
#include "base/Style.h"
#include "choice/ChoicePanelColors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace snapvane {

namespace {

// Points.
constexpr int widest = 360;
constexpr int highest = 140;
constexpr double outlineWidth = 1;
// From here on a smooth enlargement would be a blur; the pixels are shown as they are instead.
constexpr double pixelatedFrom = 2;

} // namespace

ChoiceThumbnail::ChoiceThumbnail(PlatformImage image, QWidget* parent)
    : QWidget(parent), m_image(std::move(image)), m_highest(highest) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ChoiceThumbnail::sizeHint() const {
    const GlobalSize& size = m_image.size;
    if (size.width <= 0 || size.height <= 0) {
        return {1, 1};
    }
    const double factor = std::min(widest / size.width, m_highest / size.height);
    return {std::max(1, roundedPixel(size.width * factor)),
            std::max(1, roundedPixel(size.height * factor))};
}

void ChoiceThumbnail::setMaximumImageHeight(int height) {
    m_highest = std::clamp(height, 1, highest);
    updateGeometry();
}

void ChoiceThumbnail::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = painter.deviceTransform().m11();
    const QRectF area = Style::crisp(painter, rect());
    const double radius = std::min({Style::largeRadius, area.width() / 2, area.height() / 2});
    // As a brush, since clipping to a shape would leave its edge rough.
    QBrush pixels(scaledTo((area.size() * scale).toSize()));
    pixels.setTransform(QTransform::fromTranslate(area.x(), area.y()).scale(1 / scale, 1 / scale));
    painter.setPen(Qt::NoPen);
    painter.setBrush(pixels);
    painter.drawRoundedRect(area, radius, radius);
    Style::strokeInside(painter, area, radius, ChoicePanelColors::thumbnailOutline(), outlineWidth);
}

const QImage& ChoiceThumbnail::scaledTo(const QSize& pixels) {
    const QImage& bitmap = m_image.bitmap;
    if (m_scaled.size() != pixels && !bitmap.isNull()) {
        const bool isEnlarged = pixels.width() >= pixelatedFrom * bitmap.width() &&
                                pixels.height() >= pixelatedFrom * bitmap.height();
        m_scaled = bitmap.scaled(pixels, Qt::IgnoreAspectRatio,
                                 isEnlarged ? Qt::FastTransformation : Qt::SmoothTransformation);
        m_scaled.setDevicePixelRatio(1);
    }
    return m_scaled;
}

} // namespace snapvane
