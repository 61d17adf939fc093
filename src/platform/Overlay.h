#pragma once

#include "platform/ScreenMapping.h"

#include <QCoroTask>
#include <QImage>
#include <QRegion>

#include <cstddef>
#include <memory>

namespace snapvane {

/// What one overlay surface is drawn on. All coordinates are native pixels of the surface's screen;
/// drawing is limited to the region that is being repainted. Valid only during `paintOverlay`.
class OverlayCanvas {
public:
    virtual ~OverlayCanvas() = default;

    /// Shows the desktop under the veil.
    virtual void veil(const PixelRect& area) = 0;
    /// Shows the desktop as it is.
    virtual void clear(const PixelRect& area) = 0;
    /// Blends a colour over what is there.
    virtual void fill(const PixelRect& area, const QColor& color) = 0;
    /// Blends a picture with premultiplied alpha over what is there, pixel for pixel.
    virtual void draw(PixelPoint topLeft, const QImage& image) = 0;
};

/// A press, move or release of the primary button; other buttons and the wheel are not reported.
struct OverlayPointerEvent {
    enum class Kind { Down, Moved, Dragged, Up };

    Kind kind = Kind::Moved;
    ScreenMapping::PointerPlace place;
};

/// A key press.
struct OverlayKeyEvent {
    /// Hardware key code in the numbering of stored shortcuts (53 is Escape); −1 for a key without
    /// one.
    int keyCode = -1;
    /// The key means "cancel" on this desktop, whatever its code.
    bool isCancelCommand = false;
};

/// Receives what happens on the surfaces of a session. Main thread. Every call but `paintOverlay`
/// may end the session, which means destroy it.
class OverlayClient {
public:
    virtual ~OverlayClient() = default;

    /// Draws the region of one surface that was asked to be repainted or that the server has lost.
    virtual void paintOverlay(std::size_t screenIndex, OverlayCanvas& canvas,
                              const QRegion& dirty) = 0;
    /// Presses and releases come at once. Motion comes when the display has worked off what was
    /// painted for the motion before, the newest position only, so that it never queues up.
    virtual void overlayPointerEvent(const OverlayPointerEvent& event) = 0;
    virtual void overlayKeyEvent(const OverlayKeyEvent& event) = 0;
    /// The desktop composites windows in another way than when the session was opened: it is to be
    /// opened anew.
    virtual void overlayOutdated() = 0;
    /// The desktop does not let the session have the keyboard and the pointer.
    virtual void overlayInputRefused(const QString& reason) = 0;
};

/// How a session's surfaces are to be.
struct OverlayOptions {
    ScreenList screens;
    /// Opacity of the black veil, 0 … 1.
    double dimAmount = 0;
    /// Place in the stacking order among the program's own surfaces.
    int level = 0;
};

/// One borderless surface a screen over everything, with the keyboard and the pointer. Opening a
/// session fixes what stands under the veil where the desktop knows no transparency. Destroying it
/// takes everything away; it is to be concealed first when a capture follows. Main thread.
class OverlaySession {
public:
    virtual ~OverlaySession() = default;

    /// Puts the surfaces, veiled all over, on every screen and takes the keyboard and the pointer.
    virtual void orderFront() = 0;
    /// Has the client paint a region (native pixels) of one surface, now.
    virtual void repaint(std::size_t screenIndex, const QRegion& region) = 0;
    /// Makes the surfaces show nothing at all, so that what a compositor still draws of them while
    /// they go does no harm.
    virtual void conceal() = 0;
};

/// Opens overlay sessions.
class OverlayHost {
public:
    virtual ~OverlayHost() = default;

    /// Nothing when the desktop cannot show an overlay at all; the reason is logged. The client
    /// must outlive the session.
    virtual std::unique_ptr<OverlaySession> open(const OverlayOptions& options,
                                                 OverlayClient& client) = 0;
    /// Waits until no menu, of whatever program, is on the glass at the pointer; 300 ms at most.
    virtual QCoro::Task<> menusClosed() = 0;
};

} // namespace snapvane
