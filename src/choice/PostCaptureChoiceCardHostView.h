#pragma once

#include <QWidget>

namespace snapvane {

/// Holds the card, is exactly as large, and keeps clicks on the card's empty places to itself.
/// Owned by the key root view.
class PostCaptureChoiceCardHostView : public QWidget {
    Q_OBJECT

public:
    explicit PostCaptureChoiceCardHostView(QWidget* parent = nullptr);

    /// Takes the card in, and its size.
    void setCard(QWidget& card);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

} // namespace snapvane
