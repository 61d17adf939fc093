#pragma once

#include "KeyboardShortcuts/EventType.h"
#include "KeyboardShortcuts/HandlerTable.h"
#include "KeyboardShortcuts/Name.h"

#include <QObject>

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace snapvane {
class UserDefaults;
} // namespace snapvane

namespace KeyboardShortcuts {

class EventStream;
class HotKey;
class HotKeyCenter;

/// The user's shortcuts by name: keeps them in the preferences, has the system watch those that
/// somebody handles, and runs the handlers of every name that owns the shortcut at the moment it is
/// pressed or released. One for the program, made by its entry. Main thread.
class NamedShortcuts : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the object.
    NamedShortcuts(snapvane::UserDefaults& defaults, HotKeyCenter& center);
    ~NamedShortcuts() override;

    /// The program's own, for names that are made with a default. Asking before one is installed is
    /// a program error.
    static NamedShortcuts& shared();
    /// The object stays the caller's, who passes null before it goes.
    static void install(NamedShortcuts* shortcuts);

    HotKeyCenter& hotKeyCenter() { return m_center; }

    /// The preference that holds the name's shortcut: JSON text, or false when the user wants none.
    static QString userDefaultsKey(const Name& name);

    /// Nothing when none is stored, when the user wants none and when the stored value cannot be
    /// read; such a value stays as it is.
    std::optional<Shortcut> getShortcut(const Name& name) const;
    void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name);
    /// Stores the name's default unless something is stored already.
    void setInitialShortcutIfNeeded(const Name& name);
    /// Gives the names their defaults again; those without one have no shortcut then.
    void reset(const std::vector<Name>& names);
    /// Every name that this object has been told of.
    void resetAll();

    /// Actions are kept besides those that are there, and run in the order of their adding.
    void onKeyDown(const Name& name, Action action);
    void onKeyUp(const Name& name, Action action);
    void removeHandler(const Name& name);
    void removeAllHandlers();

    /// Events from now on. An own stream for each caller.
    EventStream events(const Name& name);
    EventStream events(const Shortcut& shortcut);
    /// Key-down events, again and again while the shortcut is held.
    EventStream repeatingKeyDownEvents(const Name& name);

    /// A disabled name's handlers do not run, and its shortcut is free for other programs.
    void disable(const std::vector<Name>& names);
    void enable(const std::vector<Name>& names);
    bool isEnabled(const Name& name) const;

    /// Switches everything on and off.
    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool enabled);
    /// Set while the user types a new shortcut.
    bool isPaused() const { return m_isPaused; }
    void setPaused(bool paused);

Q_SIGNALS:
    /// KeyboardShortcuts_shortcutByNameDidChange: after every store, clear and reset.
    void shortcutByNameDidChange(const KeyboardShortcuts::Name& name);

private:
    /// What feeds a stream, and what else happens when it ends.
    struct StreamActions {
        Action keyDown;
        Action keyUp;
        Action end;
    };

    /// A shortcut that has gone down. One that is given up meanwhile, however shortly, is never
    /// heard of as released.
    struct Hold {
        std::weak_ptr<HotKey> hotKey;
        int registrations = 0;
    };

    void addAction(HandlerTable& table, const Name& name, Action action);
    static StreamActions forwardingTo(EventStream& stream);
    template <typename Owner>
    void attach(EventStream& stream, const Owner& owner, StreamActions actions);
    void handleKeyEvent(EventType type, const Shortcut& shortcut);
    void registerIfNeeded(const Name& name);
    void registerIfNeeded(const Shortcut& shortcut);
    void reportRefusal(const Shortcut& shortcut);
    void unregister(const Shortcut& shortcut);
    void unregisterIfUnneeded(const std::optional<Shortcut>& shortcut);
    /// True while some enabled name with handlers, other than `excluded`, or some stream needs it.
    bool isShortcutActive(const Shortcut& shortcut, const Name* excluded = nullptr) const;
    bool hasHandlers(const Name& name) const;
    Hold holdOf(const Name& name) const;
    bool isHeld(const Name& name, const Hold& hold) const;
    std::optional<Shortcut> shortcutOf(const Name& name) const;
    static std::optional<Shortcut> shortcutOf(const Shortcut& shortcut);
    void updateCenter();

    snapvane::UserDefaults& m_defaults;
    HotKeyCenter& m_center;
    HandlerTable m_keyDownHandlers;
    HandlerTable m_keyUpHandlers;
    std::unordered_map<Shortcut, std::shared_ptr<HotKey>> m_hotKeys;
    std::unordered_set<Name> m_disabledNames;
    std::unordered_set<Name> m_knownNames;
    std::unordered_set<Shortcut> m_refused;
    bool m_isEnabled = true;
    bool m_isPaused = false;
};

} // namespace KeyboardShortcuts
