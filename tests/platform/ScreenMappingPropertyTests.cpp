#include "platform/ScreenMapping.h"

#include "Layouts.h"

#include <gtest/gtest.h>

#include <random>

namespace snapvane {

namespace {

/// Random desktops of one to three screens in a row, of the awkward sizes and scales that occur.
class Desktops {
public:
    int number(int from, int to) { return std::uniform_int_distribution(from, to)(m_random); }

    ScreenList next() {
        const int widths[] = {1366, 1367, 1920, 2560, 801, 37};
        const double scales[] = {1, 1.25, 1.5, 1.75, 2};
        std::vector<ScreenMapping::NativeScreen> screens;
        const int count = number(1, 3);
        int left = number(-500, 500);
        for (int i = 0; i < count; ++i) {
            const PixelSize size = {widths[number(0, 5)], number(31, 1201)};
            screens.push_back(nativeScreen(static_cast<std::uint32_t>(i + 1),
                                           {{left, number(-300, 300)}, size},
                                           scales[number(0, 4)]));
            left += size.width;
        }
        std::rotate(screens.begin(), screens.begin() + number(0, count - 1), screens.end());
        return ScreenMapping::layOut(screens);
    }

    DevicePoint pixelOf(const Screen& screen) {
        const DevicePoint origin = screen.nativeFrame.origin;
        const PixelSize size = screen.nativeSize();
        // Borders more often than chance would have them.
        const int x =
            number(0, 3) == 0 ? (number(0, 1) * (size.width - 1)) : number(0, size.width - 1);
        const int y =
            number(0, 3) == 0 ? (number(0, 1) * (size.height - 1)) : number(0, size.height - 1);
        return {origin.x + x, origin.y + y};
    }

private:
    std::mt19937 m_random{20250302};
};

/// The pixel edge of the screen that a drag to the pixel goes to, along one axis.
int edgeOf(int pixel, int size, bool adjoined) {
    return pixel == size - 1 && !adjoined ? size : pixel;
}

PixelPoint edgePixel(const ScreenList& screens, const Screen& screen, DevicePoint position) {
    const DevicePoint origin = screen.nativeFrame.origin;
    const auto taken = [&screens](DevicePoint p) {
        return ScreenMapping::screenAt(screens, p) != nullptr;
    };
    return {edgeOf(position.x - origin.x, screen.nativeSize().width,
                   taken({position.x + 1, position.y})),
            edgeOf(position.y - origin.y, screen.nativeSize().height,
                   taken({position.x, position.y + 1}))};
}

} // namespace

TEST(ScreenMappingProperties, ADragSelectsExactlyThePixelsBetweenItsEnds) {
    Desktops desktops;
    for (int run = 0; run < 20'000; ++run) {
        const ScreenList screens = desktops.next();
        const auto& screen = screens[static_cast<std::size_t>(
            desktops.number(0, static_cast<int>(screens.size()) - 1))];
        const DevicePoint a = desktops.pixelOf(screen);
        const DevicePoint b = desktops.pixelOf(screen);
        const GlobalRect drag = rectBetween(ScreenMapping::pointerPlace(screens, a).edge,
                                            ScreenMapping::pointerPlace(screens, b).edge);
        const PixelPoint from = edgePixel(screens, screen, a);
        const PixelPoint to = edgePixel(screens, screen, b);
        const PixelRect expected = {std::min(from.x, to.x), std::min(from.y, to.y),
                                    std::abs(from.x - to.x), std::abs(from.y - to.y)};
        ASSERT_EQ(ScreenMapping::pixelRect(screen, drag), expected)
            << "run " << run << ", scale " << screen.backingScale;
    }
}

TEST(ScreenMappingProperties, TheInsidePlaceLiesInItsPixelAndScreen) {
    Desktops desktops;
    for (int run = 0; run < 20'000; ++run) {
        const ScreenList screens = desktops.next();
        for (const Screen& screen : screens) {
            const DevicePoint position = desktops.pixelOf(screen);
            const GlobalPoint inside = ScreenMapping::pointerPlace(screens, position).inside;
            const auto found = screenContaining(screens, inside);
            ASSERT_TRUE(found.has_value()) << "run " << run << ", scale " << screen.backingScale;
            ASSERT_EQ(found->id, screen.id) << "run " << run;
            // A rectangle as large as the pixel, standing on that point, is that pixel.
            const double side = 1 / screen.backingScale;
            const PixelRect pixel = ScreenMapping::pixelRect(screen, {inside, {side, side}});
            ASSERT_EQ(ScreenMapping::deviceRect(screen, pixel), (DeviceRect{position, {1, 1}}))
                << "run " << run << ", scale " << screen.backingScale;
        }
    }
}

TEST(ScreenMappingProperties, ScreenshotsStayInsideTheirScreen) {
    Desktops desktops;
    for (int run = 0; run < 20'000; ++run) {
        const Screen screen = desktops.next().front();
        const PixelSize size = screen.nativeSize();
        const PixelSize output = {desktops.number(1, size.width), desktops.number(1, size.height)};
        const GlobalRect local = {
            {desktops.number(-100, 3000) / 1.7, desktops.number(-100, 1500) / 1.7},
            {output.width / screen.backingScale, output.height / screen.backingScale}};
        const PixelRect source = ScreenMapping::sourcePixels(screen, local, output);
        ASSERT_EQ(source.width, output.width);
        ASSERT_EQ(source.height, output.height);
        ASSERT_TRUE(QRect(0, 0, size.width, size.height).contains(source.toQRect())) << run;
    }
}

} // namespace snapvane
