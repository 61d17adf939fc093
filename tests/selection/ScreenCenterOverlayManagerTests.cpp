#include "selection/ScreenCenterOverlayManager.h"

#include "base/UserDefaults.h"
#include "platform/null/NullPlatform.h"
#include "selection/AppPreferences.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::ValuesIn;

/// A primary screen of 400 × 300 points at scale 1, one of 200 × 150 points at scale 2 on its
/// right, and one of 300 × 100 points below.
ScreenList threeScreens() {
    return ScreenMapping::layOut({{1, QStringLiteral("P"), {{0, 0}, {400, 300}}, 1, {}},
                                  {2, QStringLiteral("R"), {{400, 0}, {400, 300}}, 2, {}},
                                  {3, QStringLiteral("B"), {{0, 300}, {300, 100}}, 1, {}}});
}

class ScreenCenterOverlayManagerTest : public ::testing::Test {
protected:
    ScreenCenterOverlayManagerTest() {
        m_screens.screens = threeScreens();
        m_preferences.setShowCrosshairLinesWhileCapturing(true);
    }

    void beginSession() {
        m_manager.setCaptureSessionActive(true);
        m_manager.rebuildOverlays();
    }
    /// The indices of the screens that have lines on them.
    std::vector<std::size_t> shown() const {
        std::vector<std::size_t> result;
        for (std::size_t i = 0; i < m_manager.overlays().size(); ++i) {
            if (m_manager.overlays()[i]->isVisible()) {
                result.push_back(i);
            }
        }
        return result;
    }
    int showings() const {
        int count = 0;
        for (const null::NullSolidSprite* line : m_sprites.solids) {
            count += line->shown;
        }
        return count;
    }

    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences m_preferences{m_defaults};
    null::NullScreens m_screens;
    null::NullSprites m_sprites;
    ScreenCenterOverlayManager m_manager{m_preferences, m_screens, m_sprites};
};

TEST_F(ScreenCenterOverlayManagerTest, BeginsWithoutASessionAndWithoutLines) {
    EXPECT_FALSE(m_manager.captureSessionActive());
    EXPECT_THAT(m_manager.overlays(), IsEmpty());
    EXPECT_EQ(m_sprites.created, 0);
}

TEST_F(ScreenCenterOverlayManagerTest, RebuildsOneHiddenOverlayAScreenInTheirOrder) {
    m_manager.rebuildOverlays();
    ASSERT_THAT(m_manager.overlays(), SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(m_manager.overlays()[i]->screen(), m_screens.screens[i]);
    }
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(showings(), 0);
    for (const null::NullSolidSprite* line : m_sprites.solids) {
        EXPECT_EQ(line->options.level, 1001);
    }
}

TEST_F(ScreenCenterOverlayManagerTest, RebuildingDropsTheLinesThatThereAre) {
    beginSession();
    m_manager.updateCursor({10, 10});
    ASSERT_THAT(shown(), ElementsAre(0U));
    m_screens.screens.resize(1);
    m_manager.rebuildOverlays();
    EXPECT_THAT(m_manager.overlays(), SizeIs(1));
    EXPECT_THAT(m_sprites.solids, SizeIs(2));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ScreenCenterOverlayManagerTest, RebuildingWithoutScreensLeavesNothing) {
    beginSession();
    m_screens.screens.clear();
    m_manager.rebuildOverlays();
    EXPECT_THAT(m_manager.overlays(), IsEmpty());
    m_manager.updateCursor({10, 10});
    EXPECT_THAT(m_sprites.solids, IsEmpty());
}

TEST_F(ScreenCenterOverlayManagerTest, ShowsTheLinesAtThePointer) {
    beginSession();
    m_manager.updateCursor({30, 40});
    EXPECT_THAT(shown(), ElementsAre(0U));
    EXPECT_EQ(m_manager.overlays()[0]->crosshairPoint(), (GlobalPoint{30, 40}));
    EXPECT_EQ(m_sprites.solids[0]->area, (PixelRect{30, 0, 1, 300}));
    EXPECT_EQ(m_sprites.solids[1]->area, (PixelRect{0, 259, 400, 1}));
}

TEST_F(ScreenCenterOverlayManagerTest, PointsAreRelativeToTheScreenTheyAreOn) {
    beginSession();
    // The right screen's frame is 200 × 150 points, its top at the height of the primary's.
    ASSERT_EQ(m_screens.screens[1].frame, (GlobalRect{{400, 150}, {200, 150}}));
    m_manager.updateCursor({450.5, 200});
    EXPECT_EQ(m_manager.overlays()[1]->crosshairPoint(), (GlobalPoint{50.5, 50}));
    EXPECT_EQ(m_sprites.solids[2]->area, (PixelRect{100, 0, 2, 300}));
    EXPECT_EQ(m_sprites.solids[3]->area, (PixelRect{0, 199, 400, 2}));

    m_manager.updateCursor({30, -1});
    EXPECT_EQ(m_manager.overlays()[2]->crosshairPoint(), (GlobalPoint{30, 99}));
    EXPECT_EQ(m_sprites.solids[5]->area, (PixelRect{0, 0, 300, 1}));
}

TEST_F(ScreenCenterOverlayManagerTest, LinesAreOnOneScreenAtATime) {
    beginSession();
    const std::pair<GlobalPoint, std::size_t> way[] = {{{399, 200}, 0}, {{400, 200}, 1},
                                                       {{399, 200}, 0}, {{10, 0}, 0},
                                                       {{10, -1}, 2},   {{500, 160}, 1}};
    for (const auto& [point, index] : way) {
        m_manager.updateCursor(point);
        EXPECT_THAT(shown(), ElementsAre(index)) << point.x << ", " << point.y;
    }
}

struct BorderCase {
    const char* what;
    GlobalPoint point;
    /// −1 where there are no lines.
    int screen;

    friend void PrintTo(const BorderCase& example, std::ostream* stream) {
        *stream << example.what;
    }
};

class GuideLineBorders : public ScreenCenterOverlayManagerTest,
                         public ::testing::WithParamInterface<BorderCase> {};

TEST_P(GuideLineBorders, StillBelongToAScreen) {
    beginSession();
    m_manager.updateCursor(GetParam().point);
    if (GetParam().screen < 0) {
        EXPECT_THAT(shown(), IsEmpty());
    } else {
        EXPECT_THAT(shown(), ElementsAre(static_cast<std::size_t>(GetParam().screen)));
    }
}

constexpr double tiny = 1e-9;

const BorderCase borderCases[] = {
    {"lower-left corner", {0, 0}, 0},
    {"upper border", {100, 300}, 0},
    {"a hair above", {100, 300 + tiny}, -1},
    {"upper left corner", {0, 300}, 0},
    {"upper border of the right one", {500, 300}, 1},
    {"far corner", {600, 300}, 1},
    {"right border", {600, 200}, 1},
    {"a hair right of it", {600 + tiny, 200}, -1},
    {"right border of the primary, nobody beside it", {400, 100}, 0},
    {"right border of the primary, a screen beside it", {400, 200}, 1},
    {"lower border of the right one", {500, 150}, 1},
    {"less than a point below it", {500, 149.5}, 1},
    {"a point below it", {500, 149}, -1},
    {"less than a point left of the primary", {-0.5, 100}, 0},
    {"a point left of it", {-1, 100}, -1},
    {"upper border of the lower one, inside the primary", {100, 0}, 0},
    {"right border of the lower one", {300, -50}, 2},
    {"lowest row", {100, -100}, 2},
    {"a point below everything", {100, -101}, -1},
    {"far away", {1e9, -1e9}, -1},
    {"nowhere", {std::numeric_limits<double>::quiet_NaN(), 0}, -1},
    {"endlessly far away", {std::numeric_limits<double>::infinity(), 0}, -1},
};

INSTANTIATE_TEST_SUITE_P(Table, GuideLineBorders, ValuesIn(borderCases));

TEST_F(ScreenCenterOverlayManagerTest, OffAllScreensTheLinesGo) {
    beginSession();
    m_manager.updateCursor({10, 10});
    m_manager.updateCursor({5000, 5000});
    EXPECT_THAT(shown(), IsEmpty());
    m_manager.updateCursor({11, 11});
    EXPECT_THAT(shown(), ElementsAre(0U));
}

TEST_F(ScreenCenterOverlayManagerTest, WithoutASessionNothingHappens) {
    m_manager.rebuildOverlays();
    m_manager.updateCursor({10, 10});
    m_manager.screenParametersChanged();
    EXPECT_EQ(showings(), 0);
}

TEST_F(ScreenCenterOverlayManagerTest, WithoutTheSettingNothingHappens) {
    m_preferences.setShowCrosshairLinesWhileCapturing(false);
    beginSession();
    const int created = m_sprites.created;
    m_manager.updateCursor({10, 10});
    m_manager.screenParametersChanged();
    EXPECT_EQ(showings(), 0);
    EXPECT_EQ(m_sprites.created, created);
}

TEST_F(ScreenCenterOverlayManagerTest, TurnedOffInTheSettingsTheLinesStayWhereTheyAre) {
    beginSession();
    m_manager.updateCursor({10, 10});
    m_preferences.setShowCrosshairLinesWhileCapturing(false);
    m_manager.updateCursor({50, 60});
    m_manager.updateCursor({500, 200});
    m_manager.updateCursor({5000, 5000});
    EXPECT_THAT(shown(), ElementsAre(0U));
    EXPECT_EQ(m_manager.overlays()[0]->crosshairPoint(), (GlobalPoint{10, 10}));
    m_manager.hideOverlays();
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ScreenCenterOverlayManagerTest, TurnedOnAgainTheyFollowThePointer) {
    beginSession();
    m_preferences.setShowCrosshairLinesWhileCapturing(false);
    m_manager.updateCursor({10, 10});
    EXPECT_THAT(shown(), IsEmpty());
    m_preferences.setShowCrosshairLinesWhileCapturing(true);
    m_manager.updateCursor({20, 20});
    EXPECT_THAT(shown(), ElementsAre(0U));
}

TEST_F(ScreenCenterOverlayManagerTest, AfterTheSessionTheyNoLongerFollow) {
    beginSession();
    m_manager.updateCursor({10, 10});
    m_manager.setCaptureSessionActive(false);
    m_manager.hideOverlays();
    m_manager.updateCursor({20, 20});
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_THAT(m_manager.overlays(), IsEmpty()) << "the next session makes its own";
}

TEST_F(ScreenCenterOverlayManagerTest, OtherScreensInASessionGetLinesAtThePointer) {
    beginSession();
    m_manager.updateCursor({500, 200});
    m_screens.screens =
        ScreenMapping::layOut({{4, QStringLiteral("New"), {{0, 0}, {1000, 800}}, 1, {}}});
    m_screens.pointer = {700, 600};
    m_manager.screenParametersChanged();
    ASSERT_THAT(m_manager.overlays(), SizeIs(1));
    EXPECT_EQ(m_manager.overlays()[0]->screen().id, 4U);
    EXPECT_THAT(shown(), ElementsAre(0U));
    EXPECT_EQ(m_manager.overlays()[0]->crosshairPoint(), (GlobalPoint{700, 600}));
    EXPECT_THAT(m_sprites.solids, SizeIs(2));
}

TEST_F(ScreenCenterOverlayManagerTest, OtherScreensAreNotedOnlyWhenRebuilt) {
    beginSession();
    m_screens.screens.clear();
    m_manager.updateCursor({10, 10});
    EXPECT_THAT(shown(), ElementsAre(0U));
}

TEST_F(ScreenCenterOverlayManagerTest, OtherScreensBetweenSessionsWaitForTheNextOne) {
    m_manager.rebuildOverlays();
    m_screens.screens.resize(1);
    m_manager.screenParametersChanged();
    EXPECT_THAT(m_manager.overlays(), SizeIs(3));
}

TEST_F(ScreenCenterOverlayManagerTest, EveryUpdateBringsTheLinesToTheFront) {
    beginSession();
    m_manager.updateCursor({10, 10});
    m_manager.updateCursor({10, 10});
    EXPECT_EQ(m_sprites.solids[0]->shown, 2);
    EXPECT_EQ(m_sprites.solids[1]->shown, 2);
}

TEST_F(ScreenCenterOverlayManagerTest, HidingWithoutLinesIsNoTrouble) {
    m_manager.hideOverlays();
    m_manager.updateCursor({10, 10});
    EXPECT_EQ(m_sprites.created, 0);
}

} // namespace

} // namespace snapvane
