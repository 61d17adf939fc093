#include "capture/DisplaySnapshotStore.h"

#include "base/Await.h"
#include "capture/StableCopy.h"
#include "platform/PlatformError.h"
#include "platform/null/NullPlatform.h"
#include "selection/SnapshotSource.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoroTimer>
#include <QThread>

#include <csignal>
#include <cstring>
#include <limits>

namespace snapvane {

using namespace Qt::StringLiterals;

namespace {

const QString ownIdentifier = u"app.example.Own"_s;

QImage plain(PixelSize size, QRgb color) {
    QImage image(size.width, size.height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

ShareableWindow windowOf(std::uint32_t id, const QString& bundleIdentifier) {
    return {id, RunningApplication{bundleIdentifier}};
}

/// Two screens, the primary one of 1440 × 900 points at scale 2 and right of it one of
/// 1920 × 1080 points at scale 1, with a display each.
class DisplaySnapshotStoreTest : public ::testing::Test {
protected:
    DisplaySnapshotStoreTest() {
        m_screens.screens =
            ScreenMapping::layOut({{11, u"Left"_s, {{0, 0}, {2880, 1800}}, 2, {}},
                                   {22, u"Right"_s, {{2880, 0}, {1920, 1080}}, 1, {}}});
        for (const Screen& screen : m_screens.screens) {
            m_capturer.content.displays.push_back({screen.id, screen.frame});
        }
        m_capturer.render = [](const null::NullCapturer::Shot& shot) {
            return plain(shot.configuration.outputSize, 0xff000000U + shot.filter.displayId);
        };
    }

    DisplaySnapshotStore::Facilities facilities() {
        return {&m_capturer, &m_screens, ownIdentifier};
    }
    DisplaySnapshotList captureAll() {
        return await(DisplaySnapshotStore::captureAllDisplays(facilities()));
    }
    const Screen& screen(std::size_t index) const { return m_screens.screens.at(index); }
    std::vector<ShareableDisplay>& displays() { return m_capturer.content.displays; }
    /// The displays whose pictures were taken.
    std::vector<std::uint32_t> shotDisplays() const {
        std::vector<std::uint32_t> ids;
        ids.reserve(m_capturer.shots.size());
        for (const null::NullCapturer::Shot& shot : m_capturer.shots) {
            ids.push_back(shot.filter.displayId);
        }
        return ids;
    }

    null::NullScreens m_screens;
    null::NullCapturer m_capturer;
};

using Ids = std::vector<std::uint32_t>;

} // namespace

TEST_F(DisplaySnapshotStoreTest, TakesOnePictureAScreenAtItsDensity) {
    const DisplaySnapshotList snapshots = captureAll();
    ASSERT_EQ(snapshots.size(), 2U);
    EXPECT_EQ(snapshots[0].screenFrame, screen(0).frame);
    EXPECT_EQ(snapshots[0].backingScale, 2);
    EXPECT_EQ(snapshots[0].cgImage.size(), QSize(2880, 1800));
    EXPECT_EQ(snapshots[1].screenFrame, screen(1).frame);
    EXPECT_EQ(snapshots[1].backingScale, 1);
    EXPECT_EQ(snapshots[1].cgImage.size(), QSize(1920, 1080));
    EXPECT_EQ(snapshots[0].cgImage.pixel(1, 1), 0xff00000bU);
    EXPECT_EQ(snapshots[1].cgImage.pixel(1, 1), 0xff000016U);
}

TEST_F(DisplaySnapshotStoreTest, AsksOnceForAllWindowsOnScreen) {
    captureAll();
    ASSERT_EQ(m_capturer.queries.size(), 1U);
    EXPECT_FALSE(m_capturer.queries.front().excludeDesktopWindows);
    EXPECT_TRUE(m_capturer.queries.front().onScreenWindowsOnly);
    EXPECT_TRUE(m_capturer.queries.front().listsWindows);
}

TEST_F(DisplaySnapshotStoreTest, AsksForWholeDisplaysWithoutThePointer) {
    captureAll();
    ASSERT_EQ(shotDisplays(), (Ids{11, 22}));
    const StreamConfiguration& left = m_capturer.shots[0].configuration;
    const StreamConfiguration& right = m_capturer.shots[1].configuration;
    EXPECT_EQ(left.sourceRect, (GlobalRect{{0, 0}, {1440, 900}}));
    EXPECT_EQ(left.outputSize, (PixelSize{2880, 1800}));
    EXPECT_EQ(right.sourceRect, (GlobalRect{{0, 0}, {1920, 1080}}));
    EXPECT_EQ(right.outputSize, (PixelSize{1920, 1080}));
    for (const null::NullCapturer::Shot& shot : m_capturer.shots) {
        EXPECT_FALSE(shot.configuration.showsCursor);
        EXPECT_FALSE(shot.configuration.scalesToFit);
    }
}

TEST_F(DisplaySnapshotStoreTest, KeepsTheOrderOfTheScreens) {
    std::swap(m_screens.screens[0], m_screens.screens[1]);
    const DisplaySnapshotList snapshots = captureAll();
    EXPECT_EQ(shotDisplays(), (Ids{22, 11}));
    ASSERT_EQ(snapshots.size(), 2U);
    EXPECT_EQ(snapshots[0].screenFrame, screen(0).frame);
    EXPECT_EQ(snapshots[0].backingScale, 1);
}

TEST_F(DisplaySnapshotStoreTest, TakesTheDisplayThatHoldsTheMiddleOfTheScreen) {
    // The first one overlaps the left screen but does not hold its middle.
    displays() = {{7, {{-1400, 0}, {1500, 900}}}, {8, screen(0).frame}, {9, screen(1).frame}};
    captureAll();
    EXPECT_EQ(shotDisplays(), (Ids{8, 9}));
}

TEST_F(DisplaySnapshotStoreTest, ElseTakesTheFirstDisplayThatOverlapsTheScreen) {
    displays() = {{6, {{8000, 0}, {10, 10}}},
                  {7, {{-90, 0}, {100, 50}}},
                  {8, {{0, 0}, {50, 50}}},
                  {9, screen(1).frame}};
    const DisplaySnapshotList snapshots = captureAll();
    EXPECT_EQ(shotDisplays(), (Ids{7, 9}));
    // It is the display's size at the screen's density, under the screen's frame.
    EXPECT_EQ(m_capturer.shots[0].configuration.sourceRect, (GlobalRect{{0, 0}, {100, 50}}));
    ASSERT_EQ(snapshots.size(), 2U);
    EXPECT_EQ(snapshots[0].cgImage.size(), QSize(200, 100));
    EXPECT_EQ(snapshots[0].screenFrame, screen(0).frame);
}

TEST_F(DisplaySnapshotStoreTest, SkipsAScreenWithoutADisplay) {
    displays() = {{22, screen(1).frame}};
    const DisplaySnapshotList snapshots = captureAll();
    ASSERT_EQ(snapshots.size(), 1U);
    EXPECT_EQ(snapshots[0].screenFrame, screen(1).frame);
}

TEST_F(DisplaySnapshotStoreTest, TakesNothingWithoutDisplays) {
    displays().clear();
    EXPECT_TRUE(captureAll().empty());
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(DisplaySnapshotStoreTest, TakesNothingWithoutScreens) {
    m_screens.screens.clear();
    EXPECT_TRUE(captureAll().empty());
    EXPECT_EQ(m_capturer.queries.size(), 1U);
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(DisplaySnapshotStoreTest, RoundsHalfPixelsAwayFromZero) {
    m_screens.screens[1].backingScale = 1.5;
    displays()[1].frame.size = {101, 33};
    captureAll();
    EXPECT_EQ(m_capturer.shots[1].configuration.outputSize, (PixelSize{152, 50}));
}

TEST_F(DisplaySnapshotStoreTest, AsksForOnePixelAtLeast) {
    m_screens.screens[1].backingScale = 0.0001;
    captureAll();
    EXPECT_EQ(m_capturer.shots[1].configuration.outputSize, (PixelSize{1, 1}));
}

TEST_F(DisplaySnapshotStoreTest, LeavesOutTheProgramsOwnWindowsEveryTime) {
    m_capturer.content.windows = {windowOf(1, u"Editor"_s),
                                  windowOf(2, ownIdentifier),
                                  {3, std::nullopt},
                                  windowOf(4, ownIdentifier)};
    captureAll();
    ASSERT_EQ(m_capturer.shots.size(), 2U);
    for (const null::NullCapturer::Shot& shot : m_capturer.shots) {
        EXPECT_EQ(shot.filter.excludedWindows, (Ids{2, 4}));
    }
}

TEST_F(DisplaySnapshotStoreTest, ThrowsWhatTheQueryThrows) {
    m_capturer.contentFailure = std::make_exception_ptr(PlatformError(u"refused"_s));
    // Also where there would be nothing to take.
    m_screens.screens.clear();
    try {
        captureAll();
        FAIL() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(), u"refused"_s);
    }
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(DisplaySnapshotStoreTest, ThrowsWhatALaterScreenshotThrows) {
    m_capturer.render = [](const null::NullCapturer::Shot& shot) {
        if (shot.filter.displayId == 22) {
            throw PlatformError(u"gone"_s);
        }
        return plain(shot.configuration.outputSize, 0xff112233U);
    };
    try {
        captureAll();
        FAIL() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(), u"gone"_s);
    }
}

TEST_F(DisplaySnapshotStoreTest, TakesNoFurtherPictureAfterAFailure) {
    m_capturer.screenshotFailure = std::make_exception_ptr(PlatformError(u"gone"_s));
    EXPECT_THROW(captureAll(), PlatformError);
    EXPECT_EQ(shotDisplays(), (Ids{11}));
}

TEST_F(DisplaySnapshotStoreTest, SkipsAPictureThatCannotBeCopied) {
    m_capturer.render = [](const null::NullCapturer::Shot& shot) {
        return shot.filter.displayId == 11 ? QImage()
                                           : plain(shot.configuration.outputSize, 0xff112233U);
    };
    const DisplaySnapshotList snapshots = captureAll();
    EXPECT_EQ(shotDisplays(), (Ids{11, 22}));
    ASSERT_EQ(snapshots.size(), 1U);
    EXPECT_EQ(snapshots[0].screenFrame, screen(1).frame);
}

TEST_F(DisplaySnapshotStoreTest, KeepsCopiesOfItsOwn) {
    std::vector<std::uint32_t> memory(std::size_t{2880} * 1800, 0x00123456U);
    m_capturer.render = [&memory](const null::NullCapturer::Shot& shot) {
        const PixelSize size = shot.configuration.outputSize;
        return QImage(reinterpret_cast<const uchar*>(memory.data()), size.width, size.height,
                      4 * size.width, QImage::Format_RGB32);
    };
    const DisplaySnapshotList snapshots = captureAll();
    std::fill(memory.begin(), memory.end(), 0);
    ASSERT_EQ(snapshots.size(), 2U);
    for (const DisplaySnapshot& snapshot : snapshots) {
        EXPECT_EQ(snapshot.cgImage.format(), QImage::Format_RGBX8888);
        EXPECT_EQ(snapshot.cgImage.pixel(0, 0), 0xff123456U);
    }
}

TEST_F(DisplaySnapshotStoreTest, ServesTheOverlayAsASourceOfSnapshots) {
    ScreenSnapshots source(facilities());
    EXPECT_EQ(await(source.captureAllDisplays()).size(), 2U);
    EXPECT_EQ(await(source.captureAllDisplays()).size(), 2U);
    m_capturer.screenshotFailure = std::make_exception_ptr(PlatformError(u"gone"_s));
    EXPECT_THROW(await(source.captureAllDisplays()), PlatformError);
}

using DisplaySnapshotStoreDeathTest = DisplaySnapshotStoreTest;

TEST_F(DisplaySnapshotStoreDeathTest, StopsAtASizeThatIsNoNumber) {
    m_screens.screens[0].backingScale = std::numeric_limits<double>::infinity();
    EXPECT_EXIT(captureAll(), ::testing::KilledBySignal(SIGABRT), "not finite");
    m_screens.screens[0].backingScale = 1e300;
    EXPECT_EXIT(captureAll(), ::testing::KilledBySignal(SIGABRT), "does not fit");
}

namespace {

/// Every answer takes a while, in which others could be asked for.
class SlowCapturer : public ScreenCapturer {
public:
    bool preflightAccess() override { return true; }
    QCoro::Task<ShareableContent> shareableContent(ContentQuery) override {
        auto pause = pauseABit();
        co_await pause;
        ShareableContent answer = content;
        co_return answer;
    }
    QCoro::Task<QImage> screenshot(ContentFilter, StreamConfiguration configuration) override {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        most = std::max(most, ++inFlight);
        ++taken;
        auto pause = pauseABit();
        co_await pause;
        --inFlight;
        co_return plain(configuration.outputSize, 0xff445566U);
    }

    ShareableContent content;
    int taken = 0;
    int inFlight = 0;
    int most = 0;

private:
    static QCoro::Task<> pauseABit() {
        QTimer timer;
        timer.setSingleShot(true);
        timer.start(20);
        co_await timer;
    }
};

} // namespace

TEST_F(DisplaySnapshotStoreTest, TakesOnePictureAfterTheOther) {
    SlowCapturer capturer;
    capturer.content = m_capturer.content;
    const DisplaySnapshotList snapshots =
        await(DisplaySnapshotStore::captureAllDisplays({&capturer, &m_screens, ownIdentifier}));
    EXPECT_EQ(snapshots.size(), 2U);
    EXPECT_EQ(capturer.taken, 2);
    EXPECT_EQ(capturer.most, 1);
}

TEST_F(DisplaySnapshotStoreTest, ReadsTheScreensOnceTheContentIsThere) {
    SlowCapturer capturer;
    capturer.content = m_capturer.content;
    auto taking = DisplaySnapshotStore::captureAllDisplays({&capturer, &m_screens, ownIdentifier});
    m_screens.screens.pop_back();
    EXPECT_EQ(await(std::move(taking)).size(), 1U);
}

TEST(OwnApplicationWindows, AreThoseOfTheSameIdentifierInOrder) {
    ShareableContent content;
    content.windows = {
        windowOf(5, u"app.example.Other"_s), windowOf(9, ownIdentifier),        {2, std::nullopt},
        windowOf(1, ownIdentifier),          windowOf(3, u"app.example.own"_s), windowOf(4, {})};
    const std::vector<ShareableWindow> expected = {windowOf(9, ownIdentifier),
                                                   windowOf(1, ownIdentifier)};
    EXPECT_EQ(DisplaySnapshotStore::ownApplicationWindows(content, ownIdentifier), expected);
}

TEST(OwnApplicationWindows, AreNoneWithoutAnIdentifier) {
    ShareableContent content;
    content.windows = {windowOf(5, u"app.example.Other"_s), {2, std::nullopt}, windowOf(3, {})};
    EXPECT_TRUE(DisplaySnapshotStore::ownApplicationWindows(content, {}).empty());
}

TEST(SnapshotFor, FindsTheScreenAndThePlaceOnIt) {
    const DisplaySnapshotList list = {{{{0, 0}, {1440, 900}}, 2, plain({1, 1}, 1)},
                                      {{{1440, -180}, {1920, 1080}}, 1, plain({1, 1}, 2)},
                                      {{{0, 0}, {1440, 900}}, 1, plain({1, 1}, 3)}};
    struct Case {
        const char* name = nullptr;
        GlobalPoint point;
        std::size_t snapshot = 0;
        GlobalPoint local;
    };
    const Case cases[] = {
        {"on the first", {10, 20}, 0, {10, 20}},
        {"its lower-left corner", {0, 0}, 0, {0, 0}},
        {"on the second", {1500.5, 100}, 1, {60.5, 280}},
        {"the second's lower-left corner", {1440, -180}, 1, {0, 0}},
        {"on the shared border", {1440, 450}, 1, {0, 630}},
        {"on the first one's upper border", {10, 900}, 0, {10, 900}},
        {"above all", {2000, 5000}, 0, {2000, 5000}},
        {"left of all", {-30, -40}, 0, {-30, -40}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto place = DisplaySnapshotStore::snapshotFor(c.point, list);
        ASSERT_TRUE(place.has_value());
        EXPECT_EQ(place->snapshot, &list[c.snapshot]);
        EXPECT_EQ(place->localPoint, c.local);
    }
}

TEST(SnapshotFor, MeasuresFromTheFirstScreenWhereverItStands) {
    const DisplaySnapshotList list = {{{{1440, -180}, {1920, 1080}}, 1, plain({1, 1}, 1)}};
    const auto place = DisplaySnapshotStore::snapshotFor({0, 0}, list);
    ASSERT_TRUE(place.has_value());
    EXPECT_EQ(place->localPoint, (GlobalPoint{-1440, 180}));
}

TEST(SnapshotFor, FindsNothingInAnEmptyList) {
    EXPECT_FALSE(DisplaySnapshotStore::snapshotFor({0, 0}, {}).has_value());
}

} // namespace snapvane
