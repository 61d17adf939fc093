#include "selection/LoupeLayers.h"

#include "base/Rounding.h"
#include "platform/ScreenMapping.h"
#include "selection/LoupePixels.h"
#include "selection/SelectionOutline.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace snapvane {

namespace {

using LoupePixels::reach;
using LoupePixels::side;

// In points.
constexpr double cellSide = 8;
constexpr double circleDiameter = side * cellSide;
constexpr double labelHeight = 36;
constexpr double gridWidth = 0.5;
constexpr double gridOpacity = 0.25;
constexpr double frameWidth = 2;
constexpr double reticleReach = 10;
constexpr double reticleWidth = 1;
constexpr double ringInset = 0.5;
constexpr double ringWidth = 2;
constexpr float ringOpacity = 0.9F;
constexpr float markOpacity = 0.95F;
// The shadow reaches no further than the view does.
constexpr double shadowDrop = 2;
constexpr double shadowReach = 8;
constexpr double shadowOpacity = 0.4;

QImage blank(PixelSize size) {
    QImage image(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QColor withOpacity(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

/// How much of the colour below each pixel of the circle's square is left under the grid: the cells
/// are filled and outlined one after another, the lowest row first, so that a cell covers the
/// outlines that its neighbours have drawn into it before.
class GridLight {
public:
    explicit GridLight(int size)
        : m_size(size),
          m_light(static_cast<std::size_t>(size) * static_cast<std::size_t>(size), 1.0) {}

    void paint(const PixelRect& cell, double lineWidth) {
        forEach(cell, [](double& light) { light = 1; });
        for (const auto& line : SelectionOutline::cells(cell, lineWidth)) {
            forEach(line.area,
                    [&line](double& light) { light *= 1 - gridOpacity * line.coverage; });
        }
    }

    QImage shade() const {
        QImage image = blank({m_size, m_size});
        for (int y = 0; y < m_size; ++y) {
            auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < m_size; ++x) {
                row[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(255 * (1 - at(x, y)))));
            }
        }
        return image;
    }

private:
    double at(int x, int y) const {
        return m_light[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size) +
                       static_cast<std::size_t>(x)];
    }

    template <typename Change> void forEach(const PixelRect& area, Change change) {
        const QRect visible = area.toQRect().intersected(QRect(0, 0, m_size, m_size));
        for (int y = visible.top(); y <= visible.bottom(); ++y) {
            for (int x = visible.left(); x <= visible.right(); ++x) {
                change(m_light[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size) +
                               static_cast<std::size_t>(x)]);
            }
        }
    }

    int m_size;
    std::vector<double> m_light;
};

QImage drawGrid(const LoupeGeometry& geometry) {
    GridLight light(geometry.circle.width);
    for (int row = side - 1; row >= 0; --row) {
        for (int column = 0; column < side; ++column) {
            light.paint(geometry.cell(column, row), gridWidth * geometry.scale);
        }
    }
    return light.shade();
}

QImage drawMarks(const LoupeGeometry& geometry, const LoupeLook& look) {
    QImage image = blank({geometry.circle.width, geometry.circle.height});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelRect middle = geometry.cell(reach, reach);
    for (const auto& line : SelectionOutline::cells(middle, frameWidth * geometry.scale)) {
        painter.fillRect(
            line.area.toQRect(),
            withOpacity(look.frameColor, markOpacity * static_cast<float>(line.coverage)));
    }
    // In whole pixels: where the middle of the cell is between two, a line over both of them would
    // be a faint one.
    const int reachInPixels = roundedPixel(reticleReach * geometry.scale);
    const int width = std::max(1, roundedPixel(reticleWidth * geometry.scale));
    const QPoint center(middle.x + middle.width / 2, middle.y + middle.height / 2);
    const QColor color = withOpacity(look.reticleColor, markOpacity);
    painter.fillRect(center.x() - reachInPixels, center.y() - width / 2, 2 * reachInPixels, width,
                     color);
    painter.fillRect(center.x() - width / 2, center.y() - reachInPixels, width, 2 * reachInPixels,
                     color);
    return image;
}

QImage drawMask(const LoupeGeometry& geometry) {
    QImage image = blank({geometry.circle.width, geometry.circle.height});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QRectF(image.rect()));
    return image;
}

QImage drawRing(const LoupeGeometry& geometry) {
    QImage image = blank(geometry.view);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = ringInset * geometry.scale;
    painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, ringOpacity), ringWidth * geometry.scale));
    painter.drawEllipse(QRectF(geometry.circle.toQRect()).adjusted(inset, inset, -inset, -inset));
    return image;
}

QImage drawShadow(const LoupeGeometry& geometry, const QImage& mask) {
    QImage image = blank(geometry.view);
    const PixelRect& circle = geometry.circle;
    const double radius = circle.width / 2.0;
    const QPointF center(circle.x + radius, circle.y + radius + shadowDrop * geometry.scale);
    const double reachInPixels = shadowReach * geometry.scale;
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double dy = y + 0.5 - center.y();
        for (int x = 0; x < image.width(); ++x) {
            const double dx = x + 0.5 - center.x();
            const double distance = std::sqrt(dx * dx + dy * dy);
            const double fading =
                std::clamp((radius + reachInPixels - distance) / reachInPixels, 0.0, 1.0);
            row[x] = qRgba(0, 0, 0,
                           static_cast<int>(std::lround(255 * shadowOpacity * fading * fading)));
        }
    }
    // Nothing of it under the circle, which is see-through where it is black.
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(circle.x, circle.y, mask);
    painter.end();
    return image;
}

} // namespace

LoupeGeometry::LoupeGeometry(GlobalSize viewSize, double pixelsPerPoint)
    : scale(pixelsPerPoint), view(ScreenMapping::pixelSize(viewSize, pixelsPerPoint)) {
    const PixelSize size = ScreenMapping::pixelSize({circleDiameter, circleDiameter}, scale);
    const double top = viewSize.height - labelHeight - circleDiameter;
    circle = {roundedPixel((viewSize.width - circleDiameter) / 2 * scale),
              roundedPixel(top * scale), size.width, size.height};
}

int LoupeGeometry::edge(int cell) const {
    return roundedPixel(cell * cellSide * scale);
}

PixelRect LoupeGeometry::cell(int column, int row) const {
    const int left = edge(column);
    const int top = edge(row);
    return {left, top, edge(column + 1) - left, edge(row + 1) - top};
}

LoupeLayers::LoupeLayers(const LoupeGeometry& geometry, const LoupeLook& look)
    : grid(drawGrid(geometry)), marks(drawMarks(geometry, look)), mask(drawMask(geometry)),
      ring(drawRing(geometry)),
      shadow(look.isTranslucent ? drawShadow(geometry, mask) : blank(geometry.view)) {
    if (!look.isTranslucent) {
        shadow.fill(Qt::black);
    }
}

} // namespace snapvane
