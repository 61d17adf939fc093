#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <optional>

class QKeyEvent;

namespace snapvane {

/// A key that was pressed in a window of ours, whatever else is held.
struct PressedKey {
    /// Its Carbon code; nothing when it has none.
    std::optional<int> keyCode;
    /// The text that it gives in the layout in force, with Shift if that is held, without any other
    /// modifier or lock: a key of the keypad gives what it types with Num Lock. Empty when it types
    /// nothing.
    QString charactersIgnoringModifiers;
    /// Escape in the layout in force, wherever the user has it, or another key that cancels.
    bool isCancelCommand = false;
};

/// What the keys type. Main thread.
class KeyboardLayout : public QObject {
    Q_OBJECT

public:
    /// The text that the key with this Carbon key code gives without modifiers, in the current
    /// layout or, where that one has no Latin letters, in one that has them. Nothing when the key
    /// types nothing.
    virtual std::optional<QString> translate(std::uint16_t keyCode) const = 0;

    /// What a key event of Qt's means.
    virtual PressedKey pressed(const QKeyEvent& event) const = 0;

Q_SIGNALS:
    /// The keys may type something else from now on.
    void changed();
};

} // namespace snapvane
