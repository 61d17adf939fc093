#include "selection/SelectionMagnifierController.h"

#include "capture/DisplaySnapshotStore.h"
#include "platform/ScreenMapping.h"
#include "selection/AppPreferences.h"

#include <algorithm>

namespace snapvane {

namespace {

// In points.
constexpr double distanceToPointer = 18;
constexpr double margin = 8;

/// One axis of `origin`.
double besidePointer(double pointer, double extent, double low, double high) {
    double place = pointer + distanceToPointer;
    if (place + extent > high - margin) {
        place = pointer - extent - distanceToPointer;
    }
    return std::max(place, low + margin);
}

} // namespace

void SelectionMagnifierController::prepare(const DisplaySnapshotList& snapshots) {
    m_snapshots = snapshots;
    m_magnifierView.reloadStyle();
    if (!m_window) {
        m_window = m_sprites.createImage({QStringLiteral("Snapvane Magnifier"), level});
    }
}

void SelectionMagnifierController::update(GlobalPoint globalPoint, GlobalSize selectionSize) {
    if (!m_preferences.showSelectionMagnifier()) {
        if (m_window) {
            m_window->hide();
        }
        return;
    }
    if (!m_window || m_snapshots.empty()) {
        return;
    }
    const auto found = DisplaySnapshotStore::snapshotFor(globalPoint, m_snapshots);
    m_magnifierView.snapshot = found ? std::optional(*found->snapshot) : std::nullopt;
    m_magnifierView.localPoint = found ? found->localPoint : GlobalPoint();
    m_magnifierView.globalPoint = globalPoint;
    m_magnifierView.selectionSize = selectionSize;
    positionWindow(globalPoint);
}

void SelectionMagnifierController::dismiss() {
    if (m_window) {
        m_window->hide();
    }
    m_snapshots.clear();
    m_magnifierView.snapshot.reset();
}

GlobalPoint SelectionMagnifierController::origin(GlobalPoint pointer,
                                                 const GlobalRect& visibleFrame) {
    const GlobalSize size = SelectionMagnifierView::size;
    return {besidePointer(pointer.x, size.width, visibleFrame.minX(), visibleFrame.maxX()),
            besidePointer(pointer.y, size.height, visibleFrame.minY(), visibleFrame.maxY())};
}

void SelectionMagnifierController::positionWindow(GlobalPoint pointer) {
    const ScreenList screens = m_screens.list();
    if (screens.empty()) {
        m_window->hide();
        return;
    }
    const Screen screen = screenContaining(screens, pointer).value_or(screens.front());
    const SpritePicture& picture =
        m_magnifierView.draw(screen.backingScale, m_window->isTranslucent());
    const PixelSize size = {picture.image.width(), picture.image.height()};
    m_window->showAt(
        screen, ScreenMapping::upperLeftPixel(screen, origin(pointer, screen.visibleFrame), size),
        picture);
}

} // namespace snapvane
