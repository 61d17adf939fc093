#pragma once

#include <QRect>

/// The two spaces of the program, with a type each. Only platform/ScreenMapping.h converts between
/// them; every other file deals in one of them.
///
/// Global points: double-precision points, origin at the lower-left corner of the primary screen,
/// y upwards. Native pixels: the pixels of one screen, integers, origin at its upper-left corner, y
/// downwards. Device pixels are native pixels of the whole desktop, as the display server counts
/// them, y downwards; they occur only where the desktop has such a space.
namespace snapvane {

struct GlobalPoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const GlobalPoint&, const GlobalPoint&) = default;
};

struct GlobalSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const GlobalSize&, const GlobalSize&) = default;
};

/// A rectangle in global points. A negative size is allowed and means the same area as the
/// standardised rectangle: every accessor answers for that area.
struct GlobalRect {
    GlobalPoint origin;
    GlobalSize size;

    double width() const;
    double height() const;
    double minX() const;
    double midX() const;
    double maxX() const;
    double minY() const;
    double midY() const;
    double maxY() const;

    /// True when the area has no width or no height.
    bool isEmpty() const;
    /// The same area with a non-negative size.
    GlobalRect standardized() const;
    /// Moved by the given distances.
    GlobalRect offsetBy(double dx, double dy) const;
    /// Half open: points on the left and bottom borders are inside, those on the right and top
    /// borders are not.
    bool contains(GlobalPoint point) const;
    /// True when the two areas share a non-empty area.
    bool intersects(const GlobalRect& other) const;
    /// The shared area, or the zero rectangle when there is none.
    GlobalRect intersection(const GlobalRect& other) const;
    /// The smallest rectangle around both.
    GlobalRect unionWith(const GlobalRect& other) const;

    friend bool operator==(const GlobalRect&, const GlobalRect&) = default;
};

/// The rectangle between two opposite corners, whichever way they were given.
GlobalRect rectBetween(GlobalPoint a, GlobalPoint b);

struct PixelPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct PixelSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// Native pixels of one screen: columns x … x + width − 1, rows y … y + height − 1.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool isEmpty() const { return width <= 0 || height <= 0; }
    QRect toQRect() const { return {x, y, width, height}; }
    static PixelRect fromQRect(const QRect& rect) {
        return {rect.x(), rect.y(), rect.width(), rect.height()};
    }

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// A position in the display server's own space over all screens, y downwards.
struct DevicePoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const DevicePoint&, const DevicePoint&) = default;
};

/// An area in the display server's own space over all screens, y downwards.
struct DeviceRect {
    DevicePoint origin;
    PixelSize size;

    bool contains(DevicePoint point) const;

    friend bool operator==(const DeviceRect&, const DeviceRect&) = default;
};

} // namespace snapvane
