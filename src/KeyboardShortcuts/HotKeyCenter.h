#pragma once

#include "KeyboardShortcuts/MenuTrackingObserver.h"
#include "KeyboardShortcuts/Shortcut.h"
#include "platform/HotKeys.h"

#include <QObject>

#include <map>
#include <memory>
#include <vector>

namespace KeyboardShortcuts {

class HotKey;

/// Owns the connection to the system's hot key service: registers hot keys with it, hands its
/// events to their callbacks, and can pause all of them. While a menu is open the system's hot keys
/// are paused and the program's own key events are watched instead. One for the program, owned by
/// its entry; NamedShortcuts registers with it. Main thread.
class HotKeyCenter : public QObject {
    Q_OBJECT

public:
    enum class Mode { disabled = 0, normal = 1, menuOpen = 2 };

    /// Marks the program's hot keys among those of others: the characters "SKSS" as they stand in
    /// memory.
    static constexpr std::uint32_t signature = 0x53534b53;
    static constexpr snapvane::HotKeyEventType hotKeyEventTypes[] = {
        {.kind = snapvane::HotKeyEventKind::HotKeyPressed},
        {.kind = snapvane::HotKeyEventKind::HotKeyReleased}};
    static constexpr snapvane::HotKeyEventType rawKeyEventTypes[] = {
        {.kind = snapvane::HotKeyEventKind::RawKeyDown},
        {.kind = snapvane::HotKeyEventKind::RawKeyUp}};

    explicit HotKeyCenter(snapvane::HotKeys& system);
    ~HotKeyCenter() override;

    /// An id that no hot key has had before; the first is 1.
    std::int64_t nextHotKeyId();

    /// True when key code and modifiers fit 32 bits each, as those of every keyboard do. A stored
    /// shortcut may hold any numbers.
    static bool canRegister(const Shortcut& shortcut);
    /// False when the system refuses; nothing has changed then. Key code, modifiers and id that do
    /// not fit 32 bits are a program error.
    bool register_(const std::shared_ptr<HotKey>& hotKey);

    Mode mode() const { return m_mode; }
    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool enabled);
    bool isMenuOpen() const { return m_isMenuOpen; }
    /// Called by the observer of menus.
    void setMenuOpen(bool open);

    /// The shortcuts that the system has enabled as its own; read anew on each call.
    std::vector<SystemHotKey> systemShortcuts() const;
    /// True when the system has the shortcut for itself or another program holds it. F12 alone
    /// never counts as taken.
    bool isTakenBySystem(const Shortcut& shortcut) const;

    /// What the system calls for each event: status of its handling. Declines without a center and
    /// on other threads than the main one.
    static std::int32_t handleEvent(HotKeyCenter* center, const snapvane::HotKeyEvent& event);

private:
    friend class HotKey;

    void forget(std::int64_t id);
    bool registerWithSystem(HotKey& hotKey);
    void registrationLost(std::int64_t id);
    bool installEventHandlerIfNeeded();
    void updateMode();
    void applyMode();
    void pauseAll();
    void resumeAll();
    void setHotKeyEventHandlingEnabled(bool enabled);
    void setRawKeyEventHandlingEnabled(bool enabled);
    std::int32_t handleHotKeyEvent(const snapvane::HotKeyEvent& event);
    std::int32_t handleRawKeyEvent(const snapvane::HotKeyEvent& event);
    std::shared_ptr<HotKey> hotKeyWithId(std::int64_t id) const;
    std::shared_ptr<HotKey> hotKeyOf(const snapvane::HotKeyEvent& rawEvent) const;
    std::vector<std::shared_ptr<HotKey>> liveHotKeys() const;

    snapvane::HotKeys& m_system;
    std::int64_t m_lastHotKeyId = 0;
    std::map<std::int64_t, std::weak_ptr<HotKey>> m_hotKeys;
    bool m_hasEventHandler = false;
    MenuTrackingObserver m_menuTracking;
    bool m_isEnabled = true;
    bool m_isMenuOpen = false;
    bool m_isHotKeyEventHandlingEnabled = false;
    bool m_isRawKeyEventHandlingEnabled = false;
    Mode m_mode = Mode::normal;
};

} // namespace KeyboardShortcuts
