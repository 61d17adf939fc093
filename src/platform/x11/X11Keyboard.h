#pragma once

#include "platform/x11/ModifierMasks.h"
#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>

#include <xkbcommon/xkbcommon.h>

namespace snapvane::x11 {

/// The user's keyboard as the server describes it: which symbols its keys give and which bits its
/// modifiers have. Read when it is asked for and again after it has changed. Owned by the platform;
/// main thread, Qt's connection.
class X11Keyboard : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11Keyboard();
    ~X11Keyboard() override;

    const ModifierMasks& modifiers() const { return m_modifiers; }

    /// How many layouts the user switches between.
    std::uint32_t layoutCount();
    /// The one in force.
    std::uint32_t currentLayout() const;
    /// The one symbol that the key with that code (the server's) gives at that level, 0 being the
    /// one without modifiers; XKB_KEY_NoSymbol when it gives none or several.
    xkb_keysym_t symbol(std::uint32_t keyCode, std::uint32_t layout, std::uint32_t level = 0);
    /// The server's codes of all keys.
    struct CodeRange {
        std::uint32_t first;
        std::uint32_t last;
    };
    CodeRange keyCodes() const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

Q_SIGNALS:
    /// There is another keyboard, or the keys mean something else. `modifiers` is new already.
    void mappingChanged();
    /// The user has switched to another layout.
    void layoutChanged();

private:
    struct KeymapDeleter {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    };

    xkb_keymap* keymap();
    void reload();
    ModifierMasks readModifiers() const;

    Server m_server;
    std::uint8_t m_firstXkbEvent = 0;
    std::unique_ptr<xkb_keymap, KeymapDeleter> m_keymap;
    bool m_keymapWasRead = false;
    ModifierMasks m_modifiers;
    // Changes come in bursts.
    QTimer m_settle;
};

} // namespace snapvane::x11
