#pragma once

#include <QColor>

/// The named colours of the user interface, as functions because light and dark differ and the
/// palette may change while the program runs. Main thread.
namespace snapvane::SystemColors {

/// True when the desktop's palette is a dark one.
bool isDark();

QColor blue();
QColor red();
QColor yellow();
QColor gray();
QColor orange();
/// The desktop's highlight colour.
QColor accent();
/// The colour of secondary text: the palette's text at 60 %.
QColor secondaryLabel();

} // namespace snapvane::SystemColors
