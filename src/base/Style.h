#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>

class QPainter;

/// The look that all of the program's windows share. Colours are functions, since they follow the
/// desktop's palette, which may change while the program runs. Sizes are points; a point is a
/// logical pixel here. Main thread.
namespace snapvane::Style {

inline constexpr double largeRadius = 12;
inline constexpr double cardRadius = 20;

/// The interface font at a size in points.
QFont font(int size, QFont::Weight weight = QFont::Normal);

/// What windows are filled with.
QColor surface();
/// What stands out from a window: a section of a page.
QColor card();
/// The colour of text.
QColor primary();
/// The colour of what only accompanies: the one of text at 60 %, or at more where that could not be
/// read on a surface or a card.
QColor secondary();
/// The same for another opaque background than those two.
QColor secondaryOn(const QColor& background);
/// The desktop's highlight colour.
QColor accent();
/// The same for icons on an opaque background: mixed with the colour of text as far as it takes to
/// tell them from it, since a desktop chooses its highlight colour for what lies behind texts.
QColor accentOn(const QColor& background);
/// What cannot be taken back is written in it; red, but dark enough to be read on a surface.
QColor destructive();

/// The colour as it is with that part of its own opacity.
QColor withOpacity(QColor color, double opacity);

/// The rectangle with its edges on the nearest boundaries of device pixels, in the painter's
/// coordinates, so that what is filled up to them has no half-covered edge at any scale.
QRectF crisp(const QPainter& painter, const QRectF& rect);

/// Draws a line of that width within the edge of a rounded rectangle; at least one device pixel
/// wide. The rectangle's edges should be crisp.
void strokeInside(QPainter& painter, const QRectF& rect, double radius, const QColor& color,
                  double width);

} // namespace snapvane::Style
