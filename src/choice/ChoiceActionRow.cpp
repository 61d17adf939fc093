#include "choice/ChoiceActionRow.h"

#include "base/Style.h"
#include "base/Symbols.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace snapvane {

namespace {

using ChoicePanelColors::RowState;

// Points.
constexpr double gap = 14;
constexpr double sidePadding = 14;
constexpr double verticalPadding = 12;
constexpr double iconFrame = 36;
// Symbols keep some room around their drawing: this one stands as tall as text of 26 points.
constexpr double symbolSize = 30;
constexpr double lineGap = 2;
constexpr int titleSize = 16;
constexpr int subtitleSize = 12;
constexpr int keyHintSize = 11;
constexpr double keyHintSidePadding = 8;
constexpr double keyHintVerticalPadding = 4;
constexpr double idleBorderWidth = 1;
constexpr double hoveredBorderWidth = 1.5;
constexpr double focusWidth = 2;

QFont titleFont() {
    return Style::font(titleSize, QFont::DemiBold);
}

QFont subtitleFont() {
    return Style::font(subtitleSize);
}

QFont keyHintFont() {
    return Style::font(keyHintSize, QFont::DemiBold);
}

double lineHeight(const QFont& font) {
    return std::ceil(QFontMetricsF(font).height());
}

double textsHeight() {
    return lineHeight(titleFont()) + lineGap + lineHeight(subtitleFont());
}

void drawLine(QPainter& painter, const QRectF& area, const QFont& font, const QColor& color,
              const QString& text) {
    painter.setFont(font);
    painter.setPen(color);
    const QString fitting = QFontMetricsF(font).elidedText(text, Qt::ElideRight, area.width());
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
}

} // namespace

ChoiceActionRow::ChoiceActionRow(ChoiceActionRowContents contents, QWidget* parent)
    : QAbstractButton(parent), m_contents(std::move(contents)) {
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(m_contents.title);
    setAccessibleDescription(m_contents.helpText);
    setToolTip(m_contents.helpText);
}

QSize ChoiceActionRow::sizeHint() const {
    const double content = std::max(iconFrame, textsHeight());
    return {static_cast<int>(2 * sidePadding + iconFrame),
            static_cast<int>(std::ceil(content + 2 * verticalPadding))};
}

void ChoiceActionRow::enterEvent(QEnterEvent* event) {
    setHovered(true);
    QAbstractButton::enterEvent(event);
}

void ChoiceActionRow::leaveEvent(QEvent* event) {
    setHovered(false);
    QAbstractButton::leaveEvent(event);
}

void ChoiceActionRow::setHovered(bool hovered) {
    m_isHovered = hovered;
    update();
}

RowState ChoiceActionRow::state() const {
    if (isDown()) {
        return RowState::Pressed;
    }
    return m_isHovered ? RowState::Hovered : RowState::Idle;
}

ChoicePanelColors::RowColors ChoiceActionRow::colors() const {
    return ChoicePanelColors::row(state(), m_contents.isDestructive);
}

void ChoiceActionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    paintIcon(painter);
    const double keyHintLeft = paintKeyHint(painter);
    paintTexts(painter, keyHintLeft - gap);
}

void ChoiceActionRow::paintBackground(QPainter& painter) const {
    const auto colors = this->colors();
    const QRectF area = Style::crisp(painter, rect());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(area, Style::largeRadius, Style::largeRadius);
    Style::strokeInside(painter, area, Style::largeRadius, colors.border,
                        state() == RowState::Idle ? idleBorderWidth : hoveredBorderWidth);
    if (hasFocus()) {
        Style::strokeInside(painter, area, Style::largeRadius, Style::accent(), focusWidth);
    }
}

void ChoiceActionRow::paintIcon(QPainter& painter) const {
    const double scale = painter.deviceTransform().m11();
    QImage icon = Symbols::render(rawValue(m_contents.symbol),
                                  static_cast<int>(std::lround(symbolSize * scale)), colors().icon);
    icon.setDevicePixelRatio(scale);
    const QRectF place(sidePadding + (iconFrame - symbolSize) / 2, (height() - symbolSize) / 2,
                       symbolSize, symbolSize);
    painter.drawImage(Style::crisp(painter, place).topLeft(), icon);
}

void ChoiceActionRow::paintTexts(QPainter& painter, double right) const {
    const auto colors = this->colors();
    const double left = sidePadding + iconFrame + gap;
    const double top = std::round((height() - textsHeight()) / 2);
    const double titleHeight = lineHeight(titleFont());
    drawLine(painter, {left, top, right - left, titleHeight}, titleFont(), colors.title,
             m_contents.title);
    drawLine(painter, {left, top + titleHeight + lineGap, right - left, lineHeight(subtitleFont())},
             subtitleFont(), colors.subtitle, m_contents.subtitle);
}

double ChoiceActionRow::paintKeyHint(QPainter& painter) const {
    const QFontMetricsF metrics(keyHintFont());
    const double width =
        std::ceil(metrics.horizontalAdvance(m_contents.keyHint)) + 2 * keyHintSidePadding;
    const double capsuleHeight = lineHeight(keyHintFont()) + 2 * keyHintVerticalPadding;
    const QRectF capsule =
        Style::crisp(painter, {this->width() - sidePadding - width, (height() - capsuleHeight) / 2,
                               width, capsuleHeight});
    painter.setPen(Qt::NoPen);
    painter.setBrush(ChoicePanelColors::keyHintFill());
    painter.drawRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
    painter.setFont(keyHintFont());
    painter.setPen(colors().keyHint);
    painter.drawText(capsule, Qt::AlignCenter | Qt::TextSingleLine, m_contents.keyHint);
    return capsule.left();
}

} // namespace snapvane
