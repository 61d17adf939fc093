#include "selection/SizeLabel.h"

#include "base/Rounding.h"
#include "base/Translation.h"
#include "selection/LabelFont.h"

#include <QFontMetricsF>
#include <QPainter>

namespace snapvane::SizeLabel {

namespace {

// All in points.
constexpr double horizontalPadding = 8;
constexpr double verticalPadding = 4;
constexpr double cornerRadius = 6;
constexpr double gapToSelection = 8;
constexpr double marginToBounds = 8;
constexpr int fontSize = 12;
constexpr float backgroundOpacity = 0.75F;

QFont mediumFont() {
    QFont font = labelFont(fontSize);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace

QString text(GlobalSize size) {
    return translated("%1 × %2 pt")
        .arg(roundedInteger(size.width))
        .arg(roundedInteger(size.height));
}

GlobalSize textSize(const QString& text) {
    const QFontMetricsF metrics(mediumFont());
    return {metrics.horizontalAdvance(text), metrics.height()};
}

GlobalRect box(const GlobalRect& selection, GlobalSize measuredText, const GlobalRect& bounds) {
    const double width = measuredText.width + 2 * horizontalPadding;
    const double height = measuredText.height + 2 * verticalPadding;
    double y = selection.maxY() + gapToSelection;
    if (y + height > bounds.maxY() - marginToBounds) {
        y = selection.minY() - height - gapToSelection;
    }
    const double rightmost = bounds.maxX() - width - marginToBounds;
    const double x =
        std::max(bounds.minX() + marginToBounds, std::min(selection.midX() - width / 2, rightmost));
    return {{x, y}, {width, height}};
}

QImage render(const QString& text, PixelSize pixels, double scale) {
    QImage image(pixels.width, pixels.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    const QRectF area(0, 0, pixels.width / scale, pixels.height / scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, backgroundOpacity));
    painter.drawRoundedRect(area, cornerRadius, cornerRadius);
    painter.setPen(Qt::white);
    const QFont font = mediumFont();
    painter.setFont(font);
    // The text's lower-left corner stands a padding away from the box's.
    const double baseline = area.height() - verticalPadding - QFontMetricsF(font).descent();
    painter.drawText(QPointF(horizontalPadding, baseline), text);
    return image;
}

} // namespace snapvane::SizeLabel
