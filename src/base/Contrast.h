#pragma once

#include <QColor>

namespace snapvane {

/// The least contrast at which small text can be read well, by the Web Content Accessibility
/// Guidelines (level AA).
inline constexpr double readableContrast = 4.5;
/// The same for icons and the like.
inline constexpr double recognisableContrast = 3;

/// What a colour, which may be see-through, looks like on an opaque background. Any thread.
QColor blended(const QColor& color, const QColor& background);

/// The contrast by the same guidelines, 1 to 21, of a colour, which may be see-through, on an
/// opaque background. Any thread.
double contrast(const QColor& color, const QColor& background);

} // namespace snapvane
