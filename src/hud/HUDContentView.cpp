#include "hud/HUDContentView.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace snapvane {

namespace {

// Points; a point is a logical pixel here.
constexpr int fontSize = 13;
constexpr int sidePadding = 14;
constexpr int verticalPadding = 8;
constexpr double plateOpacity = 0.82;

} // namespace

HUDContentView::HUDContentView(const QString& message) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setMessage(message);
}

void HUDContentView::setMessage(const QString& message) {
    m_message = message;
    setAccessibleName(message);
    resize(sizeHint());
    update();
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

QSize HUDContentView::sizeHint() const {
    const QFontMetricsF metrics(textFont());
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(m_message))) + 2 * sidePadding,
            static_cast<int>(std::ceil(metrics.height())) + 2 * verticalPadding};
}

void HUDContentView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!testAttribute(Qt::WA_TranslucentBackground)) {
        // Nothing shines through the plate then.
        painter.fillRect(rect(), Qt::black);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(plateOpacity)));
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    painter.setFont(textFont());
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, m_message);
}

QFont HUDContentView::textFont() const {
    QFont font = this->font();
    font.setPixelSize(fontSize);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace snapvane
