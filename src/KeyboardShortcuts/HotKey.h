#pragma once

#include "platform/HotKeys.h"

#include <QPointer>

#include <cstdint>
#include <functional>
#include <memory>

namespace KeyboardShortcuts {

class HotKeyCenter;

/// One shortcut that the system watches for us: it holds the system's registration, which ends with
/// the object. Shared by whoever needs the shortcut; HotKeyCenter only looks at it. It may be
/// dropped on any thread, everything else is for the main thread.
class HotKey {
public:
    using Callback = std::function<void()>;

    /// `id` is unique in the program; HotKeyCenter counts them.
    HotKey(HotKeyCenter& center, std::int64_t carbonKeyCode, std::int64_t carbonModifiers,
           std::int64_t id, Callback onKeyDown, Callback onKeyUp);
    ~HotKey();
    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;

    std::int64_t carbonKeyCode() const { return m_carbonKeyCode; }
    std::int64_t carbonModifiers() const { return m_carbonModifiers; }
    std::int64_t id() const { return m_id; }
    /// True while the system holds the registration.
    bool isRegistered() const { return m_eventHotKeyRef != nullptr; }
    /// How often it has been registered; a key that is held through a change of it is not heard of
    /// when it is released.
    int registrations() const { return m_registrations; }

    /// Called when a registration that once succeeded could not be had again.
    Callback onRegistrationFailed;

private:
    friend class HotKeyCenter;

    QPointer<HotKeyCenter> m_center;
    std::int64_t m_carbonKeyCode;
    std::int64_t m_carbonModifiers;
    std::int64_t m_id;
    Callback m_onKeyDown;
    Callback m_onKeyUp;
    std::unique_ptr<snapvane::HotKeyRegistration> m_eventHotKeyRef;
    int m_registrations = 0;
};

} // namespace KeyboardShortcuts
