#include "RootPicture.h"

#include "PatternPixmap.h"

namespace snapvane::testing {

void paintRootPattern(const XcbConnection& connection) {
    const QSize size = connection.rootRect().size();
    const PixmapPainter painter(connection, connection.root());
    const xcb_pixmap_t pixmap = painter.create(size.width(), size.height());
    painter.paint(pixmap, size.width(), size.height(),
                  [](int x, int y) { return patternPixel(x, y); });
    const uint32_t value = pixmap;
    xcb_change_window_attributes(connection, connection.root(), XCB_CW_BACK_PIXMAP, &value);
    xcb_clear_area(connection, 0, connection.root(), 0, 0, 0, 0);
    for (const char* name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, connection.root(),
                            connection.atom(name), XCB_ATOM_PIXMAP, 32, 1, &value);
    }
    connection.sync();
}

} // namespace snapvane::testing
