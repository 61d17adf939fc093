#pragma once

#include "platform/x11/X11Connection.h"

#include "platform/ScreenMapping.h"

#include <array>

namespace snapvane::x11 {

/// A dock's claim on the edges of the X screen, as in the property _NET_WM_STRUT_PARTIAL: how far
/// it reaches in from each edge, and over which span of that edge (both ends included).
struct Strut {
    enum Field {
        Left,
        Right,
        Top,
        Bottom,
        LeftStart,
        LeftEnd,
        RightStart,
        RightEnd,
        TopStart,
        TopEnd,
        BottomStart,
        BottomEnd,
        FieldCount
    };

    std::array<std::uint32_t, FieldCount> fields = {};
};

/// What the strut takes from one screen, in that screen's pixels. A strut counts from the edges of
/// the whole X screen (`rootSize`), so that on an inner edge it covers other screens first. Pure.
ScreenMapping::NativeScreen::Reserved reservedBy(const Strut& strut, const DeviceRect& screen,
                                                 PixelSize rootSize);

/// Notes on each screen what the docks that the window manager lists reserve there. The work area
/// that window managers publish spans all screens and is of no use with more than one.
void reserveDockEdges(const Server& server, std::vector<ScreenMapping::NativeScreen>& screens);

} // namespace snapvane::x11
