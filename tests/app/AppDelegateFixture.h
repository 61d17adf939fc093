#pragma once

#include "app/AppDelegate.h"
#include "app/AppFakes.h"
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
    }

protected:
    DelegateTest() { preferences.setShowSelectionMagnifier(false); }

    void launch(bool access = true) {
        platform.capturer().access = access;
        delegate->applicationDidFinishLaunching();
    }
    Journal news() { return std::exchange(journal, {}); }
    bool isSelecting() { return platform.overlays().session != nullptr; }
    QAction& entry(StatusMenuAction action) {
        return delegate->statusItem()->menu().action(action);
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences preferences{defaults};
    Journal journal;
    null::NullPlatform platform;
    RecordingAlerts alerts{journal};
    RecordingGuideLines lines{journal};
    RecordingMagnifier magnifier{journal};
    HeldSnapshots snapshots{journal};
    FakeCaptures captures{journal};
    RecordingShortcut shortcut{journal};
    ScreenCapturePermissionManager permission{alerts, platform.workspace()};
    CaptureCoordinator coordinator{
        {{preferences, platform.screens(), platform.overlays(), lines, magnifier, snapshots},
         captures.region(),
         captures.action(),
         alerts}};
    std::unique_ptr<AppDelegate> delegate =
        std::make_unique<AppDelegate>(AppDelegate::Collaborators{platform, coordinator, permission,
                                                                 preferences, lines, shortcut});
};

} // namespace snapvane::testing
