#include "platform/ScreenMapping.h"

#include "base/ProgramError.h"
#include "base/Rounding.h"

#include <algorithm>
#include <limits>

namespace snapvane::ScreenMapping {

namespace {

/// A screen's frame while y still points down from the native upper-left corner.
struct LogicalFrame {
    double left;
    double top;
    double width;
    double height;
};

LogicalFrame logicalFrame(const NativeScreen& screen) {
    return {static_cast<double>(screen.nativeFrame.origin.x),
            static_cast<double>(screen.nativeFrame.origin.y),
            screen.nativeFrame.size.width / screen.backingScale,
            screen.nativeFrame.size.height / screen.backingScale};
}

GlobalRect withoutReserved(const GlobalRect& frame, const NativeScreen& screen) {
    const double scale = screen.backingScale;
    const auto& reserved = screen.reserved;
    const double width = std::max(0.0, frame.width() - (reserved.left + reserved.right) / scale);
    const double height = std::max(0.0, frame.height() - (reserved.top + reserved.bottom) / scale);
    return {{frame.minX() + reserved.left / scale, frame.minY() + reserved.bottom / scale},
            {width, height}};
}

DevicePoint nearestInside(const DeviceRect& frame, DevicePoint position) {
    return {std::clamp(position.x, frame.origin.x, frame.origin.x + frame.size.width - 1),
            std::clamp(position.y, frame.origin.y, frame.origin.y + frame.size.height - 1)};
}

/// Pixels along one axis, counted from the left or the lower end.
struct Band {
    int start;
    int length;
};

/// The whole pixels of a line around the pixel boundary `middle`, of the nearest whole thickness;
/// some of the `count` pixels there are. An odd one more lies behind the boundary than before it.
Band bandAround(int middle, double thickness, int count) {
    const int pixels = std::max(1, roundedPixel(thickness));
    const int start = middle - pixels / 2;
    const int first = std::clamp(start, 0, count - 1);
    return {first, std::clamp(start + pixels, first + 1, count) - first};
}

long long squaredDistance(DevicePoint a, DevicePoint b) {
    const long long dx = a.x - b.x;
    const long long dy = a.y - b.y;
    return dx * dx + dy * dy;
}

const Screen& nearestScreen(const ScreenList& screens, DevicePoint position) {
    return *std::min_element(
        screens.begin(), screens.end(), [position](const Screen& a, const Screen& b) {
            return squaredDistance(nearestInside(a.nativeFrame, position), position) <
                   squaredDistance(nearestInside(b.nativeFrame, position), position);
        });
}

} // namespace

ScreenList layOut(const std::vector<NativeScreen>& screens) {
    ScreenList result;
    if (screens.empty()) {
        return result;
    }
    const LogicalFrame primary = logicalFrame(screens.front());
    for (const NativeScreen& native : screens) {
        const LogicalFrame logical = logicalFrame(native);
        Screen screen;
        screen.id = native.id;
        screen.name = native.name;
        screen.backingScale = native.backingScale;
        screen.nativeFrame = native.nativeFrame;
        screen.frame = {{logical.left - primary.left,
                         primary.top + primary.height - (logical.top + logical.height)},
                        {logical.width, logical.height}};
        screen.visibleFrame = withoutReserved(screen.frame, native);
        result.push_back(screen);
    }
    return result;
}

const Screen* screenAt(const ScreenList& screens, DevicePoint position) {
    const auto found =
        std::find_if(screens.begin(), screens.end(), [position](const Screen& screen) {
            return screen.nativeFrame.contains(position);
        });
    return found == screens.end() ? nullptr : &*found;
}

PointerPlace pointerPlace(const ScreenList& screens, DevicePoint position) {
    if (screens.empty()) {
        programError("a pointer place was asked for without any screen");
    }
    const Screen* under = screenAt(screens, position);
    const Screen& screen = under != nullptr ? *under : nearestScreen(screens, position);
    const DevicePoint pixel = nearestInside(screen.nativeFrame, position);
    const int column = pixel.x - screen.nativeFrame.origin.x;
    const int row = pixel.y - screen.nativeFrame.origin.y;
    const double scale = screen.backingScale;
    const double left = screen.frame.minX() + column / scale;
    const double top = screen.frame.maxY() - row / scale;

    const bool lastColumn = column == screen.nativeSize().width - 1 &&
                            screenAt(screens, {pixel.x + 1, pixel.y}) == nullptr;
    const bool lastRow = row == screen.nativeSize().height - 1 &&
                         screenAt(screens, {pixel.x, pixel.y + 1}) == nullptr;
    // Rounding may put the lower edge of the last row a hair below the screen.
    const double bottom = std::max(screen.frame.maxY() - (row + 1) / scale, screen.frame.minY());
    return {{lastColumn ? screen.frame.maxX() : left, lastRow ? screen.frame.minY() : top},
            {left, bottom}};
}

PixelRect pixelRect(const Screen& screen, const GlobalRect& area) {
    const double scale = screen.backingScale;
    const int left = roundedPixel((area.minX() - screen.frame.minX()) * scale);
    const int right = roundedPixel((area.maxX() - screen.frame.minX()) * scale);
    const int top = roundedPixel((screen.frame.maxY() - area.maxY()) * scale);
    const int bottom = roundedPixel((screen.frame.maxY() - area.minY()) * scale);
    return {left, top, right - left, bottom - top};
}

PixelRect sourcePixels(const Screen& screen, const GlobalRect& local, PixelSize output) {
    const double scale = screen.backingScale;
    const PixelSize size = screen.nativeSize();
    const int left = roundedPixel(local.minX() * scale);
    const int top = roundedPixel((screen.frame.height() - local.maxY()) * scale);
    return {std::clamp(left, 0, std::max(0, size.width - output.width)),
            std::clamp(top, 0, std::max(0, size.height - output.height)), output.width,
            output.height};
}

CrossingLines linesThrough(const Screen& screen, GlobalPoint local, double thickness) {
    const double scale = screen.backingScale;
    const PixelSize size = screen.nativeSize();
    const Band columns = bandAround(roundedPixel(scale * local.x), scale * thickness, size.width);
    const Band rows = bandAround(roundedPixel(scale * local.y), scale * thickness, size.height);
    return {{columns.start, 0, columns.length, size.height},
            {0, size.height - rows.start - rows.length, size.width, rows.length}};
}

PixelSize pixelSize(GlobalSize size, double scale) {
    return {std::max(1, roundedPixel(scale * size.width)),
            std::max(1, roundedPixel(scale * size.height))};
}

PixelPoint upperLeftPixel(const Screen& screen, GlobalPoint origin, PixelSize picture) {
    const double scale = screen.backingScale;
    return {roundedPixel((origin.x - screen.frame.minX()) * scale),
            roundedPixel((screen.frame.maxY() - origin.y) * scale) - picture.height};
}

PixelPoint picturePixel(GlobalPoint local, double scale, int height) {
    // Places as far away as pixels can be counted stay there.
    const std::int64_t row = std::int64_t{height} - 1 - roundedPixel(scale * local.y);
    return {roundedPixel(scale * local.x),
            static_cast<int>(std::clamp<std::int64_t>(row, std::numeric_limits<int>::min(),
                                                      std::numeric_limits<int>::max()))};
}

DeviceRect deviceRect(const Screen& screen, const PixelRect& pixels) {
    return {{screen.nativeFrame.origin.x + pixels.x, screen.nativeFrame.origin.y + pixels.y},
            {pixels.width, pixels.height}};
}

} // namespace snapvane::ScreenMapping
