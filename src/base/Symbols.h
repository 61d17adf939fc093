#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

#include <optional>

/// The program's own symbols: one drawing a name in data/symbols, used as templates, which means
/// that only their coverage counts and the colour comes from where they are shown. Main thread.
namespace snapvane::Symbols {

/// Where an icon is shown decides which palette colour its highlighted state takes.
enum class Use { Plain, MenuItem };

/// True when there is a symbol of that name.
bool exists(const QString& name);

/// The symbol drawn `pixels` wide and high in one colour; a null image when there is no such
/// symbol.
QImage render(const QString& name, int pixels, const QColor& color);

/// The symbol as an icon that follows the palette, also when that changes later; nothing when there
/// is no such symbol.
std::optional<QIcon> icon(const QString& name, Use use);

/// A filled disc in the secondary label colour, `points` wide: what stands in for a missing symbol.
QIcon placeholderIcon(int points);

} // namespace snapvane::Symbols
