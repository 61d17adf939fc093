#include "platform/x11/RoundedShape.h"

#include <algorithm>
#include <cmath>

#include <xcb/xfixes.h>

namespace snapvane::x11 {

namespace {

// The kind of shape that decides what is seen, from the shape extension's protocol.
constexpr std::uint8_t boundingShape = 0;

/// How far the round corner cuts into the row that begins `row` pixels from the nearer edge.
int inset(int row, double radius, ShapeEdge edge) {
    // Of the row's middle, or of its lower end, where the corner is widest.
    const double depth = edge == ShapeEdge::Centres ? row + 0.5 : row + 1.0;
    const double above = radius - depth;
    if (above <= 0) {
        return 0;
    }
    const double cut = radius - std::sqrt(std::max(0.0, radius * radius - above * above));
    return static_cast<int>(edge == ShapeEdge::Centres ? std::ceil(cut - 0.5) : std::floor(cut));
}

} // namespace

std::vector<xcb_rectangle_t> roundedRows(PixelSize size, double radius, ShapeEdge edge) {
    const double fitting = std::min({radius, size.width / 2.0, size.height / 2.0});
    std::vector<xcb_rectangle_t> rows;
    for (int y = 0; y < size.height; ++y) {
        const int side = inset(std::min(y, size.height - 1 - y), fitting, edge);
        const auto width = static_cast<std::uint16_t>(std::max(0, size.width - 2 * side));
        if (!rows.empty() && rows.back().x == side) {
            ++rows.back().height;
        } else if (width > 0) {
            rows.push_back(
                {static_cast<std::int16_t>(side), static_cast<std::int16_t>(y), width, 1});
        }
    }
    return rows;
}

void setRoundedShape(const Server& server, xcb_window_t window, PixelSize size, double radius,
                     ShapeEdge edge) {
    if (!hasExtension(server, &xcb_xfixes_id)) {
        return;
    }
    const std::vector<xcb_rectangle_t> rows = roundedRows(size, radius, edge);
    const xcb_xfixes_region_t region = xcb_generate_id(server.connection);
    xcb_xfixes_create_region(server.connection, region, static_cast<std::uint32_t>(rows.size()),
                             rows.data());
    xcb_xfixes_set_window_shape_region(server.connection, window, boundingShape, 0, 0, region);
    xcb_xfixes_destroy_region(server.connection, region);
}

} // namespace snapvane::x11
