#pragma once

#include "ClientOptions.h"
#include "PatternPixmap.h"

#include <cstdint>
#include <xcb/xcb.h>

namespace snapvane::testing {

/// The test client's window. What it shows is kept in a pixmap, and every painting is one copy of
/// it, so that nobody can see half of it. Owns window and pixmap; made and driven by the client's
/// main loop.
class ClientWindow {
public:
    ClientWindow(xcb_connection_t* connection, const xcb_screen_t& screen,
                 const ClientOptions& options);

    void show();
    /// Copies the whole pixmap to the window, says that it is painted, and waits for the server.
    void repaint();
    /// Makes the next frame and copies it to the window.
    void nextFrame();

private:
    void create(const xcb_screen_t& screen);
    void describe();
    void paintPixmap();
    void setNumber(xcb_atom_t property, uint32_t value);
    xcb_atom_t atom(const char* name);

    xcb_connection_t* m_connection;
    ClientOptions m_options;
    PixmapPainter m_painter;
    xcb_window_t m_window;
    xcb_pixmap_t m_pixmap;
    xcb_atom_t m_painted;
    xcb_atom_t m_frameAtom;
    uint32_t m_frame = 0;
};

} // namespace snapvane::testing
