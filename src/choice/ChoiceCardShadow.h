#pragma once

#include "base/SoftShadow.h"

#include <QWidget>

namespace snapvane {

/// The shadow that the card throws on the dimmed screen. Lets clicks through. Owned by the key root
/// view.
class ChoiceCardShadow : public QWidget {
    Q_OBJECT

public:
    explicit ChoiceCardShadow(QWidget* parent = nullptr);

    /// Lies around and below a card there (the parent's coordinates).
    void surround(const QRect& card);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize m_cardSize;
    CachedShadow m_picture;
};

} // namespace snapvane
