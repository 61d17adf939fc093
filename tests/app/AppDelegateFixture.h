#pragma once

#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "app/AppDelegate.h"
#include "app/AppFakes.h"
#include "app/CaptureShortcutSwitch.h"
#include "base/UserDefaults.h"
#include "capture/ScreenCapturePermissionManager.h"
#include "selection/AppPreferences.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace snapvane::testing {

/// A delegate on a desktop in memory, with everything that it starts recorded in one journal.
class DelegateTest : public ::testing::Test {
public:
    ~DelegateTest() override {
        captures.captureGate.openAll();
        settle();
        delegate.reset();
        KeyboardShortcuts::NamedShortcuts::install(nullptr);
    }

protected:
    /// Control, shift and P.
    static constexpr null::NullHotKeys::Combination defaultShortcut = {35, 0x1200};

    DelegateTest() {
        preferences.setShowSelectionMagnifier(false);
        KeyboardShortcuts::NamedShortcuts::install(&shortcuts);
    }

    void launch(bool access = true) {
        platform.capturer().access = access;
        delegate->applicationDidFinishLaunching();
    }
    Journal news() { return std::exchange(journal, {}); }
    bool isSelecting() { return platform.overlays().session != nullptr; }
    /// The user's hands on the default shortcut.
    void pressShortcut() { platform.hotKeys().press(defaultShortcut); }
    void releaseShortcut() { platform.hotKeys().release(defaultShortcut); }
    void tapShortcut() {
        pressShortcut();
        releaseShortcut();
    }
    bool hasHotKey() { return platform.hotKeys().registered.contains(defaultShortcut); }
    /// What the preferences hold of the shortcut.
    std::optional<QString> storedShortcut() const {
        return defaults.string(QStringLiteral("KeyboardShortcuts_captureArea"));
    }
    QAction& entry(StatusMenuAction action) {
        return delegate->statusItem()->menu().action(action);
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences preferences{defaults};
    Journal journal;
    RecordingPlatform platform{journal};
    RecordingAlerts alerts{journal};
    RecordingGuideLines lines{journal};
    RecordingMagnifier magnifier{journal};
    HeldSnapshots snapshots{journal};
    FakeCaptures captures{journal};
    KeyboardShortcuts::HotKeyCenter center{platform.hotKeys()};
    KeyboardShortcuts::NamedShortcuts shortcuts{defaults, center};
    ScreenCapturePermissionManager permission{alerts, platform.workspace()};
    CaptureCoordinator coordinator{
        {{preferences, platform.screens(), platform.overlays(), lines, magnifier, snapshots},
         captures.region(),
         captures.action(),
         alerts}};
    CaptureShortcutSwitch shortcutSwitch;
    std::unique_ptr<AppDelegate> delegate =
        std::make_unique<AppDelegate>(AppDelegate::Collaborators{
            platform, coordinator, permission, preferences, lines, shortcuts, shortcutSwitch});
};

} // namespace snapvane::testing
