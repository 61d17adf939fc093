#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QHashFunctions>
#include <QString>

#include <optional>

namespace KeyboardShortcuts {

/// What a program calls one of its shortcuts, and the shortcut that a fresh installation gives it.
/// Names are equal when their texts are.
class Name {
public:
    /// Without a default; stores nothing.
    explicit Name(QString rawValue) : m_rawValue(std::move(rawValue)) {}
    /// Stores the default, the first time that this name is made on a user's system. Needs the
    /// program's NamedShortcuts; main thread.
    Name(QString rawValue, std::optional<Shortcut> initialShortcut);

    const QString& rawValue() const { return m_rawValue; }
    const std::optional<Shortcut>& initialShortcut() const { return m_initialShortcut; }

    friend bool operator==(const Name& left, const Name& right) {
        return left.m_rawValue == right.m_rawValue;
    }

private:
    QString m_rawValue;
    std::optional<Shortcut> m_initialShortcut;
};

} // namespace KeyboardShortcuts

template <> struct std::hash<KeyboardShortcuts::Name> {
    std::size_t operator()(const KeyboardShortcuts::Name& name) const noexcept {
        return std::hash<QString>()(name.rawValue());
    }
};
