#include "base/SystemColors.h"

#include <QGuiApplication>
#include <QPalette>

namespace snapvane::SystemColors {

namespace {

QColor lightOrDark(QRgb light, QRgb dark) {
    return QColor::fromRgb(isDark() ? dark : light);
}

} // namespace

bool isDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

QColor blue() {
    return lightOrDark(0x1a73e8, 0x4c9bff);
}

QColor red() {
    return lightOrDark(0xe5383b, 0xff5c5c);
}

QColor yellow() {
    return lightOrDark(0xf5c400, 0xffd60a);
}

QColor gray() {
    return lightOrDark(0x8a8f98, 0x9aa0a6);
}

QColor orange() {
    return lightOrDark(0xf08c00, 0xffa033);
}

QColor accent() {
    return QGuiApplication::palette().color(QPalette::Highlight);
}

QColor secondaryLabel() {
    QColor color = QGuiApplication::palette().color(QPalette::WindowText);
    color.setAlphaF(0.6F);
    return color;
}

} // namespace snapvane::SystemColors
