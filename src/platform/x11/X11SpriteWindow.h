#pragma once

#include "platform/Sprites.h"
#include "platform/x11/X11Connection.h"

namespace snapvane::x11 {

/// The window of a sprite: override-redirect, with no input at all. It is taken off the glass by
/// moving it off the desktop, since a compositor may fade out what is unmapped, where it last was.
/// Owned by its sprite; main thread, Qt's connection.
class X11SpriteWindow {
public:
    /// Whether the window has an alpha channel or looks like the root window.
    enum class Pixels { Opaque, Translucent };

    /// `background` is a pixel value of such a window.
    X11SpriteWindow(const Server& server, const SpriteOptions& options, Pixels pixels,
                    std::uint32_t background);
    ~X11SpriteWindow();
    X11SpriteWindow(const X11SpriteWindow&) = delete;
    X11SpriteWindow& operator=(const X11SpriteWindow&) = delete;

    xcb_window_t id() const { return m_window; }
    Pixels pixels() const { return m_pixels; }
    std::uint8_t depth() const { return m_depth; }
    bool isVisible() const { return m_visible; }

    /// Maps the window off the desktop, so that a compositor has faded it in before it is shown.
    void mapParked();
    /// Puts the window there, in its level; the caller flushes.
    void show(const DeviceRect& area);
    void hide();
    /// Unmaps the window some time from now, unless it is shown again before.
    void unmapLater();
    /// Cuts the window to the areas (pixels of the window) together.
    void setShape(const std::vector<RoundedArea>& shape);

private:
    void create(std::uint32_t background);
    void map();
    void ignoreInput();
    void move(const DeviceRect& area);
    void park();

    Server m_server;
    int m_level;
    Pixels m_pixels;
    std::uint8_t m_depth;
    xcb_colormap_t m_colormap = XCB_NONE;
    xcb_window_t m_window = XCB_NONE;
    DeviceRect m_area;
    std::vector<RoundedArea> m_shape;
    bool m_mapped = false;
    bool m_visible = false;
    // Counts showings, so that a window that came back is not unmapped for an earlier hiding.
    unsigned m_showing = 0;
    // Goes with the window; what is still planned for it then does not happen.
    QObject m_context;
};

} // namespace snapvane::x11
