#pragma once

#include "platform/HotKeys.h"

#include <map>
#include <set>
#include <utility>

namespace snapvane::null {

/// Hot keys of a keyboard that nobody has: what is registered can be read, keys can be pressed by
/// calling. Must outlive its registrations. Main thread.
class NullHotKeys : public HotKeys {
public:
    /// Carbon key code and modifier mask.
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    std::unique_ptr<HotKeyRegistration> registerHotKey(std::uint32_t keyCode,
                                                       std::uint32_t modifiers,
                                                       HotKeyIdentifier identifier,
                                                       std::function<void()> lost) override;
    bool installEventHandler(EventHandler newHandler) override;
    void addEventTypes(std::span<const HotKeyEventType> types) override;
    void removeEventTypes(std::span<const HotKeyEventType> types) override;
    bool isHeldElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override;
    std::vector<SymbolicHotKey> symbolicHotKeys() override { return symbolic; }

    /// A key of the combination goes down or up: a hot key event where it is registered, a raw key
    /// event otherwise, and nothing where events of that type are not asked for. The handler's
    /// status, or nothing when it was not called.
    std::optional<std::int32_t> press(Combination combination, bool isRepeat = false);
    std::optional<std::int32_t> release(Combination combination);
    /// Takes a combination away, as the system may.
    void take(Combination combination);

    std::map<Combination, HotKeyIdentifier> registered;
    /// Combinations of other programs.
    std::set<Combination> heldElsewhere;
    std::vector<SymbolicHotKey> symbolic;
    bool canInstallHandler = true;
    /// The kinds of events that are asked for.
    std::multiset<HotKeyEventKind> eventKinds;
    EventHandler handler;
    int registrations = 0;

private:
    friend class NullHotKeyRegistration;

    std::optional<std::int32_t> send(Combination combination, HotKeyEventKind hotKeyKind,
                                     HotKeyEventKind rawKind, bool isRepeat);

    std::map<Combination, std::function<void()>> m_lost;
};

} // namespace snapvane::null
