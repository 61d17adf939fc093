#include "selection/SelectionMagnifierController.h"

#include "base/UserDefaults.h"
#include "platform/null/NullPlatform.h"
#include "selection/AppPreferences.h"
#include "selection/SnapshotFixture.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <limits>

namespace snapvane {

namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A primary screen of 800 × 600 points at scale 1 and one of 400 × 300 points at scale 2 on its
/// right, their tops at the same height.
ScreenList twoScales() {
    return ScreenMapping::layOut({{1, QStringLiteral("L"), {{0, 0}, {800, 600}}, 1, {}},
                                  {2, QStringLiteral("R"), {{800, 0}, {800, 600}}, 2, {}}});
}

DisplaySnapshotList snapshotsOf(const ScreenList& screens) {
    DisplaySnapshotList result;
    for (const Screen& screen : screens) {
        result.push_back(
            {screen.frame, screen.backingScale, testing::snapshotImage(screen.nativeSize())});
    }
    return result;
}

class SelectionMagnifierControllerTest : public ::testing::Test {
protected:
    SelectionMagnifierControllerTest() {
        m_screens.screens = twoScales();
        m_preferences.setShowSelectionMagnifier(true);
    }

    void prepare() { m_controller.prepare(snapshotsOf(m_screens.screens)); }
    const null::NullImageSprite& sprite() const { return *m_sprites.images.at(0); }
    bool isVisible() const {
        return m_controller.window() != nullptr && m_controller.window()->isVisible();
    }
    /// The colour of the cell in the middle, beside the marks.
    QRgb middle() const {
        const double scale = sprite().screen.backingScale;
        return sprite().picture.image.pixel(static_cast<int>(78 * scale),
                                            static_cast<int>(66 * scale));
    }

    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences m_preferences{m_defaults};
    null::NullScreens m_screens;
    null::NullSprites m_sprites;
    SelectionMagnifierController m_controller{m_preferences, m_screens, m_sprites};
};

TEST_F(SelectionMagnifierControllerTest, BeginsWithNothing) {
    EXPECT_EQ(m_controller.window(), nullptr);
    EXPECT_THAT(m_controller.snapshots(), IsEmpty());
    EXPECT_FALSE(m_controller.magnifierView().snapshot.has_value());
    m_controller.update({10, 10}, {});
    m_controller.dismiss();
    EXPECT_EQ(m_sprites.created, 0);
}

TEST_F(SelectionMagnifierControllerTest, PreparesAWindowThatIsNotSeenYet) {
    prepare();
    ASSERT_THAT(m_sprites.images, SizeIs(1));
    EXPECT_EQ(sprite().options.level, 1002);
    EXPECT_FALSE(sprite().options.name.isEmpty());
    EXPECT_FALSE(isVisible());
    EXPECT_THAT(m_controller.snapshots(), SizeIs(2));
}

TEST_F(SelectionMagnifierControllerTest, MakesItsWindowOnce) {
    for (int session = 0; session < 3; ++session) {
        prepare();
        m_controller.update({10, 10}, {});
        m_controller.dismiss();
    }
    EXPECT_EQ(m_sprites.created, 1);
    EXPECT_TRUE(m_sprites.solids.empty());
}

TEST_F(SelectionMagnifierControllerTest, AnUpdateShowsItNearThePointer) {
    prepare();
    m_controller.update({100, 50}, {});
    EXPECT_TRUE(isVisible());
    EXPECT_EQ(sprite().screen, m_screens.screens[0]);
    // The lower-left corner at 118, 68; the picture's 164 rows end there.
    EXPECT_EQ(sprite().topLeft, (PixelPoint{118, 600 - 68 - 164}));
    EXPECT_EQ(sprite().picture.image.size(), QSize(160, 164));
}

TEST_F(SelectionMagnifierControllerTest, TheViewIsToldEverything) {
    prepare();
    m_controller.update({850.5, 400}, {30, 40});
    const SelectionMagnifierView& view = m_controller.magnifierView();
    ASSERT_TRUE(view.snapshot.has_value());
    EXPECT_EQ(view.snapshot->screenFrame, m_screens.screens[1].frame);
    EXPECT_EQ(view.localPoint, (GlobalPoint{50.5, 100}));
    EXPECT_EQ(view.globalPoint, (GlobalPoint{850.5, 400}));
    EXPECT_EQ(view.selectionSize, (GlobalSize{30, 40}));
}

TEST_F(SelectionMagnifierControllerTest, EachScreenIsShownAtItsOwnScale) {
    prepare();
    m_controller.update({100, 50}, {});
    EXPECT_EQ(middle(), testing::snapshotColor(100, 549));
    m_controller.update({850.5, 400}, {});
    EXPECT_EQ(sprite().screen, m_screens.screens[1]);
    EXPECT_EQ(sprite().picture.image.size(), QSize(320, 328));
    EXPECT_EQ(middle(), testing::snapshotColor(101, 399));
    // 868.5, 418 in points, but for the loupe there is no room above.
    EXPECT_EQ(sprite().topLeft.x, 137);
    m_controller.update({799, 400}, {});
    EXPECT_EQ(sprite().screen, m_screens.screens[0]);
    EXPECT_EQ(sprite().picture.image.size(), QSize(160, 164));
    EXPECT_EQ(middle(), testing::snapshotColor(799, 199));
    EXPECT_EQ(m_sprites.created, 1);
}

TEST_F(SelectionMagnifierControllerTest, FollowsThePointer) {
    prepare();
    for (int i = 0; i < 10; ++i) {
        m_controller.update({100.0 + i, 50}, {});
        EXPECT_EQ(sprite().topLeft.x, 118 + i);
        EXPECT_EQ(middle(), testing::snapshotColor(100 + i, 549));
    }
    EXPECT_EQ(sprite().shown, 10);
}

TEST_F(SelectionMagnifierControllerTest, KeepsToTheUsableAreaOfTheScreen) {
    m_screens.screens[0].visibleFrame = {{50, 40}, {700, 500}};
    prepare();
    m_controller.update({10, 10}, {});
    EXPECT_EQ(sprite().topLeft, (PixelPoint{58, 600 - 48 - 164}));
    // 186 points from the area's right end, 190 from its top.
    m_controller.update({564, 350}, {});
    EXPECT_EQ(sprite().topLeft, (PixelPoint{582, 600 - 368 - 164}));
    m_controller.update({565, 351}, {});
    EXPECT_EQ(sprite().topLeft, (PixelPoint{565 - 178, 600 - (351 - 182) - 164}));
}

TEST_F(SelectionMagnifierControllerTest, TurnedOffInASessionItGoesAtTheNextUpdate) {
    prepare();
    m_controller.update({100, 50}, {});
    m_preferences.setShowSelectionMagnifier(false);
    m_controller.update({101, 50}, {});
    EXPECT_FALSE(isVisible());
    EXPECT_EQ(sprite().shown, 1);
    EXPECT_THAT(m_controller.snapshots(), SizeIs(2)) << "it may be turned on again";
}

TEST_F(SelectionMagnifierControllerTest, TurnedOnAgainItIsBackAtThePointer) {
    prepare();
    m_controller.update({100, 50}, {});
    m_preferences.setShowSelectionMagnifier(false);
    m_controller.update({101, 50}, {});
    m_preferences.setShowSelectionMagnifier(true);
    EXPECT_FALSE(isVisible());
    m_controller.update({200, 60}, {});
    EXPECT_TRUE(isVisible());
    EXPECT_EQ(sprite().topLeft.x, 218);
    EXPECT_EQ(middle(), testing::snapshotColor(200, 539));
}

TEST_F(SelectionMagnifierControllerTest, TurnedOffBeforeAnythingWasPrepared) {
    m_preferences.setShowSelectionMagnifier(false);
    m_controller.update({100, 50}, {});
    EXPECT_EQ(m_sprites.created, 0);
}

TEST_F(SelectionMagnifierControllerTest, TurnedOnWithoutSnapshotsNothingIsShown) {
    m_preferences.setShowSelectionMagnifier(false);
    m_controller.update({100, 50}, {});
    m_preferences.setShowSelectionMagnifier(true);
    m_controller.update({100, 50}, {});
    EXPECT_EQ(m_sprites.created, 0);
}

TEST_F(SelectionMagnifierControllerTest, DismissalHidesItAndForgetsThePictures) {
    prepare();
    m_controller.update({100, 50}, {});
    m_controller.dismiss();
    EXPECT_FALSE(isVisible());
    EXPECT_THAT(m_controller.snapshots(), IsEmpty());
    EXPECT_FALSE(m_controller.magnifierView().snapshot.has_value());
    m_controller.update({101, 50}, {});
    EXPECT_FALSE(isVisible()) << "there is nothing to show any more";
}

TEST_F(SelectionMagnifierControllerTest, TheNextSessionHasItsOwnPictures) {
    prepare();
    m_controller.update({100, 50}, {});
    m_controller.dismiss();
    DisplaySnapshotList next = snapshotsOf(m_screens.screens);
    next[0].cgImage.fill(Qt::green);
    m_controller.prepare(next);
    EXPECT_FALSE(isVisible());
    m_controller.update({100, 50}, {});
    EXPECT_TRUE(isVisible());
    EXPECT_EQ(middle(), QColor(Qt::green).rgb());
}

TEST_F(SelectionMagnifierControllerTest, PreparedAgainWhileItIsSeenItShowsTheNewPictures) {
    prepare();
    m_controller.update({100, 50}, {});
    DisplaySnapshotList next = snapshotsOf(m_screens.screens);
    next[0].cgImage.fill(Qt::green);
    m_controller.prepare(next);
    m_controller.update({100, 50}, {});
    EXPECT_EQ(middle(), QColor(Qt::green).rgb());
    EXPECT_EQ(m_sprites.created, 1);
}

TEST_F(SelectionMagnifierControllerTest, PreparedWithoutSnapshotsItStaysAway) {
    m_controller.prepare({});
    m_controller.update({100, 50}, {});
    EXPECT_FALSE(isVisible());
}

/// The list need not outlive the call.
TEST_F(SelectionMagnifierControllerTest, KeepsTheSnapshotsItself) {
    {
        const DisplaySnapshotList list = snapshotsOf(m_screens.screens);
        m_controller.prepare(list);
    }
    m_controller.update({100, 50}, {});
    EXPECT_EQ(middle(), testing::snapshotColor(100, 549));
}

TEST_F(SelectionMagnifierControllerTest, OffAllScreensItStandsOnTheMainOne) {
    prepare();
    m_controller.update({900, 100}, {});
    ASSERT_TRUE(isVisible());
    EXPECT_EQ(sprite().screen, m_screens.screens[0]);
    // Left of the pointer, as far as it is beyond the screen.
    EXPECT_EQ(sprite().topLeft, (PixelPoint{900 - 178, 600 - 118 - 164}));
    // The place counts from the first screen's corner and lies outside of its picture.
    EXPECT_EQ(m_controller.magnifierView().localPoint, (GlobalPoint{900, 100}));
    EXPECT_EQ(middle(), qRgba(0, 0, 0, 217));
}

TEST_F(SelectionMagnifierControllerTest, AScreenWithoutAPictureShowsTheFirstOnesSurroundings) {
    m_controller.prepare({snapshotsOf(m_screens.screens)[0]});
    m_controller.update({850, 400}, {});
    ASSERT_TRUE(isVisible());
    EXPECT_EQ(sprite().screen, m_screens.screens[1]);
    EXPECT_EQ(middle(), qRgba(0, 0, 0, 217)) << "far outside of the only picture";
}

TEST_F(SelectionMagnifierControllerTest, WithoutScreensItIsNotShown) {
    prepare();
    m_controller.update({100, 50}, {});
    m_screens.screens.clear();
    m_controller.update({101, 50}, {});
    EXPECT_FALSE(isVisible());
    m_screens.screens = twoScales();
    m_controller.update({102, 50}, {});
    EXPECT_TRUE(isVisible());
}

TEST_F(SelectionMagnifierControllerTest, IsOpaqueWhereThereIsNoTransparency) {
    m_sprites.translucent = false;
    prepare();
    m_controller.update({0, 50}, {});
    const QImage& image = sprite().picture.image;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ASSERT_EQ(qAlpha(image.pixel(x, y)), 255) << x << ',' << y;
        }
    }
    EXPECT_THAT(sprite().picture.shape, SizeIs(2));
    m_controller.dismiss();
    m_sprites.translucent = true;
    prepare();
    m_controller.update({0, 50}, {});
    EXPECT_EQ(qAlpha(sprite().picture.image.pixel(0, 0)), 0);
}

TEST_F(SelectionMagnifierControllerTest, TakesItsWindowWithIt) {
    {
        SelectionMagnifierController other(m_preferences, m_screens, m_sprites);
        other.prepare(snapshotsOf(m_screens.screens));
        other.update({100, 50}, {});
        EXPECT_THAT(m_sprites.images, SizeIs(1));
    }
    EXPECT_THAT(m_sprites.images, IsEmpty());
}

using SelectionMagnifierControllerDeathTest = SelectionMagnifierControllerTest;

TEST_F(SelectionMagnifierControllerDeathTest, ThePointerMustBeSomewhere) {
    prepare();
    EXPECT_EXIT(m_controller.update({std::numeric_limits<double>::quiet_NaN(), 0}, {}),
                ::testing::KilledBySignal(SIGABRT), "not finite");
}

} // namespace

} // namespace snapvane
