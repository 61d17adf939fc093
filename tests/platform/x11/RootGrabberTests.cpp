#include "platform/x11/RootGrabber.h"

#include "X11TestDesktop.h"
#include "platform/PlatformError.h"
#include "support/QtPrinting.h"
#include "support/TestPattern.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace snapvane {

namespace {

const std::vector<DeviceRect> screens = {{{0, 0}, {1280, 800}}, {{1280, 0}, {1280, 800}}};

/// How many pixels are not those of the root window's pattern at the area's place.
int wrongPixels(const QImage& image, const DeviceRect& area) {
    if (image.size() != QSize(area.size.width, area.size.height)) {
        return -1;
    }
    int wrong = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb expected = testing::patternPixel(area.origin.x + x, area.origin.y + y);
            wrong += (image.pixel(x, y) & 0xffffffU) == expected ? 0 : 1;
        }
    }
    return wrong;
}

} // namespace

TEST(RootGrabber, ReadsExactlyThePixelsOfTheArea) {
    x11::RootGrabber grabber;
    const DeviceRect areas[] = {{{0, 0}, {1, 1}},         {{17, 23}, {333, 111}},
                                {{2559, 799}, {1, 1}},    {{1200, 300}, {160, 50}},
                                {{1280, 0}, {1280, 800}}, {{0, 0}, {2560, 800}}};
    for (const DeviceRect& area : areas) {
        SCOPED_TRACE(::testing::Message() << area.size.width << " x " << area.size.height);
        EXPECT_EQ(wrongPixels(grabber.grab(area, screens), area), 0);
    }
}

TEST(RootGrabber, DoesNotOverwriteAPictureThatIsStillUsed) {
    x11::RootGrabber grabber;
    const DeviceRect first = {{10, 10}, {400, 300}};
    const DeviceRect second = {{900, 400}, {400, 300}};
    const QImage kept = grabber.grab(first, screens);
    const QImage later = grabber.grab(second, screens);
    grabber.trim();
    const QImage last = grabber.grab(first, screens);
    EXPECT_EQ(wrongPixels(kept, first), 0);
    EXPECT_EQ(wrongPixels(later, second), 0);
    EXPECT_EQ(wrongPixels(last, first), 0);
}

TEST(RootGrabber, ServesThreadsAtTheSameTime) {
    x11::RootGrabber grabber;
    std::atomic<int> wrong = 0;
    constexpr int threadCount = 4;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&grabber, &wrong, t] {
            for (int i = 0; i < 10; ++i) {
                const DeviceRect area = {{t * 300 + i, i * 7}, {150 + 20 * t, 120 + 10 * i}};
                const QImage image = grabber.grab(area, screens);
                wrong += wrongPixels(image, area) == 0 ? 0 : 1;
                grabber.trim();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(RootGrabber, LeavesItsPicturesWhenItGoes) {
    const DeviceRect area = {{10, 10}, {400, 300}};
    QImage kept;
    {
        x11::RootGrabber grabber;
        kept = grabber.grab(area, screens);
    }
    EXPECT_EQ(wrongPixels(kept, area), 0);
}

TEST(RootGrabber, SaysThatTheServerRefuses) {
    x11::RootGrabber grabber;
    try {
        grabber.grab({{2500, 0}, {100, 10}}, screens);
        FAIL() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  QStringLiteral("The display server did not let the screen be read."));
    }
    const DeviceRect area = {{10, 10}, {40, 30}};
    EXPECT_EQ(wrongPixels(grabber.grab(area, screens), area), 0);
}

TEST(RootGrabber, SaysThatTheServerCannotBeReached) {
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":987654");
    x11::RootGrabber grabber;
    try {
        grabber.grab({{0, 0}, {10, 10}}, screens);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  QStringLiteral("The display server cannot be reached."));
    }
    qputenv("DISPLAY", display);
}

} // namespace snapvane
