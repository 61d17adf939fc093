#pragma once

#include "platform/Overlay.h"
#include "selection/SelectionPicture.h"

#include <functional>
#include <optional>

namespace snapvane {

class SelectionOverlayView;

/// Receives how a selection ends. Either call may destroy the view.
class SelectionOverlayViewDelegate {
public:
    virtual ~SelectionOverlayViewDelegate() = default;

    /// A drag of at least the minimum size has ended; global points.
    virtual void selectionOverlayViewDidComplete(SelectionOverlayView& view,
                                                 const GlobalRect& rect) = 0;
    virtual void selectionOverlayViewDidCancel(SelectionOverlayView& view) = 0;
};

/// The selection as a small state machine in global points: idle, dragging, over. It knows no
/// window; SelectionOverlayWindow feeds it and shows what it describes. Made anew for each session.
/// Main thread.
class SelectionOverlayView {
public:
    /// `bounds` is the union of all screens.
    explicit SelectionOverlayView(const GlobalRect& bounds) : m_bounds(bounds) {}

    /// Not owned; may be null, in which case the selection ends without a word.
    SelectionOverlayViewDelegate* delegate = nullptr;
    /// Told of every pointer position, with the size of the selection while dragging, else zero.
    std::function<void(GlobalPoint, GlobalSize)> onPointerChange;
    /// Asks for the surfaces to be brought up to date.
    std::function<void()> setNeedsDisplay;

    /// Width of the outline in points.
    static constexpr double selectionBorderWidth = 1.5;

    const GlobalRect& bounds() const { return m_bounds; }
    const std::optional<GlobalPoint>& dragStart() const { return m_dragStart; }
    const GlobalRect& currentSelection() const { return m_currentSelection; }
    bool isDragging() const { return m_isDragging; }

    bool acceptsFirstResponder() const { return true; }
    void mouseDown(const ScreenMapping::PointerPlace& place);
    void mouseDragged(const ScreenMapping::PointerPlace& place);
    void mouseMoved(const ScreenMapping::PointerPlace& place);
    void mouseUp();
    /// True when the key meant something.
    bool keyDown(int keyCode);
    void cancelOperation();

    /// What a screen's surface shows now.
    SelectionPicture picture(const Screen& screen) const;

private:
    void reportPointer(GlobalPoint point) const;
    void requestDisplay() const;

    GlobalRect m_bounds;
    std::optional<GlobalPoint> m_dragStart;
    GlobalRect m_currentSelection;
    bool m_isDragging = false;
};

} // namespace snapvane
