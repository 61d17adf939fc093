#include "selection/SelectionMagnifierView.h"

#include "base/Rounding.h"
#include "base/SystemColors.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace snapvane {

namespace {

constexpr int circleAlpha = 217; // 85 % of 255
// More scales than that are hardly ever side by side.
constexpr std::size_t mostStages = 3;
constexpr float labelOpacity = 0.72F;
// How far the shape reaches beyond the circle: to the end of the white border and a dark rim around
// it, which stands for the shadow where there can be none. Points.
constexpr double rimOverhang = 1.5;

/// A premultiplied colour over the black of the circle, which has `alpha`.
QRgb overBlack(QRgb color, int alpha) {
    const int opacity = qAlpha(color);
    return qRgba(qRed(color), qGreen(color), qBlue(color), opacity + alpha * (255 - opacity) / 255);
}

} // namespace

const SpritePicture& SelectionMagnifierView::draw(double scale, bool isTranslucent) {
    const Stage& stage = stageFor({scale, isTranslucent, m_frameColor, m_reticleColor});
    QImage& image = m_picture.image;
    const QSize pixels(stage.geometry.view.width, stage.geometry.view.height);
    if (image.size() != pixels) {
        image = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    }
    image.fill(Qt::transparent);
    drawCircle(stage);

    QPainter painter(&image);
    const RoundedArea label =
        m_label.draw(painter, MagnifierLabel::text(globalPoint, selectionSize), stage.geometry.view,
                     scale, isTranslucent ? labelOpacity : 1.0F);
    const int overhang = roundedPixel(rimOverhang * scale);
    const QRect circle =
        stage.geometry.circle.toQRect().adjusted(-overhang, -overhang, overhang, overhang);
    m_picture.shape = {{PixelRect::fromQRect(circle), circle.width() / 2.0}, label};
    return m_picture;
}

void SelectionMagnifierView::reloadStyle() {
    m_label = MagnifierLabel();
    m_frameColor = SystemColors::yellow();
    m_reticleColor = SystemColors::red();
}

const SelectionMagnifierView::Stage& SelectionMagnifierView::stageFor(const LoupeLook& look) {
    const auto found = std::find_if(m_stages.begin(), m_stages.end(),
                                    [&look](const Stage& stage) { return stage.look == look; });
    if (found != m_stages.end()) {
        return *found;
    }
    if (m_stages.size() == mostStages) {
        m_stages.erase(m_stages.begin());
    }
    const LoupeGeometry geometry(size, look.scale);
    m_stages.push_back({look, geometry, LoupeLayers(geometry, look)});
    return m_stages.back();
}

void SelectionMagnifierView::drawCircle(const Stage& stage) {
    const LoupeGeometry& geometry = stage.geometry;
    const LoupePixels::Cells cells =
        snapshot ? LoupePixels::around(*snapshot, localPoint) : LoupePixels::Cells();
    fillCells(stage, cells);

    const QPoint corner(geometry.circle.x, geometry.circle.y);
    QPainter painter(&m_picture.image);
    if (snapshot) {
        // The columns beyond the picture's sides are left black, without a grid.
        const int left = geometry.edge(cells.firstColumn);
        const QRect shown(left, 0, geometry.edge(cells.endColumn) - left, geometry.circle.height);
        painter.drawImage(corner + shown.topLeft(), stage.layers.grid, shown);
        painter.drawImage(corner, stage.layers.marks);
    }
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(corner, stage.layers.mask);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, stage.layers.ring);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    painter.drawImage(0, 0, stage.layers.shadow);
}

/// Fills the circle's square, a row of pixels at a time: the first one of a row of cells is written
/// and then repeated.
void SelectionMagnifierView::fillCells(const Stage& stage, const LoupePixels::Cells& cells) {
    const int alpha = stage.look.isTranslucent ? circleAlpha : 255;
    const LoupeGeometry& geometry = stage.geometry;
    const PixelRect& circle = geometry.circle;
    QImage& image = m_picture.image;
    for (int row = 0; row < LoupePixels::side; ++row) {
        const int top = geometry.edge(row);
        auto* first = reinterpret_cast<QRgb*>(image.scanLine(circle.y + top)) + circle.x;
        std::fill_n(first, circle.width, qRgba(0, 0, 0, alpha));
        for (int column = cells.firstColumn; column < cells.endColumn; ++column) {
            std::fill(first + geometry.edge(column), first + geometry.edge(column + 1),
                      overBlack(cells.at(column, row), alpha));
        }
        for (int y = top + 1; y < geometry.edge(row + 1); ++y) {
            std::memcpy(image.scanLine(circle.y + y) + qsizetype{circle.x} * 4, first,
                        static_cast<std::size_t>(circle.width) * sizeof(QRgb));
        }
    }
}

} // namespace snapvane
