#include "platform/ScreenMapping.h"

#include "Layouts.h"

#include <gtest/gtest.h>

#include <csignal>

namespace snapvane {

namespace {

using ScreenMapping::layOut;
using ScreenMapping::NativeScreen;
using ScreenMapping::pixelRect;
using ScreenMapping::pointerPlace;
using ScreenMapping::sourcePixels;

struct Layout {
    const char* name;
    std::vector<NativeScreen> screens;
    std::vector<GlobalRect> frames;
};

const Layout layouts[] = {
    {"none", {}, {}},
    {"one", {nativeScreen(1, {{0, 0}, {1920, 1080}})}, {{{0, 0}, {1920, 1080}}}},
    {"one not in the corner",
     {nativeScreen(1, {{50, 70}, {1920, 1080}})},
     {{{0, 0}, {1920, 1080}}}},
    {"side by side",
     {nativeScreen(1, {{0, 0}, {1920, 1080}}), nativeScreen(2, {{1920, 0}, {1280, 1024}})},
     {{{0, 0}, {1920, 1080}}, {{1920, 56}, {1280, 1024}}}},
    {"primary on the right",
     {nativeScreen(2, {{1280, 0}, {1920, 1080}}), nativeScreen(1, {{0, 56}, {1280, 1024}})},
     {{{0, 0}, {1920, 1080}}, {{-1280, 0}, {1280, 1024}}}},
    {"stacked",
     {nativeScreen(1, {{0, 1024}, {1920, 1080}}), nativeScreen(2, {{320, 0}, {1280, 1024}})},
     {{{0, 0}, {1920, 1080}}, {{320, 1080}, {1280, 1024}}}},
    {"below the primary",
     {nativeScreen(1, {{0, 0}, {1920, 1080}}), nativeScreen(2, {{0, 1080}, {1920, 1080}})},
     {{{0, 0}, {1920, 1080}}, {{0, -1080}, {1920, 1080}}}},
    {"beyond the origin",
     {nativeScreen(1, {{0, 0}, {1920, 1080}}), nativeScreen(2, {{-1280, -200}, {1280, 1024}})},
     {{{0, 0}, {1920, 1080}}, {{-1280, 256}, {1280, 1024}}}},
    {"dense primary",
     {nativeScreen(1, {{0, 0}, {3840, 2160}}, 2), nativeScreen(2, {{3840, 0}, {1920, 1080}}, 1)},
     {{{0, 0}, {1920, 1080}}, {{3840, 0}, {1920, 1080}}}},
    {"dense second, lower",
     {nativeScreen(1, {{0, 0}, {1920, 1080}}, 1),
      nativeScreen(2, {{1920, 100}, {3000, 2000}}, 1.25)},
     {{{0, 0}, {1920, 1080}}, {{1920, 1080.0 - 100 - 1600}, {2400, 1600}}}},
};

const double scales[] = {1, 1.25, 1.5, 1.75, 2};

} // namespace

TEST(ScreenMapping, PlacesScreensInGlobalPoints) {
    for (const Layout& layout : layouts) {
        SCOPED_TRACE(layout.name);
        const ScreenList screens = layOut(layout.screens);
        ASSERT_EQ(screens.size(), layout.frames.size());
        for (std::size_t i = 0; i < screens.size(); ++i) {
            EXPECT_EQ(screens[i].frame, layout.frames[i]) << i;
            EXPECT_EQ(screens[i].visibleFrame, layout.frames[i]) << i;
            EXPECT_EQ(screens[i].id, layout.screens[i].id);
            EXPECT_EQ(screens[i].name, layout.screens[i].name);
            EXPECT_EQ(screens[i].nativeFrame, layout.screens[i].nativeFrame);
            EXPECT_EQ(screens[i].backingScale, layout.screens[i].backingScale);
        }
    }
}

TEST(ScreenMapping, DividesSizesWithoutRounding) {
    for (const double scale : scales) {
        SCOPED_TRACE(scale);
        const Screen screen = layOut({nativeScreen(1, {{0, 0}, {1366, 769}}, scale)}).front();
        EXPECT_DOUBLE_EQ(screen.frame.width(), 1366 / scale);
        EXPECT_DOUBLE_EQ(screen.frame.height(), 769 / scale);
        EXPECT_EQ(pixelRect(screen, screen.frame), (PixelRect{0, 0, 1366, 769}));
    }
}

TEST(ScreenMapping, LeavesDocksOutOfTheVisibleFrame) {
    NativeScreen native = nativeScreen(1, {{100, 0}, {1000, 800}}, 2);
    native.reserved = {20, 40, 60, 80};
    const Screen screen = layOut({nativeScreen(9, {{0, 0}, {100, 800}}, 2), native})[1];
    EXPECT_EQ(screen.frame, (GlobalRect{{100, 0}, {500, 400}}));
    EXPECT_EQ(screen.visibleFrame, (GlobalRect{{110, 40}, {470, 330}}));
}

TEST(ScreenMapping, LeavesNothingVisibleWhereDocksTakeAll) {
    NativeScreen native = nativeScreen(1, {{0, 0}, {100, 100}});
    native.reserved = {60, 60, 99, 99};
    const Screen screen = layOut({native}).front();
    EXPECT_EQ(screen.visibleFrame.size, (GlobalSize{0, 0}));
}

TEST(ScreenMapping, FindsTheScreenOfAPixel) {
    const ScreenList screens =
        layOut({nativeScreen(1, {{0, 0}, {100, 100}}), nativeScreen(2, {{100, 20}, {50, 50}})});
    const auto idAt = [&screens](int x, int y) {
        const Screen* screen = ScreenMapping::screenAt(screens, {x, y});
        return screen != nullptr ? screen->id : 0;
    };
    EXPECT_EQ(idAt(0, 0), 1U);
    EXPECT_EQ(idAt(99, 99), 1U);
    EXPECT_EQ(idAt(100, 20), 2U);
    EXPECT_EQ(idAt(149, 69), 2U);
    EXPECT_EQ(idAt(100, 19), 0U);
    EXPECT_EQ(idAt(150, 30), 0U);
    EXPECT_EQ(idAt(0, 100), 0U);
    EXPECT_EQ(idAt(-1, 0), 0U);
}

TEST(ScreenMapping, TellsAPixelsPlaces) {
    // Pixels of the primary and, from column 100 on and 20 lower, of a screen of scale 2.
    const ScreenList screens = layOut(
        {nativeScreen(1, {{0, 0}, {100, 100}}, 1), nativeScreen(2, {{100, 20}, {50, 50}}, 2)});
    ASSERT_EQ(screens[1].frame, (GlobalRect{{100, 55}, {25, 25}}));
    struct Case {
        const char* name = nullptr;
        DevicePoint position;
        GlobalPoint edge;
        GlobalPoint inside;
    };
    const Case cases[] = {
        {"first pixel", {0, 0}, {0, 100}, {0, 99}},
        {"in the middle", {30, 40}, {30, 60}, {30, 59}},
        {"last column, nobody beside it", {99, 10}, {100, 90}, {99, 89}},
        {"last column, a screen beside it", {99, 30}, {99, 70}, {99, 69}},
        {"last row", {30, 99}, {30, 0}, {30, 0}},
        {"last corner", {99, 99}, {100, 0}, {99, 0}},
        {"first pixel of the second", {100, 20}, {100, 80}, {100, 79.5}},
        {"second pixel of the second", {101, 21}, {100.5, 79.5}, {100.5, 79}},
        {"last column of the second", {149, 30}, {125, 75}, {124.5, 74.5}},
        {"last corner of the second", {149, 69}, {125, 55}, {124.5, 55}},
        {"left of everything", {-40, 30}, {0, 70}, {0, 69}},
        {"above everything", {30, -7}, {30, 100}, {30, 99}},
        {"below everything", {30, 400}, {30, 0}, {30, 0}},
        {"right of everything", {900, 30}, {125, 75}, {124.5, 74.5}},
        {"in the notch, nearer to the second", {110, 17}, {105, 80}, {105, 79.5}},
        {"in the notch, nearer to the first", {102, 5}, {100, 95}, {99, 94}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto place = pointerPlace(screens, c.position);
        EXPECT_EQ(place.edge.x, c.edge.x);
        EXPECT_EQ(place.edge.y, c.edge.y);
        EXPECT_EQ(place.inside.x, c.inside.x);
        EXPECT_EQ(place.inside.y, c.inside.y);
    }
}

TEST(ScreenMapping, AdjoinsTheScreenBelowAsWell) {
    const ScreenList screens =
        layOut({nativeScreen(1, {{0, 0}, {100, 100}}), nativeScreen(2, {{0, 100}, {50, 50}})});
    EXPECT_EQ(pointerPlace(screens, {10, 99}).edge, (GlobalPoint{10, 1}));
    EXPECT_EQ(pointerPlace(screens, {60, 99}).edge, (GlobalPoint{60, 0}));
    EXPECT_EQ(pointerPlace(screens, {49, 120}).edge, (GlobalPoint{50, -20}));
}

TEST(ScreenMappingDeathTest, HasNoPlacesWithoutScreens) {
    EXPECT_EXIT(pointerPlace({}, {0, 0}), ::testing::KilledBySignal(SIGABRT), "without any screen");
}

TEST(ScreenMapping, TurnsAreasIntoPixels) {
    const Screen screen = layOut(
        {nativeScreen(9, {{0, 0}, {200, 200}}), nativeScreen(1, {{200, 0}, {300, 150}}, 1.5)})[1];
    ASSERT_EQ(screen.frame, (GlobalRect{{200, 100}, {200, 100}}));
    EXPECT_EQ(pixelRect(screen, screen.frame), (PixelRect{0, 0, 300, 150}));
    EXPECT_EQ(pixelRect(screen, {{210, 110}, {20, 30}}), (PixelRect{15, 90, 30, 45}));
    EXPECT_EQ(pixelRect(screen, {{230, 140}, {-20, -30}}), (PixelRect{15, 90, 30, 45}));
    // Halves: 1 point is 1.5 pixels.
    EXPECT_EQ(pixelRect(screen, {{201, 198}, {2, 1}}), (PixelRect{2, 2, 3, 1}));
    EXPECT_EQ(pixelRect(screen, {{199, 201}, {2, 1}}), (PixelRect{-2, -3, 4, 1}));
    EXPECT_EQ(pixelRect(screen, {{190, 90}, {20, 20}}), (PixelRect{-15, 135, 30, 30}));
}

TEST(ScreenMapping, FindsThePixelsOfAScreenshot) {
    const Screen screen = layOut({nativeScreen(1, {{0, 0}, {300, 150}}, 1.5)}).front();
    EXPECT_EQ(sourcePixels(screen, {{0, 0}, {200, 100}}, {300, 150}), (PixelRect{0, 0, 300, 150}));
    EXPECT_EQ(sourcePixels(screen, {{10, 10}, {20, 30}}, {30, 45}), (PixelRect{15, 90, 30, 45}));
    // 0.6 and 101.6 of 150 rows: what is rounded beyond a border is moved back inside.
    EXPECT_EQ(sourcePixels(screen, {{0.4, 0}, {199.6, 100}}, {299, 150}),
              (PixelRect{1, 0, 299, 150}));
    EXPECT_EQ(sourcePixels(screen, {{0.4, 0}, {199.6, 100}}, {300, 150}),
              (PixelRect{0, 0, 300, 150}));
    EXPECT_EQ(sourcePixels(screen, {{100, -2}, {10, 10}}, {15, 15}), (PixelRect{150, 135, 15, 15}));
    EXPECT_EQ(sourcePixels(screen, {{-5, 95}, {10, 10}}, {15, 15}), (PixelRect{0, 0, 15, 15}));
}

TEST(ScreenMapping, MovesAScreensPixelsToTheirPlaceOnTheDesktop) {
    const Screen screen = layOut({nativeScreen(1, {{-300, 40}, {300, 150}}, 1.5)}).front();
    EXPECT_EQ(ScreenMapping::deviceRect(screen, {10, 20, 30, 40}),
              (DeviceRect{{-290, 60}, {30, 40}}));
}

} // namespace snapvane
