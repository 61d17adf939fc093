#pragma once

#include "base/Geometry.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace snapvane {

/// One screen as it stood when the list was read.
struct Screen {
    /// Stable while the screen is connected.
    std::uint32_t id = 0;
    QString name;
    /// Global points: the native size divided by the scale, unrounded.
    GlobalRect frame;
    /// Global points: the frame less what docks and panels on this screen reserve.
    GlobalRect visibleFrame;
    /// Native pixels per point.
    double backingScale = 1;
    /// Where the screen's pixels lie in the display server's space.
    DeviceRect nativeFrame;

    PixelSize nativeSize() const { return nativeFrame.size; }

    friend bool operator==(const Screen&, const Screen&) = default;
};

using ScreenList = std::vector<Screen>;

/// The screens of the desktop. Main thread; lists are values and may be passed to any thread.
class Screens : public QObject {
    Q_OBJECT

public:
    /// The primary screen first, then in the platform's own order. May be empty.
    virtual ScreenList list() = 0;
    /// Where the pointer is: the lower-left corner of the pixel under it, which lies inside that
    /// pixel's screen.
    virtual GlobalPoint pointerLocation() = 0;

    /// The primary screen, or nothing when there is no screen at all.
    std::optional<Screen> mainScreen();

Q_SIGNALS:
    /// The list has changed; emitted once for a burst of changes.
    void changed();
};

/// The first screen whose frame contains the point.
std::optional<Screen> screenContaining(const ScreenList& screens, GlobalPoint point);

} // namespace snapvane
