#pragma once

#include "platform/HotKeys.h"
#include "platform/x11/HotKeyGrab.h"
#include "platform/x11/X11Keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <map>
#include <optional>
#include <set>

namespace snapvane::x11 {

/// Hot keys as key grabs on the root window. Its event filter stands on Qt's own connection, so it
/// sees every key event that the program gets: those of the grabs, those of its windows while one
/// of its menus is open, and those of a selection, which holds the keyboard. Owned by the platform;
/// must outlive its registrations. Main thread.
class X11HotKeys : public QObject, public HotKeys, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit X11HotKeys(X11Keyboard& keyboard);
    ~X11HotKeys() override;

    std::unique_ptr<HotKeyRegistration> registerHotKey(std::uint32_t keyCode,
                                                       std::uint32_t modifiers,
                                                       HotKeyIdentifier identifier,
                                                       std::function<void()> lost) override;
    bool installEventHandler(EventHandler handler) override;
    void addEventTypes(std::span<const HotKeyEventType> types) override;
    void removeEventTypes(std::span<const HotKeyEventType> types) override;
    bool isHeldElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override;
    std::vector<SymbolicHotKey> symbolicHotKeys() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    class Registration;

    struct HotKey {
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        HotKeyIdentifier identifier;
        std::function<void()> lost;
        KeyCombination combination;
        /// Null while this keyboard cannot type the combination.
        std::unique_ptr<HotKeyGrab> grab;
        /// The key of it that is down, in the server's code, and whether it went down as this hot
        /// key.
        std::optional<std::uint8_t> heldKey = {};
        bool isPressed = false;
    };

    /// A key event, whichever way it came.
    struct Stroke {
        std::uint8_t keyCode = 0;
        std::uint32_t state = 0;
        bool isPress = false;
        /// From a grab that takes the keyboard whole, not from one of our windows.
        bool isGrabbed = false;
        /// From the keyboard itself, besides whatever the windows get.
        bool isFromDevice = false;
    };

    std::optional<Stroke> strokeOf(const xcb_generic_event_t& event) const;
    bool handleHotKey(const Stroke& stroke);
    bool handleRawKey(const Stroke& stroke);
    void watchReleases();
    bool send(const HotKeyEvent& event);
    bool watches(HotKeyEventKind kind) const { return m_eventKinds.contains(kind); }
    std::optional<KeyCombination> combinationOf(std::uint32_t keyCode,
                                                std::uint32_t modifiers) const;
    std::unique_ptr<HotKeyGrab> grab(const KeyCombination& combination) const;
    void grabAnew();

    Server m_server;
    X11Keyboard& m_keyboard;
    ModifierMasks m_grabbedFor;
    std::uint8_t m_inputOpcode = 0;
    EventHandler m_handler;
    std::set<HotKeyEventKind> m_eventKinds;
    int m_lastNumber = 0;
    std::map<int, HotKey> m_hotKeys;
    std::set<std::uint8_t> m_rawKeysDown;
    bool m_watchesReleases = false;
};

} // namespace snapvane::x11
