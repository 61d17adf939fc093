#pragma once

#include "platform/x11/X11Connection.h"

#include "platform/Overlay.h"

#include <QRegion>

#include <xcb/render.h>

namespace snapvane::x11 {

/// The picture formats that drawing needs; asked for once.
struct RenderFormats {
    /// 32 bits with alpha; XCB_NONE when the server cannot render.
    xcb_render_pictformat_t argb = XCB_NONE;
    /// That of the root window.
    xcb_render_pictformat_t root = XCB_NONE;

    static const RenderFormats& of(const Server& server);
};

/// What a surface shows where nothing is drawn on it: the desktop itself, seen through, or pictures
/// of it for surfaces that cannot be seen through.
struct CanvasBackdrop {
    /// Alpha of the veil, 0 … 255; see-through surfaces.
    std::uint8_t veilAlpha = 0;
    /// Pictures of the desktop, plain and under the veil; XCB_NONE for see-through surfaces.
    xcb_render_picture_t plain = XCB_NONE;
    xcb_render_picture_t veiled = XCB_NONE;
};

/// Draws one region of a surface in the server's own memory: first into `target`, a picture of the
/// surface's size, limited to the region, so that no half-drawn state is ever seen. What it costs
/// depends on the region, not on the size of the screen.
class X11Canvas : public OverlayCanvas {
public:
    X11Canvas(const Server& server, xcb_render_picture_t target, const CanvasBackdrop& backdrop,
              const QRegion& region);

    void veil(const PixelRect& area) override;
    void clear(const PixelRect& area) override;
    void fill(const PixelRect& area, const QColor& color) override;
    void draw(PixelPoint topLeft, const QImage& image) override;

private:
    void source(xcb_render_picture_t picture, const PixelRect& area);
    void fillWith(std::uint8_t operation, const PixelRect& area, const xcb_render_color_t& color);

    const Server& m_server;
    xcb_render_picture_t m_target;
    CanvasBackdrop m_backdrop;
};

/// A region as rectangles of the X protocol.
std::vector<xcb_rectangle_t> rectanglesOf(const QRegion& region);

} // namespace snapvane::x11
