#pragma once

#include "platform/x11/X11Connection.h"

#include <map>

#include <xcb/render.h>

namespace snapvane::x11 {

/// How the server renders the pixels of each visual. Read once for a connection; any thread.
class PictureFormats {
public:
    /// Blocks for a round trip.
    explicit PictureFormats(const Server& server);

    /// XCB_NONE when the server cannot render such pixels.
    xcb_render_pictformat_t of(xcb_visualid_t visual) const;
    /// Those of the root window.
    xcb_render_pictformat_t ofRoot() const { return of(m_rootVisual); }

private:
    xcb_visualid_t m_rootVisual;
    std::map<xcb_visualid_t, xcb_render_pictformat_t> m_formats;
};

} // namespace snapvane::x11
