#pragma once

#include "KeyboardShortcuts/HotKey.h"
#include "KeyboardShortcuts/HotKeyCenter.h"
#include "ShortcutPrinting.h"
#include "platform/null/NullHotKeys.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace KeyboardShortcuts {

/// A center on a keyboard that nobody has, and hot keys that write down what becomes of them.
class HotKeyFixture : public ::testing::Test {
protected:
    using Combination = snapvane::null::NullHotKeys::Combination;
    using Kind = snapvane::HotKeyEventKind;

    static constexpr std::int32_t handled = 0;
    static constexpr std::int32_t notHandled = -9874;

    /// With the next id; not registered yet. Writes "<title> down", "<title> up", "<title> failed".
    std::shared_ptr<HotKey> makeHotKey(std::int64_t keyCode, std::int64_t modifiers,
                                       const std::string& title = "key") {
        auto hotKey = std::make_shared<HotKey>(
            m_center, keyCode, modifiers, m_center.nextHotKeyId(),
            [this, title] { m_journal.push_back(title + " down"); },
            [this, title] { m_journal.push_back(title + " up"); });
        hotKey->onRegistrationFailed = [this, title] { m_journal.push_back(title + " failed"); };
        return hotKey;
    }

    std::shared_ptr<HotKey> registered(std::int64_t keyCode, std::int64_t modifiers,
                                       const std::string& title = "key") {
        auto hotKey = makeHotKey(keyCode, modifiers, title);
        EXPECT_TRUE(m_center.register_(hotKey));
        return hotKey;
    }

    snapvane::HotKeyEvent hotKeyEvent(Kind kind, const HotKey& hotKey) const {
        snapvane::HotKeyEvent event;
        event.type.kind = kind;
        event.identifier = {HotKeyCenter::signature, static_cast<std::uint32_t>(hotKey.id())};
        return event;
    }

    static snapvane::HotKeyEvent rawKeyEvent(Kind kind, std::uint32_t keyCode,
                                             std::uint32_t modifiers) {
        snapvane::HotKeyEvent event;
        event.type.kind = kind;
        event.keyCode = keyCode;
        event.modifiers = modifiers;
        return event;
    }

    std::int32_t handle(const snapvane::HotKeyEvent& event) {
        return HotKeyCenter::handleEvent(&m_center, event);
    }

    std::vector<std::string> m_journal;
    snapvane::null::NullHotKeys m_system;
    HotKeyCenter m_center{m_system};
};

} // namespace KeyboardShortcuts
