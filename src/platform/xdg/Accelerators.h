#pragma once

#include "platform/HotKeys.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

/// Shortcuts as desktops write them down, in the terms of stored shortcuts. Any thread.
namespace snapvane::xdg {

/// The Carbon code of the key that types a symbol (an X key symbol, as in X11/keysymdef.h) without
/// modifiers; nothing when no key does.
using KeyOfSymbol = std::function<std::optional<int>(std::uint32_t symbol)>;

/// "<Primary><Shift>Print" and the like, as GTK, GNOME and Xfce write them. Nothing for the empty
/// text, "disabled", text that is no accelerator, and combinations that no stored shortcut can
/// describe.
std::optional<SymbolicHotKey> parseAccelerator(const QString& accelerator,
                                               const KeyOfSymbol& keyOfSymbol);

/// A combination of Qt's key code and modifiers in one number, as KDE writes them.
std::optional<SymbolicHotKey> fromQtKey(int combination, const KeyOfSymbol& keyOfSymbol);

} // namespace snapvane::xdg
