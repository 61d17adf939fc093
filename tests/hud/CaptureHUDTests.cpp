#include "hud/CaptureHUD.h"

#include "hud/HUDContentView.h"
#include "platform/null/NullPlatform.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

namespace snapvane {

namespace {

// Seconds. Long enough to be still shown when the slowest machine looks at it.
constexpr double longTime = 600;
constexpr double shortTime = 0.2;

const QString firstText = QStringLiteral("Image copied");
const QString secondText = QStringLiteral("Link copied \u00b7 Image copied");

class CaptureHUDTest : public ::testing::Test {
protected:
    void show(const QString& text, double duration = longTime) { m_hud.show(text, duration); }

    /// The one panel that there is.
    null::NullPanel& panel() const {
        EXPECT_EQ(m_panels.panels.size(), 1U);
        return *m_panels.panels.at(0);
    }
    const HUDContentView& view() const {
        return dynamic_cast<const HUDContentView&>(*panel().content);
    }
    /// Where a notice of the present size hangs in the middle of this area's top.
    GlobalPoint topOf(const GlobalRect& visible) const {
        return {visible.midX() - view().width() / 2.0, visible.maxY() - view().height() - 16};
    }
    bool waitUntilHidden(int patienceMs = 30'000) const {
        const QDeadlineTimer deadline(patienceMs);
        while (panel().visible && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            QThread::msleep(1);
        }
        return !panel().visible;
    }
    static void workFor(int milliseconds) {
        const QDeadlineTimer deadline(milliseconds);
        while (!deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            QThread::msleep(1);
        }
        // What has become due in the last pause.
        QCoreApplication::processEvents();
    }

    null::NullScreens m_screens;
    null::NullPanels m_panels;
    CaptureHUD m_hud{m_screens, m_panels};
};

/// A primary screen with a dock at its left and top edges, and a denser one at the right with docks
/// at all edges.
ScreenList twoScreens() {
    return ScreenMapping::layOut(
        {{1, QStringLiteral("Left"), {{0, 0}, {1920, 1080}}, 1, {.left = 64, .top = 30}},
         {2,
          QStringLiteral("Right"),
          {{1920, 0}, {2560, 1440}},
          2,
          {.left = 20, .right = 100, .top = 50, .bottom = 60}}});
}

} // namespace

TEST_F(CaptureHUDTest, MakesNoPanelBeforeThereIsANotice) {
    EXPECT_EQ(m_panels.created, 0);
}

TEST_F(CaptureHUDTest, ShowsTheMessage) {
    show(firstText);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(view().message(), firstText);
    EXPECT_EQ(view().size(), view().sizeHint());
}

TEST_F(CaptureHUDTest, MakesItsPanelForNoInputAboveWindows) {
    show(firstText);
    EXPECT_EQ(panel().options.name, QStringLiteral("Snapvane Notice"));
    EXPECT_EQ(panel().options.level, 25);
    EXPECT_EQ(panel().options.input, PanelInput::ClickThrough);
    EXPECT_EQ(panel().options.cornerRadius, 10);
}

TEST_F(CaptureHUDTest, HangsAtTheTopOfTheScreenUnderThePointer) {
    m_screens.screens = twoScreens();
    const GlobalRect left = m_screens.screens[0].visibleFrame;
    const GlobalRect right = m_screens.screens[1].visibleFrame;
    ASSERT_EQ(left, (GlobalRect{{64, 0}, {1856, 1050}}));
    struct Case {
        GlobalPoint pointer;
        GlobalRect visible;
    };
    const Case cases[] = {{{0, 0}, left},        {{1919, 1079}, left}, {{10, 1075}, left},
                          {{1920, 500}, right},  {{2500, 900}, right}, {{3199, 1079}, right},
                          {{-1, 500}, left},     {{1000, 1080}, left}, {{3200, 500}, left},
                          {{5000, -4000}, left}, {{64, 0}, left}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.pointer.x << ',' << c.pointer.y);
        m_screens.pointer = c.pointer;
        show(firstText);
        ASSERT_TRUE(panel().origin.has_value());
        EXPECT_EQ(*panel().origin, topOf(c.visible));
    }
}

TEST_F(CaptureHUDTest, TakesTheFirstOfScreensThatShowTheSame) {
    m_screens.screens = twoScreens();
    m_screens.screens[1].frame = m_screens.screens[0].frame;
    m_screens.pointer = {100, 100};
    show(firstText);
    EXPECT_EQ(*panel().origin, topOf(m_screens.screens[0].visibleFrame));
}

TEST_F(CaptureHUDTest, FollowsThePointerFromNoticeToNotice) {
    m_screens.screens = twoScreens();
    m_screens.pointer = {100, 100};
    show(firstText);
    m_screens.pointer = {2000, 500};
    show(firstText);
    EXPECT_EQ(*panel().origin, topOf(m_screens.screens[1].visibleFrame));
    m_screens.screens.pop_back();
    show(firstText);
    EXPECT_EQ(*panel().origin, topOf(m_screens.screens[0].visibleFrame));
}

TEST_F(CaptureHUDTest, IsShownWhereItWasWhenThereIsNoScreen) {
    show(firstText);
    const auto before = panel().origin;
    const int raised = panel().raised;
    m_screens.screens.clear();
    show(secondText);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(panel().origin, before);
    EXPECT_EQ(panel().raised, raised + 1);
    EXPECT_EQ(view().message(), secondText);
}

TEST_F(CaptureHUDTest, SurvivesThatThereWasNeverAScreen) {
    m_screens.screens.clear();
    show(firstText, shortTime);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(panel().origin, std::nullopt);
    EXPECT_TRUE(waitUntilHidden());
}

TEST_F(CaptureHUDTest, IsCentredForEachMessage) {
    show(firstText);
    const int before = view().width();
    show(secondText);
    EXPECT_GT(view().width(), before);
    EXPECT_EQ(*panel().origin, topOf(m_screens.screens[0].visibleFrame));
}

TEST_F(CaptureHUDTest, ReusesItsPanelAndBringsItToTheFront) {
    show(firstText);
    const null::NullPanel* first = &panel();
    const int raised = panel().raised;
    show(secondText);
    EXPECT_EQ(&panel(), first);
    EXPECT_EQ(m_panels.created, 1);
    EXPECT_GT(panel().raised, raised);
    EXPECT_EQ(view().message(), secondText);
}

TEST_F(CaptureHUDTest, ReusesItsPanelAfterItWasHidden) {
    show(firstText, shortTime);
    ASSERT_TRUE(waitUntilHidden());
    show(secondText);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(m_panels.created, 1);
}

TEST_F(CaptureHUDTest, MakesAnotherPanelWhenItsOwnDoesNotLookRightAnyMore) {
    show(firstText);
    panel().current = false;
    show(secondText);
    EXPECT_EQ(m_panels.created, 2);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(view().message(), secondText);
    EXPECT_EQ(panel().options.level, 25);
    EXPECT_EQ(*panel().origin, topOf(m_screens.screens[0].visibleFrame));
}

TEST_F(CaptureHUDTest, HidesByItselfAfterTheDuration) {
    QElapsedTimer timer;
    timer.start();
    show(firstText, shortTime);
    EXPECT_TRUE(waitUntilHidden());
    EXPECT_GE(timer.elapsed(), 195);
}

TEST_F(CaptureHUDTest, GoesInTheOrderOfTime) {
    // Timers fire in the order in which they are due, however late the machine is.
    bool shownBefore = false;
    bool shownAfter = true;
    const auto look = [this](bool& shown) { return [this, &shown] { shown = panel().visible; }; };
    QTimer::singleShot(1400, Qt::PreciseTimer, &m_screens, look(shownBefore));
    show(firstText, 1.5);
    QTimer::singleShot(1600, Qt::PreciseTimer, &m_screens, look(shownAfter));
    workFor(1700);
    EXPECT_TRUE(shownBefore);
    EXPECT_FALSE(shownAfter);
}

TEST_F(CaptureHUDTest, ANewNoticeOutlivesTheTimeOfTheOldOne) {
    show(firstText, shortTime);
    show(secondText, longTime);
    workFor(600);
    EXPECT_TRUE(panel().visible);
    EXPECT_EQ(view().message(), secondText);
}

TEST_F(CaptureHUDTest, ANewNoticeStartsItsOwnTime) {
    show(firstText, shortTime);
    workFor(100);
    QElapsedTimer timer;
    timer.start();
    show(secondText, 0.5);
    EXPECT_TRUE(waitUntilHidden());
    EXPECT_GE(timer.elapsed(), 495);
    EXPECT_EQ(view().message(), secondText);
}

TEST_F(CaptureHUDTest, AShortNoticeDoesNotWaitForALongOneBeforeIt) {
    show(firstText, longTime);
    show(secondText, shortTime);
    EXPECT_TRUE(waitUntilHidden());
}

TEST_F(CaptureHUDTest, HidesOnce) {
    show(firstText, shortTime);
    ASSERT_TRUE(waitUntilHidden());
    panel().show();
    workFor(500);
    EXPECT_TRUE(panel().visible);
}

TEST_F(CaptureHUDTest, TakesItsPanelAndItsTimerWithIt) {
    {
        CaptureHUD hud(m_screens, m_panels);
        hud.show(firstText, shortTime);
        EXPECT_EQ(m_panels.panels.size(), 1U);
    }
    EXPECT_TRUE(m_panels.panels.empty());
    workFor(300);
}

} // namespace snapvane
