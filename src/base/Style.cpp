#include "base/Style.h"

#include "base/Contrast.h"
#include "base/Rounding.h"
#include "base/SystemColors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace snapvane::Style {

namespace {

// In a dark palette the fields of a window are darker than the window itself; what stands out has
// to be lighter.
constexpr int cardLightening = 112;

QColor paletteColor(QPalette::ColorRole role) {
    return QGuiApplication::palette().color(role);
}

} // namespace

QFont font(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QColor surface() {
    return paletteColor(QPalette::Window);
}

QColor card() {
    return SystemColors::isDark() ? surface().lighter(cardLightening)
                                  : paletteColor(QPalette::Base);
}

QColor primary() {
    return paletteColor(QPalette::WindowText);
}

QColor secondary() {
    const QColor onSurface = secondaryOn(surface());
    const QColor onCard = secondaryOn(card());
    return onSurface.alphaF() > onCard.alphaF() ? onSurface : onCard;
}

QColor secondaryOn(const QColor& background) {
    QColor color = SystemColors::secondaryLabel();
    // Palettes whose text is no pure black or white need a little more of it.
    for (int percent = 60; percent <= 100 && contrast(color, background) < readableContrast;
         percent += 2) {
        color.setAlphaF(static_cast<float>(percent) / 100.0F);
    }
    return color;
}

QColor accent() {
    return SystemColors::accent();
}

QColor accentOn(const QColor& background) {
    QColor color = accent();
    for (int percent = 10; percent <= 100 && contrast(color, background) < recognisableContrast;
         percent += 10) {
        color = blended(withOpacity(primary(), percent / 100.0), accent());
    }
    return color;
}

QColor destructive() {
    return SystemColors::isDark() ? QColor(0xff, 0x9a, 0x9a) : QColor(0xb8, 0x1c, 0x23);
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

QRectF crisp(const QPainter& painter, const QRectF& rect) {
    const QTransform transform = painter.deviceTransform();
    const QRectF device = transform.mapRect(rect);
    const QRectF snapped(QPointF(roundedPixel(device.left()), roundedPixel(device.top())),
                         QPointF(roundedPixel(device.right()), roundedPixel(device.bottom())));
    return transform.inverted().mapRect(snapped);
}

void strokeInside(QPainter& painter, const QRectF& rect, double radius, const QColor& color,
                  double width) {
    const double scale = painter.deviceTransform().m11();
    const double shown = std::max(1, roundedPixel(width * scale)) / scale;
    const double inset = shown / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, shown));
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset,
                            radius - inset);
}

} // namespace snapvane::Style
