#include "choice/PostCaptureChoiceDimView.h"

#include "base/Style.h"

#include <QMouseEvent>
#include <QPainter>

namespace snapvane {

PostCaptureChoiceDimView::PostCaptureChoiceDimView(QWidget* parent) : QWidget(parent) {}

void PostCaptureChoiceDimView::setBackdrop(const QImage& backdrop) {
    m_backdrop = backdrop;
    update();
}

void PostCaptureChoiceDimView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if (!m_backdrop.isNull()) {
        painter.drawImage(QPointF(0, 0), m_backdrop);
    }
    painter.fillRect(event->rect(), Style::withOpacity(Qt::black, opacity));
}

void PostCaptureChoiceDimView::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void PostCaptureChoiceDimView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

} // namespace snapvane
