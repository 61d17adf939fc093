#include "app/CaptureCoordinator.h"

#include "app/AppFakes.h"
#include "base/UserDefaults.h"
#include "capture/CaptureServiceError.h"
#include "platform/PlatformError.h"
#include "selection/AppPreferences.h"
#include "selection/LogCapture.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class CaptureCoordinatorTest : public ::testing::Test {
public:
    ~CaptureCoordinatorTest() override {
        captures.captureGate.openAll();
        captures.actionGate.openAll();
        testing::settle();
    }

protected:
    CaptureCoordinatorTest() {
        screens.screens = testing::twoScreens();
        preferences.setShowSelectionMagnifier(false);
        coordinator = std::make_unique<CaptureCoordinator>(CaptureCoordinator::Collaborators{
            {preferences, screens, host, lines, magnifier, snapshots},
            captures.region(),
            captures.action(),
            alerts});
    }

    /// One whole selection, from the request to the release.
    void select(DevicePoint from, DevicePoint to) {
        coordinator->beginAreaCapture();
        testing::drag(host, screens.screens, from, to);
        testing::settle();
    }
    testing::Journal news() { return std::exchange(journal, {}); }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences preferences{defaults};
    testing::Journal journal;
    null::NullScreens screens;
    testing::RecordingOverlayHost host{journal};
    testing::RecordingGuideLines lines{journal};
    testing::RecordingMagnifier magnifier{journal};
    testing::HeldSnapshots snapshots{journal};
    testing::FakeCaptures captures{journal};
    testing::RecordingAlerts alerts{journal};
    std::unique_ptr<CaptureCoordinator> coordinator;
    testing::LogCapture log;
};

TEST_F(CaptureCoordinatorTest, ASuccessIsHandedOverAndNothingElse) {
    select({100, 100}, {200, 150});
    EXPECT_THAT(captures.rects, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
    ASSERT_THAT(captures.handedOver, SizeIs(1));
    EXPECT_EQ(captures.handedOver.front().pngData, QByteArray("bytes"));
    EXPECT_EQ(captures.handedOver.front().globalCaptureRect, captures.rects.front());
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(CaptureCoordinatorTest, TheOverlayIsGoneBeforeTheCaptureStarts) {
    coordinator->beginAreaCapture();
    (void)news();
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    testing::settle();
    const testing::Journal end = news();
    ASSERT_GE(end.size(), 6U);
    EXPECT_THAT(testing::Journal(end.end() - 6, end.end()),
                ElementsAre("lines hide", "loupe dismiss", "overlay close concealed", "capture",
                            "action", "action done"));
}

/// The rectangle is neither rounded nor clipped nor turned on its way.
TEST_F(CaptureCoordinatorTest, TheRectangleIsPassedAsItWasReceived) {
    coordinator->beginAreaCapture();
    const GlobalRect odd{{-3.25, 700.125}, {12.5, -9.75}};
    auto& controller = coordinator->overlayController();
    controller.selectionOverlayViewDidComplete(controller.overlayWindow()->contentView(), odd);
    testing::settle();
    EXPECT_THAT(captures.rects, ElementsAre(odd));
}

TEST_F(CaptureCoordinatorTest, CancellingShowsAndLogsNothing) {
    coordinator->beginAreaCapture();
    host.session->client.overlayKeyEvent({53, false});
    testing::settle();
    select({100, 100}, {101, 101});
    EXPECT_THAT(captures.rects, IsEmpty());
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

struct FailureCase {
    const char* name;
    std::exception_ptr failure;
    const char* text;

    friend void PrintTo(const FailureCase& example, std::ostream* stream) {
        *stream << example.name;
    }
};

class FailingCapture : public CaptureCoordinatorTest,
                       public ::testing::WithParamInterface<FailureCase> {};

TEST_P(FailingCapture, IsLoggedAndShownOnce) {
    captures.failure = GetParam().failure;
    select({100, 100}, {200, 150});
    const std::string text = GetParam().text;
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_EQ(log.lines().front().text, "Capture failed: " + text);
    EXPECT_EQ(log.lines().front().type, QtCriticalMsg);
    EXPECT_EQ(log.lines().front().category, "CaptureCoordinator");
    ASSERT_THAT(alerts.shown, SizeIs(1));
    EXPECT_EQ(alerts.shown.front().messageText.toStdString(), text);
    EXPECT_EQ(static_cast<int>(alerts.shown.front().style), 0);
    EXPECT_EQ(alerts.shown.front().buttons.size(), 1);
    EXPECT_THAT(captures.handedOver, IsEmpty());
    EXPECT_THAT(captures.rects, SizeIs(1)) << "nothing is tried again";
}

TEST_P(FailingCapture, DoesNotSpoilTheNextOne) {
    captures.failure = GetParam().failure;
    select({100, 100}, {200, 150});
    captures.failure = nullptr;
    select({100, 100}, {200, 150});
    EXPECT_THAT(captures.handedOver, SizeIs(1));
    EXPECT_THAT(alerts.shown, SizeIs(1));
}

template <typename Error> std::exception_ptr failure(const Error& error) {
    return std::make_exception_ptr(error);
}

std::vector<FailureCase> failureCases() {
    return {
        {"tooSmall", failure(CaptureServiceError::emptySelection()),
         "The selection area is too small."},
        {"noDisplays", failure(CaptureServiceError::noDisplays()),
         "No displays were found for capture."},
        {"noMatchingDisplay", failure(CaptureServiceError::noMatchingDisplay()),
         "The selection does not intersect a display."},
        {"encoding", failure(CaptureServiceError::pngEncodingFailed()),
         "Could not encode PNG data."},
        {"payload", failure(CaptureServiceError::captureFailed(QStringLiteral("as told"))),
         "as told"},
        {"platform", failure(PlatformError(QStringLiteral("Das Gerät fehlt."))),
         "Das Ger\u00E4t fehlt."},
        {"foreign", failure(std::runtime_error("something else")), "something else"},
        // A failure that brings no text is still a failure.
        {"textless", failure(PlatformError(QString())), ""},
    };
}

INSTANTIATE_TEST_SUITE_P(Table, FailingCapture, ::testing::ValuesIn(failureCases()),
                         [](const auto& example) { return std::string(example.param.name); });

TEST_F(CaptureCoordinatorTest, TheLogLineComesBeforeTheAlert) {
    captures.failure = failure(CaptureServiceError::emptySelection());
    std::size_t linesBefore = 0;
    alerts.whileShown = [&] { linesBefore = log.lines().size(); };
    select({100, 100}, {200, 150});
    EXPECT_EQ(linesBefore, 1U);
}

TEST_F(CaptureCoordinatorTest, TwoCapturesRunInterleaved) {
    captures.holdCaptures = true;
    select({0, 0}, {100, 100});
    select({100, 100}, {200, 150});
    ASSERT_EQ(captures.captureGate.waits(), 2U);
    captures.captureGate.open(1);
    ASSERT_THAT(captures.handedOver, SizeIs(1));
    EXPECT_EQ(captures.handedOver[0].globalCaptureRect, captures.rects[1]);
    captures.captureGate.open(0);
    ASSERT_THAT(captures.handedOver, SizeIs(2));
    EXPECT_EQ(captures.handedOver[1].globalCaptureRect, captures.rects[0]);
}

TEST_F(CaptureCoordinatorTest, ASelectionMayRunWhileActionsDo) {
    captures.holdActions = true;
    select({0, 0}, {100, 100});
    select({100, 100}, {200, 150});
    EXPECT_THAT(captures.handedOver, SizeIs(2));
    captures.actionGate.openAll();
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(CaptureCoordinatorTest, OneFailureDoesNotEndTheOther) {
    captures.holdCaptures = true;
    select({0, 0}, {100, 100});
    select({100, 100}, {200, 150});
    captures.failure = failure(CaptureServiceError::noDisplays());
    captures.captureGate.open(0);
    captures.failure = nullptr;
    captures.captureGate.open(1);
    EXPECT_THAT(alerts.shown, SizeIs(1));
    EXPECT_THAT(captures.handedOver, SizeIs(1));
}

TEST_F(CaptureCoordinatorTest, AnotherRequestRestartsAnOpenSelection) {
    coordinator->beginAreaCapture();
    coordinator->beginAreaCapture();
    EXPECT_EQ(host.opened, 2);
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    testing::settle();
    EXPECT_THAT(captures.rects, SizeIs(1));
}

TEST_F(CaptureCoordinatorTest, TheTriggerReachesTheOverlay) {
    coordinator->beginAreaCapture(CaptureTrigger::Menu);
    EXPECT_EQ(host.menuWaits, 1);
    coordinator->beginAreaCapture(CaptureTrigger::Shortcut);
    EXPECT_EQ(host.menuWaits, 1);
}

TEST_F(CaptureCoordinatorTest, ACompletionThatOutlivesItsCoordinatorDoesNothing) {
    coordinator->beginAreaCapture();
    const auto completion = coordinator->overlayController().takeCompletion();
    coordinator.reset();
    completion(GlobalRect{{1, 2}, {30, 40}});
    testing::settle();
    EXPECT_THAT(captures.rects, IsEmpty());
    EXPECT_THAT(alerts.shown, IsEmpty());
}

/// What comes of the capture is left open; that it touches nothing that is gone is not.
TEST_F(CaptureCoordinatorTest, ACaptureThatOutlivesItsCoordinatorDoesNoHarm) {
    captures.holdCaptures = true;
    select({100, 100}, {200, 150});
    coordinator.reset();
    captures.captureGate.open();
    EXPECT_THAT(alerts.shown, IsEmpty());
}

} // namespace

} // namespace snapvane
