#pragma once

#include <QImage>
#include <QWidget>

namespace snapvane {

/// Darkens the screen around the card a little, and keeps clicks from what lies beneath. Owned by
/// the key root view.
class PostCaptureChoiceDimView : public QWidget {
    Q_OBJECT

public:
    /// Of black.
    static constexpr double opacity = 0.18;

    explicit PostCaptureChoiceDimView(QWidget* parent = nullptr);

    /// The screen below the dim, where it does not shine through by itself; in its pixels.
    void setBackdrop(const QImage& backdrop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QImage m_backdrop;
};

} // namespace snapvane
