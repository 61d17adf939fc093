#include "choice/ChoiceCardShadow.h"

#include "base/Style.h"

#include <QPainter>

namespace snapvane {

namespace {

constexpr double opacity = 0.28;
// Points. A blur with a radius of 10 is seen about twice as far.
constexpr double reach = 20;
constexpr double drop = 6;

SoftShadow shadow() {
    return {Style::withOpacity(Qt::black, opacity), reach, drop};
}

} // namespace

ChoiceCardShadow::ChoiceCardShadow(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ChoiceCardShadow::surround(const QRect& card) {
    m_cardSize = card.size();
    setGeometry(card.marginsAdded(shadow().margins()));
}

void ChoiceCardShadow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double scale = painter.deviceTransform().m11();
    painter.drawImage(QPointF(0, 0), m_picture.of(shadow(), m_cardSize, Style::cardRadius, scale));
}

} // namespace snapvane
