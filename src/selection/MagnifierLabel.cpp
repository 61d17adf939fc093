#include "selection/MagnifierLabel.h"

#include "base/Rounding.h"
#include "base/Translation.h"
#include "selection/LabelFont.h"
#include "selection/SizeLabel.h"

#include <QPainter>

#include <algorithm>

namespace snapvane {

namespace {

// All in points.
constexpr int fontSize = 11;
constexpr double textBottom = 8;
constexpr double boxBottom = 6;
constexpr double horizontalPadding = 6;
constexpr double leastPadding = 4;
constexpr double addedHeight = 4;
constexpr double cornerRadius = 6;

} // namespace

MagnifierLabel::MagnifierLabel() : m_font(labelFont(fontSize)), m_metrics(m_font) {}

QString MagnifierLabel::text(GlobalPoint place, GlobalSize selection) {
    QString text = translated("%1, %2").arg(roundedInteger(place.x)).arg(roundedInteger(place.y));
    if (selection.width > 0 && selection.height > 0) {
        text += QStringLiteral(" · ") + SizeLabel::text(selection);
    }
    return text;
}

RoundedArea MagnifierLabel::draw(QPainter& painter, const QString& text, PixelSize view,
                                 double scale, float backgroundOpacity) const {
    const double viewWidth = view.width / scale;
    const double viewHeight = view.height / scale;
    const double natural = m_metrics.horizontalAdvance(text);
    const double shrinking = std::min(1.0, (viewWidth - 2 * leastPadding) / natural);
    const double width = natural * shrinking;
    const double boxWidth = std::min(viewWidth, width + 2 * horizontalPadding);
    const double boxHeight = m_metrics.height() + addedHeight;
    const PixelRect box = {roundedPixel((viewWidth - boxWidth) / 2 * scale),
                           roundedPixel((viewHeight - boxBottom - boxHeight) * scale),
                           roundedPixel(boxWidth * scale), roundedPixel(boxHeight * scale)};

    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, backgroundOpacity));
    painter.drawRoundedRect(box.toQRect(), cornerRadius * scale, cornerRadius * scale);
    painter.setPen(Qt::white);
    painter.setFont(m_font);
    // A smaller text keeps to the middle of its line.
    const double descent =
        m_metrics.descent() * shrinking + m_metrics.height() * (1 - shrinking) / 2;
    painter.translate((viewWidth - width) / 2 * scale, (viewHeight - textBottom - descent) * scale);
    painter.scale(scale * shrinking, scale * shrinking);
    painter.drawText(QPointF(0, 0), text);
    painter.restore();
    return {box, cornerRadius * scale};
}

} // namespace snapvane
