#pragma once

#include <QIcon>
#include <QString>
#include <QVersionNumber>

#include <array>
#include <optional>

/// The images of the status menu's entries.
namespace snapvane::QXMenuSymbol {

enum class Symbol { captureArea, crosshairLines, settings, about, quit };

inline constexpr std::array allSymbols = {Symbol::captureArea, Symbol::crosshairLines,
                                          Symbol::settings, Symbol::about, Symbol::quit};

/// The name of the drawing.
QString symbolName(Symbol symbol);
/// What the image tells somebody who cannot see it.
QString accessibilityDescription(Symbol symbol);

/// The symbol as a template image for a menu, or nothing when there is no drawing of that name.
/// Menus show it 16 points high, the height of a symbol that goes with 14-point text.
std::optional<QIcon> makeImage(Symbol symbol);
std::optional<QIcon> makeImage(const QString& symbolName);

/// The same, with a disc in the secondary label colour where there is no drawing: menu entries are
/// never without an image.
QIcon imageOrPlaceholder(const QString& symbolName);

/// True when the operating system hides menu images unless it is asked to show them: the one that
/// calls itself 27.0 or later. Other systems have no such version.
bool needsPreferredImageVisibility(const std::optional<QVersionNumber>& systemVersion);

} // namespace snapvane::QXMenuSymbol
