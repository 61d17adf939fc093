#pragma once

#include "choice/ChoicePanelColors.h"
#include "choice/PostCaptureChoiceSymbol.h"

#include <QAbstractButton>

namespace snapvane {

/// What a row of the card shows.
struct ChoiceActionRowContents {
    PostCaptureChoiceSymbol symbol = PostCaptureChoiceSymbol::clipboard;
    QString title;
    QString subtitle;
    /// The key that does the same as a click.
    QString keyHint;
    /// The row's tooltip, and its description for who cannot see it.
    QString helpText;
    bool isDestructive = false;
};

/// One thing to do, as a large button: icon, two lines of text and the key that chooses it. Owned
/// by the card.
class ChoiceActionRow : public QAbstractButton {
    Q_OBJECT

public:
    explicit ChoiceActionRow(ChoiceActionRowContents contents, QWidget* parent = nullptr);

    const ChoiceActionRowContents& contents() const { return m_contents; }
    /// True while the pointer is over the row.
    bool isHovered() const { return m_isHovered; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setHovered(bool hovered);
    ChoicePanelColors::RowState state() const;
    ChoicePanelColors::RowColors colors() const;
    void paintBackground(QPainter& painter) const;
    void paintIcon(QPainter& painter) const;
    void paintTexts(QPainter& painter, double right) const;
    /// Gives the left edge of what it has painted.
    double paintKeyHint(QPainter& painter) const;

    ChoiceActionRowContents m_contents;
    bool m_isHovered = false;
};

} // namespace snapvane
