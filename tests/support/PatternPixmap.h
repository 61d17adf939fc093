#pragma once

#include "TestPattern.h"

#include <algorithm>
#include <cstdint>
#include <vector>
#include <xcb/xcb.h>

namespace snapvane::testing {

/// Makes pixmaps and fills them pixel by pixel. Owns its graphics context; the pixmaps belong to
/// the caller. The display must have 32 bits a pixel.
class PixmapPainter {
public:
    PixmapPainter(xcb_connection_t* connection, xcb_window_t root)
        : m_connection(connection), m_root(root), m_context(xcb_generate_id(connection)) {
        xcb_create_gc(connection, m_context, root, 0, nullptr);
    }
    ~PixmapPainter() { xcb_free_gc(m_connection, m_context); }
    PixmapPainter(const PixmapPainter&) = delete;
    PixmapPainter& operator=(const PixmapPainter&) = delete;

    [[nodiscard]] xcb_gcontext_t context() const { return m_context; }

    [[nodiscard]] xcb_pixmap_t create(int width, int height) const {
        const xcb_pixmap_t pixmap = xcb_generate_id(m_connection);
        xcb_create_pixmap(m_connection, 24, pixmap, m_root, static_cast<uint16_t>(width),
                          static_cast<uint16_t>(height));
        return pixmap;
    }

    /// `colourAt(x, y)` gives 0xrrggbb. Sent a few rows at a time, as requests are limited in size.
    template <typename Colour>
    void paint(xcb_pixmap_t pixmap, int width, int height, Colour colourAt) const {
        const int rowsAtOnce = std::max(1, 60000 / width);
        std::vector<uint32_t> rows;
        for (int top = 0; top < height; top += rowsAtOnce) {
            const int count = std::min(rowsAtOnce, height - top);
            rows.clear();
            for (int y = top; y < top + count; ++y) {
                for (int x = 0; x < width; ++x) {
                    rows.push_back(colourAt(x, y));
                }
            }
            xcb_put_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, m_context,
                          static_cast<uint16_t>(width), static_cast<uint16_t>(count), 0,
                          static_cast<int16_t>(top), 0, 24,
                          static_cast<uint32_t>(rows.size() * sizeof(uint32_t)),
                          reinterpret_cast<const uint8_t*>(rows.data()));
        }
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_gcontext_t m_context;
};

} // namespace snapvane::testing
