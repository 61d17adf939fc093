#pragma once

#include "capture/CaptureResult.h"

#include <QWidget>

namespace snapvane {

/// The capture in small, its proportions kept, with round corners and an outline. Owned by the
/// card, which paints its shadow.
class ChoiceThumbnail : public QWidget {
    Q_OBJECT

public:
    explicit ChoiceThumbnail(PlatformImage image, QWidget* parent = nullptr);

    /// As large as fits into the space for it, which never grows beyond 360 × 140 points; at least
    /// one point each way.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Points; for screens that the card is too high for.
    void setMaximumImageHeight(int height);

    /// False while a picture that was scaled in a hurry stands in for the good one.
    bool isFinal() const { return m_isFinal; }
    /// The good one; of no use any more if the size has changed since.
    void takeScaled(const QImage& picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QImage& scaledTo(const QSize& pixels);

    PlatformImage m_image;
    int m_highest;
    QImage m_scaled;
    bool m_isFinal = true;
};

} // namespace snapvane
