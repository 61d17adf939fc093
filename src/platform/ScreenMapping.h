#pragma once

#include "platform/Screens.h"

/// The one place where device and native pixels become global points and the other way round. Pure;
/// any thread.
///
/// A screen keeps its native upper-left corner as its corner in logical coordinates and only its
/// size is divided by its scale, as Qt does it; sizes do not round-trip through Qt's rounded
/// geometry (a screen 1366 pixels wide at a factor of 1.75 becomes 781 points and then 1367
/// pixels), so everything here starts from native geometry.
namespace snapvane::ScreenMapping {

/// What a platform knows of one screen before the spaces are laid out.
struct NativeScreen {
    std::uint32_t id = 0;
    QString name;
    DeviceRect nativeFrame;
    double backingScale = 1;
    /// What docks reserve at this screen's edges, in its native pixels.
    struct Reserved {
        int left = 0;
        int right = 0;
        int top = 0;
        int bottom = 0;
    };
    Reserved reserved = {};
};

/// Places the screens in global points. The first one is the primary: its lower-left corner becomes
/// the origin.
ScreenList layOut(const std::vector<NativeScreen>& screens);

/// The screen whose pixels include the position.
const Screen* screenAt(const ScreenList& screens, DevicePoint position);

/// What a pointer at a pixel means. `edge` is the place that a drag starts from or ends at: the
/// pixel's upper-left corner or, in a last column or row that no other screen's pixel adjoins, the
/// far edge itself, since the last column and row could not be selected otherwise. `inside` is the
/// pixel's lower-left corner, which always lies inside its screen.
struct PointerPlace {
    GlobalPoint edge;
    GlobalPoint inside;

    friend bool operator==(const PointerPlace&, const PointerPlace&) = default;
};

/// The place of a device position; a position on no screen counts as the nearest pixel of one.
/// `screens` must not be empty.
PointerPlace pointerPlace(const ScreenList& screens, DevicePoint position);

/// The area as pixels of the screen: each edge goes to the nearest pixel edge, halves away from the
/// screen's corner. Not clipped.
PixelRect pixelRect(const Screen& screen, const GlobalRect& area);

/// The pixels of a screen that a screenshot of `local` (points, relative to the lower-left corner
/// of the screen) with an output of `output` pixels shows: exactly that many, moved inside the
/// screen where rounding would put the last one beyond its border.
PixelRect sourcePixels(const Screen& screen, const GlobalRect& local, PixelSize output);

/// A vertical and a horizontal line across a whole screen, in its pixels.
struct CrossingLines {
    PixelRect vertical;
    PixelRect horizontal;

    friend bool operator==(const CrossingLines&, const CrossingLines&) = default;
};

/// The lines, `thickness` points thick, that cross at `local` (points, relative to the lower-left
/// corner of the screen). The place goes to the nearest corner of a pixel, halves away from zero.
/// The lines are centred there and fill whole pixels, those up and to the right of the place rather
/// than those on the other side: a line of one pixel runs through the very pixel that has `local`
/// as its lower-left corner. On a screen's border they stay inside.
CrossingLines linesThrough(const Screen& screen, GlobalPoint local, double thickness);

/// How many pixels a size in points makes at `scale` pixels a point, at least one each way.
PixelSize pixelSize(GlobalSize size, double scale);

/// Where the upper-left pixel of a picture goes whose lower-left corner is to be at `origin`.
PixelPoint upperLeftPixel(const Screen& screen, GlobalPoint origin, PixelSize picture);

/// The pixel of a picture of a whole screen, `height` pixels high, that has `local` (points,
/// relative to the lower-left corner of that screen) as its lower-left corner. May lie outside.
PixelPoint picturePixel(GlobalPoint local, double scale, int height);

/// Pixels of the screen in the display server's space.
DeviceRect deviceRect(const Screen& screen, const PixelRect& pixels);

} // namespace snapvane::ScreenMapping
