#include "platform/null/NullHotKeys.h"

namespace snapvane::null {

class NullHotKeyRegistration : public HotKeyRegistration {
public:
    NullHotKeyRegistration(NullHotKeys& system, NullHotKeys::Combination combination)
        : m_system(system), m_combination(combination) {}
    ~NullHotKeyRegistration() override {
        m_system.registered.erase(m_combination);
        m_system.m_lost.erase(m_combination);
    }

private:
    NullHotKeys& m_system;
    NullHotKeys::Combination m_combination;
};

std::unique_ptr<HotKeyRegistration> NullHotKeys::registerHotKey(std::uint32_t keyCode,
                                                                std::uint32_t modifiers,
                                                                HotKeyIdentifier identifier,
                                                                std::function<void()> lost) {
    const Combination combination(keyCode, modifiers);
    if (heldElsewhere.contains(combination) || registered.contains(combination)) {
        return nullptr;
    }
    ++registrations;
    registered.emplace(combination, identifier);
    m_lost.emplace(combination, std::move(lost));
    return std::make_unique<NullHotKeyRegistration>(*this, combination);
}

bool NullHotKeys::installEventHandler(EventHandler newHandler) {
    if (canInstallHandler) {
        handler = std::move(newHandler);
    }
    return canInstallHandler;
}

void NullHotKeys::addEventTypes(std::span<const HotKeyEventType> types) {
    for (const HotKeyEventType& type : types) {
        eventKinds.insert(type.kind);
    }
}

void NullHotKeys::removeEventTypes(std::span<const HotKeyEventType> types) {
    for (const HotKeyEventType& type : types) {
        eventKinds.erase(type.kind);
    }
}

bool NullHotKeys::isHeldElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) {
    return heldElsewhere.contains({keyCode, modifiers});
}

std::optional<std::int32_t> NullHotKeys::press(Combination combination, bool isRepeat) {
    return send(combination, HotKeyEventKind::HotKeyPressed, HotKeyEventKind::RawKeyDown, isRepeat);
}

std::optional<std::int32_t> NullHotKeys::release(Combination combination) {
    return send(combination, HotKeyEventKind::HotKeyReleased, HotKeyEventKind::RawKeyUp, false);
}

void NullHotKeys::take(Combination combination) {
    heldElsewhere.insert(combination);
    const auto found = m_lost.find(combination);
    if (found != m_lost.end()) {
        const auto lost = found->second;
        lost();
    }
}

std::optional<std::int32_t> NullHotKeys::send(Combination combination, HotKeyEventKind hotKeyKind,
                                              HotKeyEventKind rawKind, bool isRepeat) {
    HotKeyEvent event;
    const auto found = registered.find(combination);
    if (found != registered.end()) {
        event.type.kind = hotKeyKind;
        event.identifier = found->second;
    } else {
        event.type.kind = rawKind;
        event.keyCode = combination.first;
        event.modifiers = combination.second;
        event.isRepeat = isRepeat;
    }
    const EventHandler called = handler;
    if (!called || !eventKinds.contains(event.type.kind)) {
        return std::nullopt;
    }
    return called(event);
}

} // namespace snapvane::null
