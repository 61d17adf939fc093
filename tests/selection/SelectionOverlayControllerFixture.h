#pragma once

#include "base/UserDefaults.h"
#include "selection/AppPreferences.h"
#include "selection/LogCapture.h"
#include "selection/SelectionOverlayController.h"
#include "selection/SessionFakes.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace snapvane::testing {

/// A controller on two screens with everything around it recorded in one journal. The loupe is off
/// to begin with, so that the overlay is there when `present` returns.
class ControllerTest : public ::testing::Test {
public:
    // What a test left waiting ends here, so that nothing of it is left over.
    ~ControllerTest() override {
        host.menus.openAll();
        snapshots.gate.openAll();
        settle();
    }

protected:
    ControllerTest() {
        screens.screens = twoScreens();
        preferences.setShowSelectionMagnifier(false);
        controller =
            std::make_unique<SelectionOverlayController>(SelectionOverlayController::Collaborators{
                preferences, screens, host, lines, magnifier, snapshots});
    }

    SelectionOverlayController::Completion recorded() {
        return [this](std::optional<GlobalRect> rect) {
            journal.emplace_back(rect ? "completed" : "cancelled");
            results.push_back(rect);
        };
    }
    void present(CaptureTrigger trigger = CaptureTrigger::Shortcut) {
        controller->present(recorded(), trigger);
    }
    /// What has happened since this was last asked.
    Journal news() { return std::exchange(journal, {}); }
    void holdSnapshots() {
        preferences.setShowSelectionMagnifier(true);
        snapshots.hold = true;
    }
    bool isShowing() const { return host.session != nullptr; }
    void pressEscape() { host.session->client.overlayKeyEvent({53, false}); }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences preferences{defaults};
    Journal journal;
    null::NullScreens screens;
    RecordingOverlayHost host{journal};
    RecordingGuideLines lines{journal};
    RecordingMagnifier magnifier{journal};
    HeldSnapshots snapshots{journal};
    std::vector<std::optional<GlobalRect>> results;
    std::unique_ptr<SelectionOverlayController> controller;
};

} // namespace snapvane::testing
