#pragma once

#include "XcbConnection.h"

#include <QRect>

namespace snapvane::testing {

/// A window of another program, of one colour, which no window manager touches. It paints itself
/// when it is told to, never because the server asks, and counts how often that does. On the screen
/// when the constructor returns; gone with the object. Test thread only.
class PaintedWindow {
public:
    /// `rect` in native pixels of the desktop, the colour as 0xrrggbb.
    PaintedWindow(const QString& display, const QRect& rect, uint32_t colour);

    [[nodiscard]] xcb_window_t window() const { return m_window; }
    void paint(uint32_t colour);
    /// How often the server has asked for a painting since the last call.
    int takeExposures();

private:
    XcbConnection m_connection;
    xcb_window_t m_window;
    QSize m_size;
};

} // namespace snapvane::testing
