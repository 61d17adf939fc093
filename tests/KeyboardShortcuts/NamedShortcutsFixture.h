#pragma once

#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "ShortcutPrinting.h"
#include "base/PreferencesFile.h"
#include "base/UserDefaults.h"
#include "platform/null/NullPlatform.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace KeyboardShortcuts {

/// The module on a keyboard that nobody has, with preferences in a file of their own, and what its
/// handlers wrote down.
class NamedShortcutsFixture : public ::testing::Test {
protected:
    using Combination = snapvane::null::NullHotKeys::Combination;

    static constexpr Combination controlShiftP{35, 0x1200};
    static constexpr Combination commandA{0, 0x100};

    void SetUp() override {
        NamedShortcuts::install(&m_shortcuts);
        QObject::connect(
            &m_shortcuts, &NamedShortcuts::shortcutByNameDidChange, &m_shortcuts,
            [this](const Name& name) { m_changes.push_back(name.rawValue().toStdString()); });
    }
    void TearDown() override { NamedShortcuts::install(nullptr); }

    static Shortcut shortcutOf(Combination combination) {
        return Shortcut::fromCarbon(combination.first, combination.second);
    }
    static Name named(const char* name) { return Name(QString::fromLatin1(name)); }
    Name withShortcut(const char* name, Combination combination) {
        m_shortcuts.setShortcut(shortcutOf(combination), named(name));
        return named(name);
    }

    Action note(const char* text) {
        return [this, text] { m_journal.emplace_back(text); };
    }
    void tap(Combination combination) {
        m_system.press(combination);
        m_system.release(combination);
    }
    bool isRegistered(Combination combination) const {
        return m_system.registered.contains(combination);
    }

    static QString keyOf(const char* name) {
        return QStringLiteral("KeyboardShortcuts_") + QString::fromLatin1(name);
    }
    void store(const char* name, const char* text) {
        m_defaults.set(keyOf(name), QString::fromUtf8(text));
    }
    std::optional<QString> stored(const char* name) const { return m_defaults.string(keyOf(name)); }

    static void runEventLoopFor(std::chrono::milliseconds duration) {
        QElapsedTimer clock;
        clock.start();
        QEventLoop loop;
        while (clock.elapsed() < duration.count()) {
            loop.processEvents();
            QThread::msleep(1);
        }
    }

    std::vector<std::string> m_journal;
    std::vector<std::string> m_changes;
    snapvane::PreferencesFile m_file;
    snapvane::UserDefaults m_defaults{m_file.path()};
    snapvane::null::NullHotKeys m_system;
    HotKeyCenter m_center{m_system};
    NamedShortcuts m_shortcuts{m_defaults, m_center};
};

} // namespace KeyboardShortcuts
