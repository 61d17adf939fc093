#include "base/SoftShadow.h"

#include "base/Rounding.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace snapvane {

namespace {

// Three averages of one width, one after the other, come close to a bell curve.
constexpr int averages = 3;

/// Replaces each of `count` values, which lie `stride` bytes apart, by the average of those up to
/// `radius` away; beyond the ends there is nothing.
void average(uchar* values, int count, qsizetype stride, int radius) {
    std::vector<uchar> old(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        old[static_cast<std::size_t>(i)] = values[i * stride];
    }
    const auto at = [&old, count](int i) {
        return i < 0 || i >= count ? 0 : int(old[static_cast<std::size_t>(i)]);
    };
    const int width = 2 * radius + 1;
    int sum = 0;
    for (int i = -radius; i < radius; ++i) {
        sum += at(i);
    }
    for (int i = 0; i < count; ++i) {
        sum += at(i + radius);
        values[i * stride] = static_cast<uchar>((sum + width / 2) / width);
        sum -= at(i - radius);
    }
}

void blur(QImage& coverage, int reach) {
    const int radius = std::max(1, reach / averages);
    for (int pass = 0; pass < averages; ++pass) {
        for (int y = 0; y < coverage.height(); ++y) {
            average(coverage.scanLine(y), coverage.width(), 1, radius);
        }
        for (int x = 0; x < coverage.width(); ++x) {
            average(coverage.bits() + x, coverage.height(), coverage.bytesPerLine(), radius);
        }
    }
}

} // namespace

QMargins SoftShadow::margins() const {
    const int around = static_cast<int>(std::ceil(reach + std::abs(drop)));
    return {around, around, around, around};
}

QImage SoftShadow::of(const QSizeF& size, double cornerRadius, double pixelsPerPoint) const {
    const QMargins around = margins();
    const QSizeF whole = size.grownBy(QMarginsF(around));
    QImage coverage(roundedPixel(whole.width() * pixelsPerPoint),
                    roundedPixel(whole.height() * pixelsPerPoint), QImage::Format_Alpha8);
    coverage.fill(0);
    QPainter shape(&coverage);
    shape.setRenderHint(QPainter::Antialiasing);
    shape.scale(pixelsPerPoint, pixelsPerPoint);
    shape.setPen(Qt::NoPen);
    shape.setBrush(Qt::black);
    shape.drawRoundedRect(QRectF(QPointF(around.left(), around.top() + drop), size), cornerRadius,
                          cornerRadius);
    shape.end();
    blur(coverage, roundedPixel(reach * pixelsPerPoint));

    QImage shadow(coverage.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(color);
    QPainter painter(&shadow);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, coverage);
    painter.end();
    shadow.setDevicePixelRatio(pixelsPerPoint);
    return shadow;
}

const QImage& CachedShadow::of(const SoftShadow& shadow, const QSizeF& size, double cornerRadius,
                               double pixelsPerPoint) {
    const Key key = {shadow, size, cornerRadius, pixelsPerPoint};
    if (m_picture.isNull() || key != m_key) {
        m_key = key;
        m_picture = shadow.of(size, cornerRadius, pixelsPerPoint);
    }
    return m_picture;
}

} // namespace snapvane
