#include "platform/x11/PictureFormats.h"

#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

PictureFormats::PictureFormats(const Server& server) : m_rootVisual(server.screen->root_visual) {
    if (!hasExtension(server, &xcb_render_id)) {
        return;
    }
    const auto cookie = xcb_render_query_pict_formats(server.connection);
    const auto reply =
        owned(xcb_render_query_pict_formats_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return;
    }
    auto screens = xcb_render_query_pict_formats_screens_iterator(reply.get());
    for (; screens.rem > 0; xcb_render_pictscreen_next(&screens)) {
        auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
        for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
            auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
            for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
                m_formats.emplace(visuals.data->visual, visuals.data->format);
            }
        }
    }
}

xcb_render_pictformat_t PictureFormats::of(xcb_visualid_t visual) const {
    const auto found = m_formats.find(visual);
    return found == m_formats.end() ? xcb_render_pictformat_t{XCB_NONE} : found->second;
}

} // namespace snapvane::x11
