#include "choice/PostCaptureChoiceCardHostView.h"

#include <QMouseEvent>

namespace snapvane {

PostCaptureChoiceCardHostView::PostCaptureChoiceCardHostView(QWidget* parent) : QWidget(parent) {}

void PostCaptureChoiceCardHostView::setCard(QWidget& card) {
    card.setParent(this);
    card.move(0, 0);
    resize(card.size());
}

void PostCaptureChoiceCardHostView::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void PostCaptureChoiceCardHostView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

} // namespace snapvane
