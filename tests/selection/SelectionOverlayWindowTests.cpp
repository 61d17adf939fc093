#include "selection/SelectionOverlayWindow.h"

#include "selection/PictureFixture.h"
#include "selection/SessionFakes.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using Kind = OverlayPointerEvent::Kind;

class CountingDelegate : public SelectionOverlayViewDelegate {
public:
    void selectionOverlayViewDidComplete(SelectionOverlayView&, const GlobalRect& rect) override {
        completed.push_back(rect);
    }
    void selectionOverlayViewDidCancel(SelectionOverlayView&) override { ++cancelled; }

    std::vector<GlobalRect> completed;
    int cancelled = 0;
};

class SelectionOverlayWindowTest : public ::testing::Test {
protected:
    SelectionOverlayWindowTest() { window.contentView().delegate = &delegate; }

    void show() {
        ASSERT_TRUE(window.open());
        window.makeKeyAndOrderFront();
    }
    void send(Kind kind, DevicePoint place) {
        window.overlayPointerEvent(testing::pointerEvent(kind, screens, place));
    }

    ScreenList screens = testing::twoScreens();
    testing::Journal journal;
    testing::RecordingOverlayHost host{journal};
    CountingDelegate delegate;
    SelectionOverlayWindow window{host, {screens, 0.45}};
};

TEST_F(SelectionOverlayWindowTest, TakesKeysAndStandsAboveMenus) {
    EXPECT_TRUE(window.canBecomeKey());
    EXPECT_TRUE(window.canBecomeMain());
    show();
    EXPECT_EQ(host.session->options.level, 1000);
    EXPECT_EQ(host.session->options.dimAmount, 0.45);
    EXPECT_EQ(host.session->options.screens, screens);
}

TEST_F(SelectionOverlayWindowTest, CoversTheUnionOfAllScreens) {
    EXPECT_EQ(window.contentView().bounds(), (GlobalRect{{0, 0}, {800, 300}}));
}

TEST_F(SelectionOverlayWindowTest, NothingIsOpenBeforeItIsOpened) {
    EXPECT_EQ(host.opened, 0);
    window.makeKeyAndOrderFront();
    window.orderOut();
    EXPECT_TRUE(journal.empty());
}

TEST_F(SelectionOverlayWindowTest, AnOpenedWindowIsSeenOnceItIsOrderedFront) {
    ASSERT_TRUE(window.open());
    EXPECT_FALSE(host.session->shown);
    window.makeKeyAndOrderFront();
    EXPECT_TRUE(host.session->shown);
}

TEST_F(SelectionOverlayWindowTest, ConcealsBeforeItCloses) {
    show();
    window.orderOut();
    window.orderOut();
    EXPECT_THAT(journal,
                ::testing::ElementsAre("overlay open", "overlay front", "overlay close concealed"));
}

TEST_F(SelectionOverlayWindowTest, SaysWhenTheDesktopCannotShowIt) {
    host.capable = false;
    EXPECT_FALSE(window.open());
}

TEST_F(SelectionOverlayWindowTest, EscapeAndTheCancelCommandCancel) {
    window.overlayKeyEvent({53, false});
    EXPECT_EQ(delegate.cancelled, 1);
    window.overlayKeyEvent({-1, true});
    EXPECT_EQ(delegate.cancelled, 2);
    window.overlayKeyEvent({53, true});
    EXPECT_EQ(delegate.cancelled, 3) << "once, though it is both";
    window.overlayKeyEvent({36, false});
    window.overlayKeyEvent({49, false});
    window.overlayKeyEvent({-1, false});
    EXPECT_EQ(delegate.cancelled, 3);
}

TEST_F(SelectionOverlayWindowTest, ABurstOfMotionIsPaintedOnce) {
    show();
    send(Kind::Down, {50, 50});
    for (int i = 1; i <= 50; ++i) {
        send(Kind::Dragged, {50 + i, 50 + i});
    }
    EXPECT_TRUE(host.session->painted.empty());
    testing::settle();
    // On the left screen only: the right one has not changed.
    EXPECT_EQ(host.session->painted.size(), 1U);
}

TEST_F(SelectionOverlayWindowTest, VeilAndHoleHaveTheStatedOpacity) {
    show();
    const QRgb veil = qRgba(0, 0, 0, 115);
    EXPECT_EQ(host.session->surfaces[0].pixel(200, 200), veil);
    send(Kind::Down, {100, 100});
    send(Kind::Dragged, {300, 250});
    testing::settle();
    EXPECT_EQ(host.session->surfaces[0].pixel(200, 200), 0U);
    EXPECT_EQ(host.session->surfaces[0].pixel(20, 20), veil);
    EXPECT_EQ(host.session->surfaces[1].pixel(20, 20), veil);
    send(Kind::Up, {300, 250});
    testing::settle();
    EXPECT_EQ(host.session->surfaces[0].pixel(200, 200), veil);
}

/// Amounts out of range come from a file that somebody wrote by hand; they are used as they are,
/// and no opacity lies beyond none and full.
TEST(SelectionOverlayWindow, OpacitiesBeyondTheRangeShowAsItsEnds) {
    for (const auto& [amount, alpha] : {std::pair(-0.5, 0), {0.0, 0}, {1.0, 255}, {42.0, 255}}) {
        null::NullOverlayHost host;
        SelectionOverlayWindow window(host, {testing::twoScreens(), amount});
        ASSERT_TRUE(window.open());
        window.makeKeyAndOrderFront();
        EXPECT_EQ(host.session->surfaces[0].pixel(5, 5), qRgba(0, 0, 0, alpha)) << amount;
        host.session->repaint(0, host.session->surfaces[0].rect());
        EXPECT_EQ(host.session->surfaces[0].pixel(5, 5), qRgba(0, 0, 0, alpha)) << amount;
    }
}

TEST_F(SelectionOverlayWindowTest, ADragMayRunAcrossScreens) {
    show();
    send(Kind::Down, {300, 100});
    send(Kind::Dragged, {500, 200});
    testing::settle();
    EXPECT_EQ(host.session->surfaces[0].pixel(390, 150), 0U);
    EXPECT_EQ(host.session->surfaces[1].pixel(20, 150), 0U);
    send(Kind::Up, {500, 200});
    EXPECT_THAT(delegate.completed, ::testing::ElementsAre(GlobalRect{{300, 100}, {200, 100}}));
}

/// The server may lose a surface between an event and its painting: what it gets back is what the
/// surface showed, so that the painting of the difference stays right.
TEST_F(SelectionOverlayWindowTest, LostPixelsAreRestoredAsTheyWere) {
    show();
    send(Kind::Down, {100, 100});
    send(Kind::Dragged, {300, 250});
    testing::settle();
    send(Kind::Dragged, {320, 260});
    host.session->surfaces[0].fill(Qt::white);
    host.session->repaint(0, host.session->surfaces[0].rect());
    testing::settle();
    const SelectionPicture picture = window.contentView().picture(screens[0]);
    QImage expected(400, 300, QImage::Format_ARGB32_Premultiplied);
    {
        null::ImageCanvas canvas(expected, 0.45, expected.rect());
        picture.paint(canvas, expected.rect());
    }
    EXPECT_EQ(host.session->surfaces[0], expected);
}

TEST_F(SelectionOverlayWindowTest, NothingIsPaintedAfterItIsOrderedOut) {
    show();
    send(Kind::Down, {100, 100});
    send(Kind::Dragged, {300, 250});
    window.orderOut();
    testing::settle();
    EXPECT_EQ(host.session, nullptr);
}

TEST(SelectionOverlayWindow, MayGoWhileAPaintingIsDue) {
    const ScreenList screens = testing::twoScreens();
    null::NullOverlayHost host;
    auto window = std::make_unique<SelectionOverlayWindow>(
        host, SelectionOverlayWindow::Settings{screens, 0.2});
    ASSERT_TRUE(window->open());
    window->makeKeyAndOrderFront();
    window->overlayPointerEvent(testing::pointerEvent(Kind::Down, screens, {10, 10}));
    window.reset();
    testing::settle();
    EXPECT_EQ(host.session, nullptr);
}

TEST_F(SelectionOverlayWindowTest, OutdatedSurfacesArePassedOn) {
    show();
    window.overlayOutdated();
    int heard = 0;
    window.onOutdated = [&heard] { ++heard; };
    window.overlayOutdated();
    EXPECT_EQ(heard, 1);
}

TEST_F(SelectionOverlayWindowTest, RefusedInputIsPassedOn) {
    window.overlayInputRefused(QStringLiteral("nobody listens"));
    QString heard;
    window.onInputRefused = [&heard](const QString& reason) { heard = reason; };
    window.overlayInputRefused(QStringLiteral("grabbed"));
    EXPECT_EQ(heard, QStringLiteral("grabbed"));
}

} // namespace

} // namespace snapvane
