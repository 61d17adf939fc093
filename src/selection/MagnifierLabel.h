#pragma once

#include "platform/Sprites.h"

#include <QFont>
#include <QFontMetricsF>

class QPainter;

namespace snapvane {

/// The line of text under the loupe. Keeps the font, which is costly to look up. Main thread.
class MagnifierLabel {
public:
    /// In the desktop's fixed-width font of the moment.
    MagnifierLabel();

    /// "812, 430", or "812, 430 · 640 × 480 pt" where there is a selection: points, rounded half
    /// away from zero.
    static QString text(GlobalPoint place, GlobalSize selection);

    /// Draws the label at the foot of a view of `view` pixels and tells what it covers. A text that
    /// is too wide for the view is made smaller rather than cut off.
    RoundedArea draw(QPainter& painter, const QString& text, PixelSize view, double scale,
                     float backgroundOpacity) const;

private:
    QFont m_font;
    QFontMetricsF m_metrics;
};

} // namespace snapvane
