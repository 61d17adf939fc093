#include "platform/x11/X11Canvas.h"

#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

namespace {

bool isArgb(const xcb_render_pictforminfo_t& format) {
    return format.type == XCB_RENDER_PICT_TYPE_DIRECT && format.depth == 32 &&
           format.direct.alpha_mask == 0xff && format.direct.alpha_shift == 24 &&
           format.direct.red_shift == 16 && format.direct.green_shift == 8 &&
           format.direct.blue_shift == 0;
}

xcb_render_pictformat_t formatOfVisual(const xcb_render_query_pict_formats_reply_t* reply,
                                       xcb_visualid_t visual) {
    auto screens = xcb_render_query_pict_formats_screens_iterator(reply);
    for (; screens.rem > 0; xcb_render_pictscreen_next(&screens)) {
        auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
        for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
            auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
            for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
                if (visuals.data->visual == visual) {
                    return visuals.data->format;
                }
            }
        }
    }
    return XCB_NONE;
}

RenderFormats queryFormats(const Server& server) {
    RenderFormats formats;
    if (!hasExtension(server, &xcb_render_id)) {
        return formats;
    }
    const auto cookie = xcb_render_query_pict_formats(server.connection);
    const auto reply =
        owned(xcb_render_query_pict_formats_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return formats;
    }
    auto infos = xcb_render_query_pict_formats_formats_iterator(reply.get());
    for (; infos.rem > 0; xcb_render_pictforminfo_next(&infos)) {
        if (isArgb(*infos.data)) {
            formats.argb = infos.data->id;
        }
    }
    formats.root = formatOfVisual(reply.get(), server.screen->root_visual);
    return formats;
}

xcb_rectangle_t rectangle(const PixelRect& area) {
    return {static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
            static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
}

std::uint16_t premultiplied(float channel, float alpha) {
    return static_cast<std::uint16_t>(std::lround(channel * alpha * 0xffff));
}

} // namespace

const RenderFormats& RenderFormats::of(const Server& server) {
    static const RenderFormats formats = queryFormats(server);
    return formats;
}

std::vector<xcb_rectangle_t> rectanglesOf(const QRegion& region) {
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(static_cast<std::size_t>(region.rectCount()));
    for (const QRect& rect : region) {
        rectangles.push_back(rectangle(PixelRect::fromQRect(rect)));
    }
    return rectangles;
}

X11Canvas::X11Canvas(const Server& server, xcb_render_picture_t target,
                     const CanvasBackdrop& backdrop, const QRegion& region)
    : m_server(server), m_target(target), m_backdrop(backdrop) {
    const auto clip = rectanglesOf(region);
    xcb_render_set_picture_clip_rectangles(server.connection, target, 0, 0,
                                           static_cast<std::uint32_t>(clip.size()), clip.data());
}

void X11Canvas::veil(const PixelRect& area) {
    if (m_backdrop.veiled != XCB_NONE) {
        source(m_backdrop.veiled, area);
    } else {
        // 257 = 0xffff / 0xff: the same alpha in the 16 bits of the protocol.
        const auto alpha = static_cast<std::uint16_t>(m_backdrop.veilAlpha * 257);
        fillWith(XCB_RENDER_PICT_OP_SRC, area, {0, 0, 0, alpha});
    }
}

void X11Canvas::clear(const PixelRect& area) {
    if (m_backdrop.plain != XCB_NONE) {
        source(m_backdrop.plain, area);
    } else {
        fillWith(XCB_RENDER_PICT_OP_SRC, area, {0, 0, 0, 0});
    }
}

void X11Canvas::fill(const PixelRect& area, const QColor& color) {
    const float alpha = color.alphaF();
    fillWith(XCB_RENDER_PICT_OP_OVER, area,
             {premultiplied(color.redF(), alpha), premultiplied(color.greenF(), alpha),
              premultiplied(color.blueF(), alpha), premultiplied(1, alpha)});
}

void X11Canvas::draw(PixelPoint topLeft, const QImage& image) {
    if (image.isNull()) {
        return;
    }
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    xcb_connection_t* connection = m_server.connection;
    const auto width = static_cast<std::uint16_t>(pixels.width());
    const auto height = static_cast<std::uint16_t>(pixels.height());
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    const xcb_render_picture_t picture = xcb_generate_id(connection);
    xcb_create_pixmap(connection, 32, pixmap, m_server.root(), width, height);
    xcb_create_gc(connection, gc, pixmap, 0, nullptr);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, width, height, 0, 0, 0, 32,
                  static_cast<std::uint32_t>(pixels.sizeInBytes()), pixels.constBits());
    xcb_render_create_picture(connection, picture, pixmap, RenderFormats::of(m_server).argb, 0,
                              nullptr);
    xcb_render_composite(connection, XCB_RENDER_PICT_OP_OVER, picture, XCB_NONE, m_target, 0, 0, 0,
                         0, static_cast<std::int16_t>(topLeft.x),
                         static_cast<std::int16_t>(topLeft.y), width, height);
    xcb_render_free_picture(connection, picture);
    xcb_free_gc(connection, gc);
    xcb_free_pixmap(connection, pixmap);
}

void X11Canvas::source(xcb_render_picture_t picture, const PixelRect& area) {
    const xcb_rectangle_t to = rectangle(area);
    xcb_render_composite(m_server.connection, XCB_RENDER_PICT_OP_SRC, picture, XCB_NONE, m_target,
                         to.x, to.y, 0, 0, to.x, to.y, to.width, to.height);
}

void X11Canvas::fillWith(std::uint8_t operation, const PixelRect& area,
                         const xcb_render_color_t& color) {
    const xcb_rectangle_t to = rectangle(area);
    xcb_render_fill_rectangles(m_server.connection, operation, m_target, color, 1, &to);
}

} // namespace snapvane::x11
