#include "capture/ScreenCapturePermissionManager.h"

#include "hud/AlertPresenter.h"
#include "platform/null/NullPlatform.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace snapvane {

namespace {

constexpr int openSystemSettings = 0;
constexpr int notNow = 1;
constexpr int dismissed = -1;

/// A user who answers every alert in the same way.
class FakeAlerts : public AlertPresenter {
public:
    int present(const Alert& alert) override {
        alerts.push_back(alert);
        return answer;
    }

    int answer = notNow;
    std::vector<Alert> alerts;
};

class PermissionTest : public ::testing::Test {
protected:
    FakeAlerts m_alerts;
    null::NullWorkspace m_workspace;
    ScreenCapturePermissionManager m_manager{m_alerts, m_workspace};
};

const QUrl settingsPane(QStringLiteral(
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));

} // namespace

TEST_F(PermissionTest, BeginsWithoutAccessAndWithoutAnAlert) {
    EXPECT_FALSE(m_manager.hasScreenCaptureAccess);
    EXPECT_FALSE(m_manager.didShowLaunchAlert());
    EXPECT_TRUE(m_alerts.alerts.empty());
}

TEST_F(PermissionTest, SaysWhatIsMissingAndWhatToDo) {
    m_manager.presentPermissionAlertIfNeeded(true);
    ASSERT_EQ(m_alerts.alerts.size(), 1U);
    const Alert& alert = m_alerts.alerts.front();
    EXPECT_EQ(static_cast<int>(alert.style), 1);
    EXPECT_EQ(alert.style, Alert::Style::Informational);
    EXPECT_EQ(alert.messageText, QStringLiteral("Screen Recording Permission Required"));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("Snapvane needs Screen Recording access to capture regions of your "
                             "display. Grant access in System Settings under Privacy & Security "
                             "\u2192 Screen & System Audio Recording, then restart the app if "
                             "needed."));
    EXPECT_EQ(alert.buttons,
              (QStringList{QStringLiteral("Open System Settings"), QStringLiteral("Not Now")}));
}

TEST_F(PermissionTest, IsShownOnceUnlessForced) {
    struct Step {
        bool force;
        std::size_t alertsAfter;
    };
    for (const Step& step : {Step{false, 1}, Step{false, 1}, Step{true, 2}, Step{false, 2}}) {
        m_manager.presentPermissionAlertIfNeeded(step.force);
        EXPECT_EQ(m_alerts.alerts.size(), step.alertsAfter);
        EXPECT_TRUE(m_manager.didShowLaunchAlert());
    }
}

TEST_F(PermissionTest, IsNotShownAgainAfterAForcedOne) {
    m_manager.presentPermissionAlertIfNeeded(true);
    m_manager.presentPermissionAlertIfNeeded(false);
    EXPECT_EQ(m_alerts.alerts.size(), 1U);
}

TEST_F(PermissionTest, OpensTheSettingsOnTheFirstButtonOnly) {
    for (const int answer : {notNow, dismissed}) {
        m_alerts.answer = answer;
        m_manager.presentPermissionAlertIfNeeded(true);
        EXPECT_TRUE(m_workspace.opened.empty());
        EXPECT_EQ(m_workspace.privacyPanels, 0);
    }
    m_alerts.answer = openSystemSettings;
    m_manager.presentPermissionAlertIfNeeded(true);
    EXPECT_THAT(m_workspace.opened, ::testing::ElementsAre(settingsPane));
    EXPECT_EQ(m_workspace.privacyPanels, 0);
}

TEST_F(PermissionTest, OpensExactlyTheScreenRecordingPane) {
    m_manager.openSystemSettings();
    ASSERT_EQ(m_workspace.opened.size(), 1U);
    EXPECT_EQ(m_workspace.opened.front().toString(QUrl::FullyEncoded),
              QStringLiteral("x-apple.systempreferences:com.apple.preference.security?"
                             "Privacy_ScreenCapture"));
    EXPECT_TRUE(m_alerts.alerts.empty());
}

TEST_F(PermissionTest, FallsBackToTheDesktopsOwnPanel) {
    m_workspace.opens = false;
    m_manager.openSystemSettings();
    EXPECT_THAT(m_workspace.opened, ::testing::ElementsAre(settingsPane));
    EXPECT_EQ(m_workspace.privacyPanels, 1);
}

TEST_F(PermissionTest, LeavesTheAnswerOfTheStartAlone) {
    m_manager.hasScreenCaptureAccess = true;
    m_manager.presentPermissionAlertIfNeeded(true);
    EXPECT_TRUE(m_manager.hasScreenCaptureAccess);
}

} // namespace snapvane
