#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <optional>

namespace snapvane {

/// What the keys type. Main thread.
class KeyboardLayout : public QObject {
    Q_OBJECT

public:
    /// The text that the key with this Carbon key code gives without modifiers, in the current
    /// layout or, where that one has no Latin letters, in one that has them. Nothing when the key
    /// types nothing.
    virtual std::optional<QString> translate(std::uint16_t keyCode) const = 0;

Q_SIGNALS:
    /// The keys may type something else from now on.
    void changed();
};

} // namespace snapvane
