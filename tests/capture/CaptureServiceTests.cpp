#include "capture/CaptureService.h"

#include "base/Await.h"
#include "capture/CaptureServiceError.h"
#include "platform/PlatformError.h"
#include "platform/null/NullPlatform.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

using Case = CaptureServiceError::Case;

const GlobalRect displayA = {{0, 0}, {1920, 1080}};
const GlobalRect displayB = {{1920, 56}, {1280, 1024}};

QImage pattern(PixelSize size) {
    QImage image(size.width, size.height, QImage::Format_RGB32);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            image.setPixel(x, y, qRgb(x & 255, y & 255, (x + y) & 255));
        }
    }
    return image;
}

/// Two screens side by side and a capturer that draws a pattern of the size it is asked for.
class CaptureServiceTest : public ::testing::Test {
protected:
    CaptureServiceTest() {
        m_capturer.render = [](const null::NullCapturer::Shot& shot) {
            return pattern(shot.configuration.outputSize);
        };
        setScales(1, 1);
    }

    void setScales(double a, double b) {
        m_screens.screens.resize(2);
        m_screens.screens[0].frame = displayA;
        m_screens.screens[0].backingScale = a;
        m_screens.screens[1].frame = displayB;
        m_screens.screens[1].backingScale = b;
    }

    CaptureResult capture(const GlobalRect& rect) {
        m_capturer.content.displays = m_displays;
        return await(CaptureService::captureRegion(rect, {&m_capturer, &m_screens}));
    }

    void expectFailure(const GlobalRect& rect, Case errorCase, const char* text) {
        try {
            capture(rect);
            ADD_FAILURE() << "the capture succeeded";
        } catch (const CaptureServiceError& error) {
            EXPECT_EQ(error.errorCase(), errorCase);
            EXPECT_EQ(error.localizedDescription(), QString::fromLatin1(text));
        }
    }

    void expectTooSmall(const GlobalRect& rect) {
        expectFailure(rect, Case::emptySelection, "The selection area is too small.");
    }

    StreamConfiguration configuration() const { return m_capturer.shots.back().configuration; }

    std::vector<ShareableDisplay> m_displays = {{11, displayA}, {22, displayB}};
    null::NullCapturer m_capturer;
    null::NullScreens m_screens;
};

} // namespace

TEST_F(CaptureServiceTest, RejectsASmallRectangleBeforeItAsksThePlatform) {
    m_capturer.contentFailure = std::make_exception_ptr(PlatformError(QStringLiteral("later")));
    const GlobalSize sizes[] = {{3.9, 100},  {100, 3.9},  {3.999999, 4}, {4, 3.999999}, {0, 0},
                                {-3.9, 100}, {100, -3.9}, {0, 100},      {-3.9, -3.9}};
    for (const GlobalSize& size : sizes) {
        SCOPED_TRACE(::testing::Message() << size.width << " x " << size.height);
        expectTooSmall({{100, 100}, size});
    }
    EXPECT_TRUE(m_capturer.queries.empty());
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(CaptureServiceTest, AcceptsFourByFourPoints) {
    EXPECT_EQ(capture({{100, 100}, {4, 4}}).globalCaptureRect, (GlobalRect{{100, 100}, {4, 4}}));
    EXPECT_EQ(configuration().outputSize, (PixelSize{4, 4}));
}

TEST_F(CaptureServiceTest, AsksOnceAndForNoWindows) {
    capture({{100, 100}, {40, 40}});
    ASSERT_EQ(m_capturer.queries.size(), 1U);
    EXPECT_FALSE(m_capturer.queries.front().excludeDesktopWindows);
    EXPECT_TRUE(m_capturer.queries.front().onScreenWindowsOnly);
    EXPECT_FALSE(m_capturer.queries.front().listsWindows);
    ASSERT_EQ(m_capturer.shots.size(), 1U);
    EXPECT_EQ(m_capturer.shots.front().filter.displayId, 11U);
    EXPECT_TRUE(m_capturer.shots.front().filter.excludedWindows.empty());
    EXPECT_FALSE(configuration().showsCursor);
    EXPECT_FALSE(configuration().scalesToFit);
}

TEST_F(CaptureServiceTest, PassesAFailingQueryThroughUnchanged) {
    m_displays.clear();
    m_capturer.contentFailure = std::make_exception_ptr(PlatformError(QStringLiteral("refused")));
    try {
        capture({{9000, 9000}, {40, 40}});
        FAIL() << "the capture succeeded";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(), QStringLiteral("refused"));
    }
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(CaptureServiceTest, FailsWithoutDisplays) {
    m_displays.clear();
    expectFailure({{100, 100}, {40, 40}}, Case::noDisplays, "No displays were found for capture.");
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(CaptureServiceTest, FailsOutsideEveryDisplay) {
    for (const GlobalRect& rect :
         {GlobalRect{{9000, 9000}, {40, 40}}, GlobalRect{{100, 1080}, {40, 40}},
          GlobalRect{{-40, 100}, {40, 40}}}) {
        expectFailure(rect, Case::noMatchingDisplay, "The selection does not intersect a display.");
    }
    EXPECT_TRUE(m_capturer.shots.empty());
}

TEST_F(CaptureServiceTest, RejectsWhatClippingLeavesTooSmall) {
    // A strip of two points on each border of the two displays together.
    expectTooSmall({{-98, 100}, {100, 40}});
    expectTooSmall({{3198, 100}, {100, 40}});
    expectTooSmall({{100, -38}, {100, 40}});
    expectTooSmall({{100, 1078}, {100, 40}});
    expectTooSmall({{-96.1, 100}, {100, 40}});
    EXPECT_TRUE(m_capturer.shots.empty());
    EXPECT_EQ(capture({{-96, 100}, {100, 40}}).globalCaptureRect, (GlobalRect{{0, 100}, {4, 40}}));
}

TEST_F(CaptureServiceTest, PassesAFailingScreenshotThroughUnchanged) {
    m_capturer.screenshotFailure = std::make_exception_ptr(PlatformError(QStringLiteral("gone")));
    try {
        capture({{100, 100}, {40, 40}});
        FAIL() << "the capture succeeded";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(), QStringLiteral("gone"));
    }
}

TEST_F(CaptureServiceTest, FailsWhenThereIsNothingToCopy) {
    m_capturer.render = [](const null::NullCapturer::Shot&) { return QImage(); };
    expectFailure({{100, 100}, {40, 40}}, Case::captureFailed, "Could not copy captured image.");
}

TEST_F(CaptureServiceTest, FailsWhenThePictureCannotBeEncoded) {
    // Wider than the encoder's library takes.
    m_capturer.render = [](const null::NullCapturer::Shot&) {
        QImage image(1'000'001, 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        return image;
    };
    expectFailure({{100, 100}, {40, 40}}, Case::pngEncodingFailed, "Could not encode PNG data.");
}

TEST_F(CaptureServiceTest, GivesAPictureOfTwicePixelsAtScale2) {
    setScales(2, 1);
    const CaptureResult result = capture({{100, 200}, {100, 100}});
    EXPECT_EQ(QImage::fromData(result.pngData).size(), QSize(200, 200));
    EXPECT_EQ(result.image.bitmap.size(), QSize(200, 200));
    EXPECT_EQ(result.image.size, (GlobalSize{100, 100}));
    EXPECT_EQ(configuration().sourceRect, (GlobalRect{{100, 200}, {100, 100}}));
}

TEST_F(CaptureServiceTest, RoundsPixelsHalfAwayFromZero) {
    setScales(1.5, 1);
    const CaptureResult result = capture({{100, 200}, {101, 50}});
    EXPECT_EQ(result.image.bitmap.size(), QSize(152, 75));
    EXPECT_EQ(result.image.size, (GlobalSize{101, 50}));
}

TEST_F(CaptureServiceTest, ClipsToTheDisplayThatHoldsTheCentre) {
    setScales(1, 2);
    const CaptureResult result = capture({{1900, 100}, {200, 60}});
    EXPECT_EQ(m_capturer.shots.back().filter.displayId, 22U);
    EXPECT_EQ(result.globalCaptureRect, (GlobalRect{{1920, 100}, {180, 60}}));
    EXPECT_EQ(configuration().sourceRect, (GlobalRect{{0, 44}, {180, 60}}));
    EXPECT_EQ(result.image.size, (GlobalSize{180, 60}));
    EXPECT_EQ(result.image.bitmap.size(), QSize(360, 120));
}

TEST_F(CaptureServiceTest, TakesTheFirstDisplayThatACentreInAGapTouches) {
    m_displays = {{11, displayA}, {22, {{2500, 0}, {1280, 1024}}}};
    const CaptureResult result = capture({{1800, 100}, {800, 60}});
    EXPECT_EQ(m_capturer.shots.back().filter.displayId, 11U);
    EXPECT_EQ(result.globalCaptureRect, (GlobalRect{{1800, 100}, {120, 60}}));
}

TEST_F(CaptureServiceTest, TakesScale2WithoutAnyScreen) {
    m_screens.screens.clear();
    EXPECT_EQ(capture({{100, 100}, {30, 20}}).image.bitmap.size(), QSize(60, 40));
}

TEST_F(CaptureServiceTest, TakesTheMainScreensScaleWhereNoScreenOverlaps) {
    setScales(1.25, 1);
    m_displays = {{33, {{9000, 9000}, {400, 400}}}};
    EXPECT_EQ(capture({{9100, 9100}, {40, 20}}).image.bitmap.size(), QSize(50, 25));
}

TEST_F(CaptureServiceTest, TakesANegativeSizeForTheSameArea) {
    const GlobalRect expected = {{100, 200}, {40, 30}};
    for (const GlobalRect& rect :
         {GlobalRect{{140, 200}, {-40, 30}}, GlobalRect{{100, 230}, {40, -30}},
          GlobalRect{{140, 230}, {-40, -30}}}) {
        EXPECT_EQ(capture(rect).globalCaptureRect, expected);
        EXPECT_EQ(configuration().sourceRect, expected);
    }
}

TEST_F(CaptureServiceTest, GivesThePixelsOfTheScreenshot) {
    const QDateTime before = QDateTime::currentDateTime();
    const CaptureResult result = capture({{100, 200}, {70, 50}});
    const QDateTime after = QDateTime::currentDateTime();
    const QImage expected = pattern({70, 50});
    EXPECT_EQ(QImage::fromData(result.pngData).convertToFormat(QImage::Format_RGB32), expected);
    EXPECT_EQ(result.image.bitmap.convertToFormat(QImage::Format_RGB32), expected);
    EXPECT_GE(result.capturedAt, before);
    EXPECT_LE(result.capturedAt, after);
}

TEST_F(CaptureServiceTest, ServesCapturesThatOverlap) {
    m_capturer.content.displays = m_displays;
    auto first = CaptureService::captureRegion({{0, 0}, {50, 40}}, {&m_capturer, &m_screens});
    auto second = CaptureService::captureRegion({{0, 0}, {60, 30}}, {&m_capturer, &m_screens});
    EXPECT_EQ(await(std::move(second)).image.bitmap.size(), QSize(60, 30));
    EXPECT_EQ(await(std::move(first)).image.bitmap.size(), QSize(50, 40));
}

} // namespace snapvane
