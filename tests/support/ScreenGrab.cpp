#include "ScreenGrab.h"

#include "Wait.h"

#include <cstring>

namespace snapvane::testing {

QImage grabScreen(const XcbConnection& connection, const QRect& rect) {
    const auto cookie = xcb_get_image(
        connection, XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), static_cast<int16_t>(rect.x()),
        static_cast<int16_t>(rect.y()), static_cast<uint16_t>(rect.width()),
        static_cast<uint16_t>(rect.height()), ~0U);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, nullptr));
    if (!reply) {
        return {};
    }
    QImage image(rect.size(), QImage::Format_RGB32);
    const auto rowBytes = static_cast<qsizetype>(rect.width()) * 4;
    const uint8_t* data = xcb_get_image_data(reply.get());
    for (int y = 0; y < rect.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::memcpy(row, data + y * rowBytes, static_cast<size_t>(rowBytes));
        for (int x = 0; x < rect.width(); ++x) {
            row[x] |= 0xff000000U;
        }
    }
    return image;
}

QImage grabSettledScreen(const XcbConnection& connection, const QRect& rect, int calmMs) {
    QImage last = grabScreen(connection, rect);
    require("a screen that no longer changes", [&] {
        pause(std::chrono::milliseconds(calmMs));
        QImage next = grabScreen(connection, rect);
        const bool same = next == last;
        last = std::move(next);
        return same;
    });
    return last;
}

} // namespace snapvane::testing
