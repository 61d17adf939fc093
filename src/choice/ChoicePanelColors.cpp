#include "choice/ChoicePanelColors.h"

#include "base/Contrast.h"
#include "base/Style.h"

namespace snapvane::ChoicePanelColors {

namespace {

using Style::withOpacity;

constexpr double idleFill = 0.06;
constexpr double idleBorder = 0.08;
constexpr double hoveredFill = 0.15;
constexpr double hoveredDestructiveFill = 0.12;
constexpr double hoveredBorder = 0.45;
// A press answers with a stronger border, and more of the accent. More red, and the title could not
// be read on it.
constexpr double pressedFill = 0.22;
constexpr double pressedBorder = 0.85;
constexpr double thumbnailOutlineOpacity = 0.12;
constexpr double keyHintOpacity = 0.08;

double fillOpacity(RowState state, bool isDestructive) {
    if (state == RowState::Pressed) {
        return isDestructive ? hoveredDestructiveFill : pressedFill;
    }
    return isDestructive ? hoveredDestructiveFill : hoveredFill;
}

} // namespace

QColor surface() {
    return Style::surface();
}

RowColors row(RowState state, bool isDestructive) {
    const QColor tint = isDestructive ? Style::destructive() : Style::accent();
    const bool isIdle = state == RowState::Idle;
    RowColors colors;
    colors.fill = isIdle ? withOpacity(Style::primary(), idleFill)
                         : withOpacity(tint, fillOpacity(state, isDestructive));
    colors.border =
        isIdle ? withOpacity(Style::primary(), idleBorder)
               : withOpacity(tint, state == RowState::Pressed ? pressedBorder : hoveredBorder);
    colors.title = isDestructive ? Style::destructive() : Style::primary();
    const QColor background = blended(colors.fill, surface());
    colors.icon = isDestructive ? tint : Style::accentOn(background);
    colors.subtitle = Style::secondaryOn(background);
    colors.keyHint = Style::secondaryOn(blended(keyHintFill(), background));
    return colors;
}

QColor thumbnailOutline() {
    return withOpacity(Style::primary(), thumbnailOutlineOpacity);
}

QColor keyHintFill() {
    return withOpacity(Style::primary(), keyHintOpacity);
}

} // namespace snapvane::ChoicePanelColors
