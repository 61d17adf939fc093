#include "capture/CaptureService.h"

#include "platform/ScreenMapping.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>

namespace snapvane {

namespace {

const GlobalRect left = {{0, 0}, {1920, 1080}};
const GlobalRect right = {{1920, 0}, {1280, 1024}};

std::uint32_t chosenDisplay(const GlobalRect& rect, const std::vector<GlobalRect>& frames) {
    std::vector<ShareableDisplay> displays;
    displays.reserve(frames.size());
    for (const GlobalRect& frame : frames) {
        displays.push_back({static_cast<std::uint32_t>(displays.size() + 1), frame});
    }
    const auto chosen = CaptureService::display(rect, displays);
    return chosen ? chosen->id : 0;
}

Screen screenOf(const GlobalRect& frame, double scale) {
    Screen screen;
    screen.frame = frame;
    screen.backingScale = scale;
    return screen;
}

PixelSize outputOf(double width, double height, double scale) {
    return CaptureService::configuration({{0, 0}, {width, height}}, {1, left}, scale).outputSize;
}

} // namespace

TEST(CaptureServiceRules, ChooseTheDisplayThatHoldsTheCentre) {
    struct Case {
        const char* name;
        GlobalRect rect;
        std::vector<GlobalRect> frames;
        std::uint32_t chosen;
    };
    const GlobalRect beyondTheGap = {{2500, 0}, {1000, 1000}};
    const Case cases[] = {
        {"on the first", {{10, 10}, {50, 50}}, {left, right}, 1},
        {"on the second", {{2000, 10}, {50, 50}}, {left, right}, 2},
        {"centre on the second, overlapping the first", {{1800, 10}, {400, 50}}, {left, right}, 2},
        {"centre on the first, overlapping the second", {{1600, 10}, {400, 50}}, {left, right}, 1},
        {"centre on the shared border", {{1820, 10}, {200, 50}}, {left, right}, 2},
        {"both hold the centre: list order", {{10, 10}, {50, 50}}, {left, left}, 1},
        {"centre in a gap, touching both", {{1800, 10}, {900, 50}}, {left, beyondTheGap}, 1},
        {"the same in the other order", {{1800, 10}, {900, 50}}, {beyondTheGap, left}, 1},
        {"centre below, overlapping one", {{2000, -100}, {50, 150}}, {left, right}, 2},
        {"on the top border only", {{10, 1080}, {50, 50}}, {left, right}, 0},
        {"nowhere", {{9000, 9000}, {50, 50}}, {left, right}, 0},
        {"no displays", {{10, 10}, {50, 50}}, {}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(chosenDisplay(c.rect, c.frames), c.chosen);
    }
}

TEST(CaptureServiceRules, TakeTheScaleOfTheFirstScreenThatOverlaps) {
    const ScreenList screens = {screenOf(left, 1.25), screenOf(right, 2)};
    EXPECT_EQ(CaptureService::backingScaleFactor({{10, 10}, {50, 50}}, screens), 1.25);
    EXPECT_EQ(CaptureService::backingScaleFactor({{2000, 10}, {50, 50}}, screens), 2);
    EXPECT_EQ(CaptureService::backingScaleFactor({{1900, 10}, {500, 50}}, screens), 1.25);
    EXPECT_EQ(CaptureService::backingScaleFactor({{1920, 10}, {500, 50}}, screens), 2);
}

TEST(CaptureServiceRules, FallBackToTheMainScreensScaleAndThenTo2) {
    const GlobalRect nowhere = {{9000, 9000}, {50, 50}};
    EXPECT_EQ(
        CaptureService::backingScaleFactor(nowhere, {screenOf(left, 1.75), screenOf(right, 1)}),
        1.75);
    EXPECT_EQ(CaptureService::backingScaleFactor(nowhere, {}), 2.0);
    EXPECT_EQ(CaptureService::backingScaleFactor(left, {}), 2.0);
}

TEST(CaptureServiceRules, RoundTheOutputHalvesAwayFromZeroAndToOnePixelAtLeast) {
    EXPECT_EQ(outputOf(101, 100, 1.5), (PixelSize{152, 150}));
    EXPECT_EQ(outputOf(100, 100, 2), (PixelSize{200, 200}));
    EXPECT_EQ(outputOf(4, 4, 1), (PixelSize{4, 4}));
    EXPECT_EQ(outputOf(4.4, 4.5, 1), (PixelSize{4, 5}));
    EXPECT_EQ(outputOf(4, 5, 0.1), (PixelSize{1, 1}));
    EXPECT_EQ(outputOf(4, 4, 0), (PixelSize{1, 1}));
}

TEST(CaptureServiceRulesDeathTest, StopAtAnOutputSizeThatIsNoNumber) {
    EXPECT_EXIT(outputOf(100, 100, std::numeric_limits<double>::infinity()),
                ::testing::KilledBySignal(SIGABRT), "not finite");
    EXPECT_EXIT(outputOf(100, 100, 1e300), ::testing::KilledBySignal(SIGABRT), "does not fit");
}

TEST(CaptureServiceRules, ConfigureTheScreenshotRelativeToTheDisplay) {
    const auto configuration = CaptureService::configuration({{2000, 30.5}, {101, 50}},
                                                             {7, {{1920, -56}, {1280, 1024}}}, 1.5);
    EXPECT_EQ(configuration.sourceRect, (GlobalRect{{80, 86.5}, {101, 50}}));
    EXPECT_EQ(configuration.outputSize, (PixelSize{152, 75}));
    EXPECT_FALSE(configuration.showsCursor);
    EXPECT_FALSE(configuration.scalesToFit);
}

TEST(CaptureServiceRules, AskForExactlyThePixelsThatWereDragged) {
    std::mt19937 random(11);
    const double scales[] = {1, 1.25, 1.5, 1.75, 2};
    for (int i = 0; i < 2000; ++i) {
        const double scale = scales[random() % 5];
        const ScreenList screens = ScreenMapping::layOut(
            {{1, {}, {{0, 0}, {1366, 768}}, scales[random() % 5], {}},
             {2, {}, {{1366, static_cast<int>(random() % 500)}, {1367, 901}}, scale, {}}});
        const Screen& screen = screens[1];
        const auto pixel = [&random, &screen] {
            const PixelSize size = screen.nativeSize();
            return DevicePoint{
                screen.nativeFrame.origin.x + static_cast<int>(random()) % size.width,
                screen.nativeFrame.origin.y + static_cast<int>(random()) % size.height};
        };
        const DevicePoint a = pixel();
        const DevicePoint b = pixel();
        if (!screen.nativeFrame.contains(a) || !screen.nativeFrame.contains(b)) {
            continue; // The generator gives negative numbers as well.
        }
        const GlobalRect drag = rectBetween(ScreenMapping::pointerPlace(screens, a).edge,
                                            ScreenMapping::pointerPlace(screens, b).edge);
        if (drag.isEmpty()) {
            continue;
        }
        SCOPED_TRACE(::testing::Message() << "run " << i << " scale " << scale);
        const auto configuration =
            CaptureService::configuration(drag, {screen.id, screen.frame}, scale);
        EXPECT_EQ(
            ScreenMapping::sourcePixels(screen, configuration.sourceRect, configuration.outputSize),
            ScreenMapping::pixelRect(screen, drag));
    }
}

} // namespace snapvane
