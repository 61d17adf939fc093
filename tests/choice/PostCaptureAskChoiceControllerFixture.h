#pragma once

#include "actions/CapturePreferences.h"
#include "base/UserDefaults.h"
#include "choice/ChoiceActionRow.h"
#include "choice/PostCaptureAskChoiceController.h"
#include "choice/PostCaptureChoiceView.h"
#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <optional>
#include <string>
#include <vector>

namespace snapvane {

/// A controller on a desktop in memory, and what it does to its surroundings in the order in which
/// it happens.
class ChoiceControllerFixture : public ::testing::Test {
public:
    // What comes later speaks to this object.
    ~ChoiceControllerFixture() override { settle(0); }

protected:
    static CaptureResult captureOf(const GlobalRect& rect, const QByteArray& png = "png") {
        QImage bitmap(static_cast<int>(rect.size.width), static_cast<int>(rect.size.height),
                      QImage::Format_RGB32);
        bitmap.fill(Qt::darkCyan);
        return {png, {bitmap, rect.size}, QDateTime::currentDateTime(), rect};
    }

    PostCaptureAskChoiceController::Collaborators collaborators() {
        return {.screens = m_screens,
                .panels = m_panels,
                .keyboardLayout = m_layout,
                .motionPreference = m_motion,
                .preferences = m_preferences,
                .disableShortcut = [this] { m_events.emplace_back("disable"); },
                .enableShortcut = [this] { m_events.emplace_back("enable"); },
                .run =
                    [this](PostCaptureMenuAction action, const CaptureResult& result) {
                        m_events.push_back("run " + std::to_string(static_cast<int>(action)) + " " +
                                           result.pngData.toStdString());
                    }};
    }

    void present(const GlobalRect& rect = {{100, 100}, {200, 100}}, const QByteArray& png = "png") {
        m_controller->present(captureOf(rect, png));
    }
    null::NullScreenPanel& panel() {
        null::NullScreenPanel& shown = *m_panels.screenPanels.at(0);
        // Unseen views are laid out no sooner than they are painted.
        shown.content->grab();
        return shown;
    }
    bool isShown() const { return !m_panels.screenPanels.empty(); }
    PostCaptureChoiceView& card() { return *panel().content->findChild<PostCaptureChoiceView*>(); }

    /// Runs the event loop until the condition holds; false when that takes too long.
    template <typename Condition> static bool eventually(Condition condition) {
        const QDeadlineTimer deadline(std::chrono::seconds(10));
        while (!condition() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            QThread::msleep(2);
        }
        return condition();
    }
    /// Lets happen what is under way.
    static void settle(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /// Two screens side by side with a gap below the second, which is smaller and of scale 2.
    void setTwoScreens() {
        m_screens.screens =
            ScreenMapping::layOut({{1, QStringLiteral("Left"), {{0, 0}, {1920, 1080}}, 1, {}},
                                   {2, QStringLiteral("Right"), {{1920, 0}, {1280, 720}}, 2, {}}});
    }

    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(QStringLiteral("test.conf"))};
    CapturePreferences m_preferences{m_defaults};
    null::NullScreens m_screens;
    null::NullPanels m_panels;
    null::NullKeyboardLayout m_layout;
    null::NullMotionPreference m_motion;
    std::vector<std::string> m_events;
    std::optional<PostCaptureAskChoiceController> m_controller{std::in_place, collaborators()};
};

} // namespace snapvane
