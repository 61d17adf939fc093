#pragma once

#include <QColor>

/// The colours of the card. They follow the desktop's palette. Main thread.
namespace snapvane::ChoicePanelColors {

/// What the card is filled with.
QColor surface();

struct RowColors {
    QColor fill;
    QColor border;
    QColor icon;
    QColor title;
    QColor subtitle;
    QColor keyHint;
};

/// Whether the pointer is over a row, or the button down on it.
enum class RowState { Idle, Hovered, Pressed };

RowColors row(RowState state, bool isDestructive);

/// The line around the thumbnail.
QColor thumbnailOutline();
/// What a key hint stands on.
QColor keyHintFill();

} // namespace snapvane::ChoicePanelColors
