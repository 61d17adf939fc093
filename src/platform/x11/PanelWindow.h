#pragma once

#include "platform/Panels.h"
#include "platform/ScreenMapping.h"
#include "platform/x11/X11Connection.h"

class QWidget;

/// What every panel's window has in common: an override-redirect window of Qt's, which no window
/// manager moves, decorates, lists or focuses and which is on every workspace. Main thread, Qt's
/// connection.
namespace snapvane::x11::PanelWindow {

/// Makes the widget's window, unseen. `translucent` when the desktop shows transparency.
void prepare(QWidget& content, const QString& name, PanelInput input, bool translucent);

/// The window, once it is prepared.
xcb_window_t of(const QWidget& content);

/// Puts the window's upper-left corner at a pixel of the screen. Qt places windows by its own,
/// rounded, coordinates when it maps them, so that this is said before and after.
void place(QWidget& content, const Screen& screen, PixelPoint corner);

} // namespace snapvane::x11::PanelWindow
