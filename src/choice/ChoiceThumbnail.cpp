#include "choice/ChoiceThumbnail.h"

#include "base/Async.h"
#include "base/Rounding.h"
#include "base/Style.h"
#include "choice/ChoicePanelColors.h"

#include <QPainter>
#include <QPointer>

#include <algorithm>

namespace snapvane {

namespace {

// Points.
constexpr int widest = 360;
constexpr int highest = 140;
constexpr double outlineWidth = 1;
// From here on a smooth enlargement would be a blur; the pixels are shown as they are instead.
constexpr double pixelatedFrom = 2;

QImage scaled(const QImage& bitmap, const QSize& pixels, Qt::TransformationMode mode) {
    QImage picture = bitmap.scaled(pixels, Qt::IgnoreAspectRatio, mode);
    picture.setDevicePixelRatio(1);
    return picture;
}

QCoro::Task<> scaleWell(QPointer<ChoiceThumbnail> thumbnail, QImage bitmap, QSize pixels) {
    auto scaling = runInBackground(
        [bitmap, pixels] { return scaled(bitmap, pixels, Qt::SmoothTransformation); });
    const QImage picture = co_await scaling;
    if (thumbnail) {
        thumbnail->takeScaled(picture);
    }
}

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
    if (m_scaled.size() == pixels || bitmap.isNull()) {
        return m_scaled;
    }
    const bool isEnlarged = pixels.width() >= pixelatedFrom * bitmap.width() &&
                            pixels.height() >= pixelatedFrom * bitmap.height();
    // Rough at first: scaling well takes a while, and waits for its turn behind whatever else is
    // done in the background, a slow disk included.
    m_scaled = scaled(bitmap, pixels, Qt::FastTransformation);
    m_isFinal = isEnlarged || pixels == bitmap.size();
    if (!m_isFinal) {
        startDetached(scaleWell(this, bitmap, pixels));
    }
    return m_scaled;
}

void ChoiceThumbnail::takeScaled(const QImage& picture) {
    if (picture.size() == m_scaled.size()) {
        m_scaled = picture;
        m_isFinal = true;
        update();
    }
}

} // namespace snapvane
