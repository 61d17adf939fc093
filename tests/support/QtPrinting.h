#pragma once

#include <QRect>
#include <QString>

#include <ostream>

// How GoogleTest shows Qt's values in a failure. It looks for these beside the types: in the global
// namespace.

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << text.toStdString();
}

inline void PrintTo(const QPoint& point, std::ostream* stream) {
    *stream << point.x() << ',' << point.y();
}

inline void PrintTo(const QSize& size, std::ostream* stream) {
    *stream << size.width() << 'x' << size.height();
}

inline void PrintTo(const QRect& rect, std::ostream* stream) {
    *stream << rect.width() << 'x' << rect.height() << '+' << rect.x() << '+' << rect.y();
}
