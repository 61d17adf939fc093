#include "selection/SelectionOverlayView.h"

namespace snapvane {

namespace {

constexpr int escapeKeyCode = 53;

/// Points; both sides of a selection have at least this.
constexpr double minimumSide = 4;

} // namespace

void SelectionOverlayView::mouseDown(const ScreenMapping::PointerPlace& place) {
    m_dragStart = place.edge;
    m_currentSelection = {};
    m_isDragging = true;
    requestDisplay();
    reportPointer(place.inside);
}

void SelectionOverlayView::mouseDragged(const ScreenMapping::PointerPlace& place) {
    if (!m_dragStart) {
        return;
    }
    m_currentSelection = rectBetween(*m_dragStart, place.edge);
    requestDisplay();
    reportPointer(place.inside);
}

void SelectionOverlayView::mouseMoved(const ScreenMapping::PointerPlace& place) {
    reportPointer(place.inside);
}

void SelectionOverlayView::mouseUp() {
    if (!m_isDragging) {
        return;
    }
    const GlobalRect selection = m_currentSelection.standardized();
    m_isDragging = false;
    m_dragStart.reset();
    m_currentSelection = {};
    requestDisplay();
    if (selection.width() < minimumSide || selection.height() < minimumSide) {
        // A click or a sliver ends the session like Escape; it is not a second try.
        cancelOperation();
    } else if (delegate != nullptr) {
        delegate->selectionOverlayViewDidComplete(*this, selection);
    }
}

bool SelectionOverlayView::keyDown(int keyCode) {
    if (keyCode != escapeKeyCode) {
        return false;
    }
    cancelOperation();
    return true;
}

void SelectionOverlayView::cancelOperation() {
    if (delegate != nullptr) {
        delegate->selectionOverlayViewDidCancel(*this);
    }
}

SelectionPicture SelectionOverlayView::picture(const Screen& screen) const {
    return SelectionPicture::of(screen, m_isDragging ? m_currentSelection : GlobalRect(), m_bounds,
                                selectionBorderWidth);
}

void SelectionOverlayView::reportPointer(GlobalPoint point) const {
    if (onPointerChange) {
        onPointerChange(point, m_isDragging ? m_currentSelection.size : GlobalSize());
    }
}

void SelectionOverlayView::requestDisplay() const {
    if (setNeedsDisplay) {
        setNeedsDisplay();
    }
}

} // namespace snapvane
