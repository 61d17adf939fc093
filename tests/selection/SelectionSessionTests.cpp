// Sessions with the real loupe and the real guide lines, on a desktop in memory.

#include "base/UserDefaults.h"
#include "selection/AppPreferences.h"
#include "selection/LogCapture.h"
#include "selection/ScreenCenterOverlayManager.h"
#include "selection/SelectionMagnifierController.h"
#include "selection/SelectionOverlayController.h"
#include "selection/SessionFakes.h"
#include "selection/SnapshotFixture.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using Kind = OverlayPointerEvent::Kind;

class SelectionSessionTest : public ::testing::Test {
public:
    ~SelectionSessionTest() override {
        m_snapshots.gate.openAll();
        testing::settle();
    }

protected:
    SelectionSessionTest() {
        // The right screen has two pixels a point.
        m_screens.screens =
            ScreenMapping::layOut({{1, QStringLiteral("L"), {{0, 0}, {400, 300}}, 1, {}},
                                   {2, QStringLiteral("R"), {{400, 0}, {800, 600}}, 2, {}}});
        m_preferences.setShowSelectionMagnifier(true);
        m_preferences.setShowCrosshairLinesWhileCapturing(true);
        takePictures();
    }

    void takePictures() {
        m_snapshots.list.clear();
        for (const Screen& screen : m_screens.screens) {
            m_snapshots.list.push_back(
                {screen.frame, screen.backingScale, testing::snapshotImage(screen.nativeSize())});
        }
    }
    void present() {
        m_controller.present([this](std::optional<GlobalRect> rect) {
            m_visibleAtTheEnd = visibleSprites();
            m_results.push_back(rect);
        });
    }
    void send(Kind kind, DevicePoint place) {
        m_host.session->client.overlayPointerEvent(
            testing::pointerEvent(kind, m_screens.screens, place));
    }
    int visibleSprites() const {
        int count = 0;
        for (const null::NullSolidSprite* line : m_sprites.solids) {
            count += line->visible ? 1 : 0;
        }
        for (const null::NullImageSprite* image : m_sprites.images) {
            count += image->visible ? 1 : 0;
        }
        return count;
    }
    const null::NullImageSprite& loupe() const { return *m_sprites.images.at(0); }
    /// The colour in the middle of the loupe, beside its marks.
    QRgb middle() const {
        const double scale = loupe().screen.backingScale;
        return loupe().picture.image.pixel(static_cast<int>(78 * scale),
                                           static_cast<int>(66 * scale));
    }
    /// The two lines that are seen, the vertical one first.
    std::vector<PixelRect> lines() const {
        std::vector<PixelRect> result;
        for (const null::NullSolidSprite* line : m_sprites.solids) {
            if (line->visible) {
                result.push_back(line->area);
            }
        }
        return result;
    }

    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(QStringLiteral("Snapvane.conf"))};
    AppPreferences m_preferences{m_defaults};
    testing::Journal m_journal;
    null::NullScreens m_screens;
    null::NullSprites m_sprites;
    testing::RecordingOverlayHost m_host{m_journal};
    testing::HeldSnapshots m_snapshots{m_journal};
    ScreenCenterOverlayManager m_lines{m_preferences, m_screens, m_sprites};
    SelectionMagnifierController m_magnifier{m_preferences, m_screens, m_sprites};
    std::vector<std::optional<GlobalRect>> m_results;
    int m_visibleAtTheEnd = -1;
    SelectionOverlayController m_controller{
        {m_preferences, m_screens, m_host, m_lines, m_magnifier, m_snapshots}};
};

TEST_F(SelectionSessionTest, LinesAndLoupeAreThereAtOnce) {
    m_screens.pointer = {30, 259};
    present();
    EXPECT_EQ(visibleSprites(), 3);
    EXPECT_THAT(lines(), ElementsAre(PixelRect{30, 0, 1, 300}, PixelRect{0, 40, 400, 1}));
    EXPECT_EQ(middle(), testing::snapshotColor(30, 40));
}

TEST_F(SelectionSessionTest, TheLoupeIsAboveTheLinesAndTheseAboveTheOverlay) {
    present();
    EXPECT_LT(m_host.session->options.level, m_sprites.solids[0]->options.level);
    EXPECT_LT(m_sprites.solids[0]->options.level, loupe().options.level);
}

TEST_F(SelectionSessionTest, BothFollowThePointerToThePixel) {
    present();
    for (const DevicePoint pixel : {DevicePoint{0, 0}, {399, 299}, {17, 250}, {0, 299}, {399, 0}}) {
        send(Kind::Moved, pixel);
        EXPECT_THAT(lines(),
                    ElementsAre(PixelRect{pixel.x, 0, 1, 300}, PixelRect{0, pixel.y, 400, 1}));
        EXPECT_EQ(middle(), testing::snapshotColor(pixel.x, pixel.y));
    }
}

TEST_F(SelectionSessionTest, BothGoToTheOtherScreenWithThePointer) {
    present();
    send(Kind::Moved, {399, 100});
    send(Kind::Moved, {400, 100});
    EXPECT_EQ(visibleSprites(), 3);
    EXPECT_EQ(loupe().screen.id, 2U);
    EXPECT_EQ(middle(), testing::snapshotColor(0, 100));
    // Two pixels thick, but on the screen's left border one of them is beyond it.
    EXPECT_THAT(lines(), ElementsAre(PixelRect{0, 0, 1, 600}, PixelRect{0, 100, 800, 2}));
    send(Kind::Moved, {399, 100});
    EXPECT_EQ(loupe().screen.id, 1U);
    EXPECT_THAT(lines(), ElementsAre(PixelRect{399, 0, 1, 300}, PixelRect{0, 100, 400, 1}));
}

TEST_F(SelectionSessionTest, ADragTellsItsSize) {
    present();
    send(Kind::Down, {100, 100});
    send(Kind::Dragged, {160, 150});
    EXPECT_EQ(m_magnifier.magnifierView().selectionSize, (GlobalSize{60, 50}));
    EXPECT_EQ(m_magnifier.magnifierView().globalPoint, (GlobalPoint{160, 149}));
}

TEST_F(SelectionSessionTest, NothingIsSeenWhenTheResultIsHandedOver) {
    present();
    send(Kind::Down, {100, 100});
    send(Kind::Dragged, {160, 150});
    send(Kind::Up, {160, 150});
    EXPECT_THAT(m_results, SizeIs(1));
    EXPECT_EQ(m_visibleAtTheEnd, 0);
}

TEST_F(SelectionSessionTest, NothingIsSeenAfterEscape) {
    present();
    send(Kind::Moved, {500, 100});
    m_host.session->client.overlayKeyEvent({53, false});
    EXPECT_THAT(m_results, ElementsAre(std::nullopt));
    EXPECT_EQ(m_visibleAtTheEnd, 0);
    EXPECT_FALSE(m_lines.captureSessionActive());
    EXPECT_TRUE(m_magnifier.snapshots().empty());
}

TEST_F(SelectionSessionTest, TheLoupeCanBeTurnedOffAndOn) {
    present();
    m_preferences.setShowSelectionMagnifier(false);
    send(Kind::Moved, {50, 50});
    EXPECT_FALSE(loupe().visible);
    EXPECT_EQ(visibleSprites(), 2);
    m_preferences.setShowSelectionMagnifier(true);
    send(Kind::Moved, {51, 51});
    EXPECT_TRUE(loupe().visible);
    EXPECT_EQ(middle(), testing::snapshotColor(51, 51));
}

TEST_F(SelectionSessionTest, WithoutSnapshotsThereAreLinesOnly) {
    m_snapshots.list.clear();
    present();
    send(Kind::Moved, {50, 50});
    EXPECT_EQ(visibleSprites(), 2);
    EXPECT_EQ(m_sprites.images.size(), 0U);
}

TEST_F(SelectionSessionTest, AScreenThatGoesTakesNeitherLinesNorLoupeAway) {
    const testing::LogCapture log;
    present();
    send(Kind::Moved, {700, 100});
    m_screens.screens.resize(1);
    m_screens.pointer = {399, 0};
    takePictures();
    Q_EMIT m_screens.changed();
    ASSERT_NE(m_host.session, nullptr);
    EXPECT_EQ(visibleSprites(), 3);
    EXPECT_EQ(loupe().screen.id, 1U);
    EXPECT_EQ(middle(), testing::snapshotColor(399, 299));
    EXPECT_THAT(lines(), ElementsAre(PixelRect{399, 0, 1, 300}, PixelRect{0, 299, 400, 1}));
    send(Kind::Moved, {20, 20});
    EXPECT_EQ(middle(), testing::snapshotColor(20, 20));
}

TEST_F(SelectionSessionTest, NothingOfThemIsOnTheScreenWhileNewPicturesAreTaken) {
    const testing::LogCapture log;
    present();
    send(Kind::Moved, {100, 100});
    m_snapshots.hold = true;
    m_screens.screens.front().id += 10;
    Q_EMIT m_screens.changed();
    EXPECT_EQ(visibleSprites(), 0);
    m_snapshots.gate.open();
    EXPECT_EQ(visibleSprites(), 3);
}

TEST_F(SelectionSessionTest, ManySessionsUseTheSameLoupeAndLeaveNoLines) {
    for (int i = 0; i < 50; ++i) {
        present();
        send(Kind::Moved, {i, 2 * i});
        send(Kind::Moved, {450 + i, 2 * i});
        m_host.session->client.overlayKeyEvent({53, false});
        EXPECT_EQ(visibleSprites(), 0);
    }
    EXPECT_THAT(m_sprites.images, SizeIs(1));
    EXPECT_THAT(m_sprites.solids, ::testing::IsEmpty());
}

} // namespace

} // namespace snapvane
