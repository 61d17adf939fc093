#pragma once

#include "platform/x11/X11Canvas.h"

#include "platform/Overlay.h"

namespace snapvane::x11 {

/// The overlay's window on one screen. With a compositor it is see-through; without one it shows a
/// picture of the desktop, grabbed when it is made, under the veil. All of its pixels live in the
/// server; an untouched surface is nothing but the window's background. Owned by the session.
class X11OverlaySurface {
public:
    X11OverlaySurface(const Server& server, const Screen& screen, const OverlayOptions& options,
                      bool translucent, xcb_cursor_t cursor);
    ~X11OverlaySurface();
    X11OverlaySurface(const X11OverlaySurface&) = delete;
    X11OverlaySurface& operator=(const X11OverlaySurface&) = delete;

    xcb_window_t window() const { return m_window; }

    /// Notes a region (native pixels of the screen) that has to be painted anew.
    void markDirty(const QRegion& region) { m_dirty += region; }
    /// Notes a region whose pixels the server has lost; the background has already been put back.
    void markExposed(const QRegion& region);
    /// Has the client paint what was noted.
    void paint(std::size_t index, OverlayClient& client);
    /// Puts the surface on the screen.
    void show();
    /// Takes the surface off the glass without unmapping it: it is made to show nothing and moved
    /// off the desktop. A compositor that fades windows out would show it a while longer.
    void conceal();

private:
    xcb_window_t createWindow(const OverlayOptions& options, xcb_cursor_t cursor);
    void createBackdrop(std::uint8_t veilAlpha);
    xcb_pixmap_t createPixmap();
    xcb_render_picture_t createPicture(xcb_drawable_t drawable, std::uint32_t subwindows);
    void createBackBuffer();
    void copyToWindow(const QRegion& region);

    Server m_server;
    DeviceRect m_area;
    int m_level;
    bool m_translucent;
    std::uint8_t m_depth;
    xcb_render_pictformat_t m_format;
    xcb_colormap_t m_colormap = XCB_NONE;
    xcb_pixmap_t m_veiledPixmap = XCB_NONE;
    xcb_pixmap_t m_plainPixmap = XCB_NONE;
    CanvasBackdrop m_backdrop;
    xcb_window_t m_window = XCB_NONE;
    // Made when something is drawn for the first time.
    xcb_pixmap_t m_backBuffer = XCB_NONE;
    xcb_render_picture_t m_backPicture = XCB_NONE;
    xcb_gcontext_t m_gc = XCB_NONE;
    QRegion m_dirty;
};

} // namespace snapvane::x11
