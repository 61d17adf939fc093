#include "KeyboardShortcuts/HotKeyCenter.h"

#include "KeyboardShortcuts/HotKey.h"
#include "KeyboardShortcuts/MainThread.h"
#include "base/ProgramError.h"

#include <QPointer>

#include <limits>

namespace KeyboardShortcuts {

namespace {

using snapvane::HotKeyEvent;
using snapvane::hotKeyEventHandled;
using snapvane::HotKeyEventKind;
using snapvane::hotKeyEventNotHandled;

bool fitsThirtyTwoBits(std::int64_t number) {
    return number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
}

std::uint32_t thirtyTwoBits(std::int64_t number) {
    if (!fitsThirtyTwoBits(number)) {
        snapvane::programError("a hot key's key code, modifiers or id does not fit 32 bits");
    }
    return static_cast<std::uint32_t>(number);
}

/// The modifiers that an event of the hot key's key would report.
std::int64_t modifiersInEvents(const HotKey& hotKey) {
    ModifierFlags modifiers = ModifierFlags::fromCarbon(hotKey.carbonModifiers());
    if (Key(hotKey.carbonKeyCode()).hasSynthesizedFunctionModifier()) {
        modifiers = modifiers.without(ModifierFlags::function);
    }
    return modifiers.carbon();
}

} // namespace

HotKeyCenter::HotKeyCenter(snapvane::HotKeys& system) : m_system(system) {
    requireMainThread();
    connect(&m_menuTracking, &MenuTrackingObserver::didBeginTracking, this,
            [this] { setMenuOpen(true); });
    connect(&m_menuTracking, &MenuTrackingObserver::didEndTracking, this,
            [this] { setMenuOpen(false); });
}

HotKeyCenter::~HotKeyCenter() {
    pauseAll();
}

std::int64_t HotKeyCenter::nextHotKeyId() {
    requireMainThread();
    return ++m_lastHotKeyId;
}

bool HotKeyCenter::canRegister(const Shortcut& shortcut) {
    return fitsThirtyTwoBits(shortcut.carbonKeyCode()) &&
           fitsThirtyTwoBits(shortcut.carbonModifiers());
}

bool HotKeyCenter::register_(const std::shared_ptr<HotKey>& hotKey) {
    requireMainThread();
    if (!registerWithSystem(*hotKey)) {
        return false;
    }
    m_hotKeys[hotKey->id()] = hotKey;
    if (installEventHandlerIfNeeded()) {
        applyMode();
    }
    return true;
}

void HotKeyCenter::setEnabled(bool enabled) {
    requireMainThread();
    m_isEnabled = enabled;
    updateMode();
}

void HotKeyCenter::setMenuOpen(bool open) {
    requireMainThread();
    m_isMenuOpen = open;
    updateMode();
}

std::vector<SystemHotKey> HotKeyCenter::systemShortcuts() const {
    requireMainThread();
    std::vector<SystemHotKey> shortcuts;
    for (const snapvane::SymbolicHotKey& entry : m_system.symbolicHotKeys()) {
        if (entry.isEnabled && entry.keyCode && entry.modifiers) {
            shortcuts.push_back({*entry.keyCode, *entry.modifiers});
        }
    }
    return shortcuts;
}

bool HotKeyCenter::isTakenBySystem(const Shortcut& shortcut) const {
    requireMainThread();
    if (shortcut.isF12WithoutModifiers()) {
        return false;
    }
    const bool isHeld = canRegister(shortcut) &&
                        m_system.isHeldElsewhere(thirtyTwoBits(shortcut.carbonKeyCode()),
                                                 thirtyTwoBits(shortcut.carbonModifiers()));
    return isHeld || shortcut.isTakenBySystem(Shortcut::system(systemShortcuts()));
}

std::int32_t HotKeyCenter::handleEvent(HotKeyCenter* center, const HotKeyEvent& event) {
    if (center == nullptr || !isMainThread() ||
        event.type.eventClass != snapvane::keyboardEventClass) {
        return hotKeyEventNotHandled;
    }
    switch (event.type.kind) {
    case HotKeyEventKind::HotKeyPressed:
    case HotKeyEventKind::HotKeyReleased:
        return center->handleHotKeyEvent(event);
    case HotKeyEventKind::RawKeyDown:
    case HotKeyEventKind::RawKeyUp:
        return center->handleRawKeyEvent(event);
    }
    return hotKeyEventNotHandled;
}

void HotKeyCenter::forget(std::int64_t id) {
    m_hotKeys.erase(id);
}

bool HotKeyCenter::registerWithSystem(HotKey& hotKey) {
    const snapvane::HotKeyIdentifier identifier{signature, thirtyTwoBits(hotKey.id())};
    const QPointer<HotKeyCenter> self(this);
    hotKey.m_eventHotKeyRef = m_system.registerHotKey(thirtyTwoBits(hotKey.carbonKeyCode()),
                                                      thirtyTwoBits(hotKey.carbonModifiers()),
                                                      identifier, [self, id = hotKey.id()] {
                                                          if (self) {
                                                              self->registrationLost(id);
                                                          }
                                                      });
    hotKey.m_registrations += hotKey.isRegistered() ? 1 : 0;
    return hotKey.isRegistered();
}

void HotKeyCenter::registrationLost(std::int64_t id) {
    if (const auto hotKey = hotKeyWithId(id)) {
        hotKey->m_eventHotKeyRef.reset();
        if (hotKey->onRegistrationFailed) {
            hotKey->onRegistrationFailed();
        }
    }
}

bool HotKeyCenter::installEventHandlerIfNeeded() {
    if (!m_hasEventHandler) {
        const QPointer<HotKeyCenter> self(this);
        m_hasEventHandler = m_system.installEventHandler(
            [self](const HotKeyEvent& event) { return handleEvent(self, event); });
    }
    return m_hasEventHandler;
}

void HotKeyCenter::updateMode() {
    const Mode before = m_mode;
    m_mode = !m_isEnabled ? Mode::disabled : m_isMenuOpen ? Mode::menuOpen : Mode::normal;
    if (m_mode != before && m_hasEventHandler) {
        applyMode();
    }
}

void HotKeyCenter::applyMode() {
    if (m_mode == Mode::normal) {
        resumeAll();
    } else {
        pauseAll();
    }
    setHotKeyEventHandlingEnabled(m_mode == Mode::normal);
    setRawKeyEventHandlingEnabled(m_mode == Mode::menuOpen);
}

void HotKeyCenter::pauseAll() {
    for (const auto& hotKey : liveHotKeys()) {
        hotKey->m_eventHotKeyRef.reset();
    }
}

void HotKeyCenter::resumeAll() {
    for (const auto& hotKey : liveHotKeys()) {
        if (!hotKey->isRegistered() && !registerWithSystem(*hotKey) &&
            hotKey->onRegistrationFailed) {
            hotKey->onRegistrationFailed();
        }
    }
}

void HotKeyCenter::setHotKeyEventHandlingEnabled(bool enabled) {
    if (enabled == m_isHotKeyEventHandlingEnabled) {
        return;
    }
    m_isHotKeyEventHandlingEnabled = enabled;
    if (enabled) {
        m_system.addEventTypes(hotKeyEventTypes);
    } else {
        m_system.removeEventTypes(hotKeyEventTypes);
    }
}

void HotKeyCenter::setRawKeyEventHandlingEnabled(bool enabled) {
    if (enabled == m_isRawKeyEventHandlingEnabled) {
        return;
    }
    m_isRawKeyEventHandlingEnabled = enabled;
    if (enabled) {
        m_system.addEventTypes(rawKeyEventTypes);
    } else {
        m_system.removeEventTypes(rawKeyEventTypes);
    }
}

std::int32_t HotKeyCenter::handleHotKeyEvent(const HotKeyEvent& event) {
    if (event.identifierStatus != 0) {
        return event.identifierStatus;
    }
    auto hotKey =
        event.identifier.signature == signature ? hotKeyWithId(event.identifier.id) : nullptr;
    if (!hotKey) {
        return hotKeyEventNotHandled;
    }
    const HotKey::Callback callback =
        event.type.kind == HotKeyEventKind::HotKeyPressed ? hotKey->m_onKeyDown : hotKey->m_onKeyUp;
    // What it calls may drop the hot key and register another for the same keys, which the system
    // refuses while this one is still there.
    hotKey.reset();
    callback();
    return hotKeyEventHandled;
}

std::int32_t HotKeyCenter::handleRawKeyEvent(const HotKeyEvent& event) {
    if (m_mode != Mode::menuOpen) {
        return hotKeyEventNotHandled;
    }
    auto hotKey = hotKeyOf(event);
    if (!hotKey) {
        return hotKeyEventNotHandled;
    }
    const bool isUp = event.type.kind == HotKeyEventKind::RawKeyUp;
    const HotKey::Callback callback = isUp ? hotKey->m_onKeyUp : hotKey->m_onKeyDown;
    hotKey.reset();                // As above.
    if (isUp || !event.isRepeat) { // A key that is held has gone down once.
        callback();
    }
    return hotKeyEventHandled;
}

std::shared_ptr<HotKey> HotKeyCenter::hotKeyOf(const HotKeyEvent& rawEvent) const {
    for (const auto& hotKey : liveHotKeys()) {
        if (hotKey->carbonKeyCode() == rawEvent.keyCode &&
            modifiersInEvents(*hotKey) == normalizedCarbonModifiers(rawEvent.modifiers)) {
            return hotKey;
        }
    }
    return nullptr;
}

std::shared_ptr<HotKey> HotKeyCenter::hotKeyWithId(std::int64_t id) const {
    const auto found = m_hotKeys.find(id);
    return found == m_hotKeys.end() ? nullptr : found->second.lock();
}

std::vector<std::shared_ptr<HotKey>> HotKeyCenter::liveHotKeys() const {
    std::vector<std::shared_ptr<HotKey>> live;
    for (const auto& entry : m_hotKeys) {
        if (auto hotKey = entry.second.lock()) {
            live.push_back(std::move(hotKey));
        }
    }
    return live;
}

} // namespace KeyboardShortcuts
