#include "selection/SelectionOverlayWindow.h"

#include "capture/ScreenCoordinateConverter.h"

namespace snapvane {

SelectionOverlayWindow::SelectionOverlayWindow(OverlayHost& host, const Settings& settings)
    : m_host(host), m_settings(settings),
      m_view(ScreenCoordinateConverter::unionFrameOfAllScreens(settings.screens)) {
    m_view.setNeedsDisplay = [this] { scheduleDisplay(); };
}

SelectionOverlayWindow::~SelectionOverlayWindow() = default;

bool SelectionOverlayWindow::open() {
    m_pictures = currentPictures();
    m_session = m_host.open(OverlayOptions{m_settings.screens, m_settings.dimAmount, level}, *this);
    return m_session != nullptr;
}

void SelectionOverlayWindow::makeKeyAndOrderFront() {
    if (m_session) {
        m_session->orderFront();
    }
}

void SelectionOverlayWindow::orderOut() {
    if (m_session) {
        m_session->conceal();
        m_session.reset();
    }
}

void SelectionOverlayWindow::paintOverlay(std::size_t screenIndex, OverlayCanvas& canvas,
                                          const QRegion& dirty) {
    m_pictures.at(screenIndex).paint(canvas, dirty);
}

void SelectionOverlayWindow::overlayPointerEvent(const OverlayPointerEvent& event) {
    switch (event.kind) {
    case OverlayPointerEvent::Kind::Down:
        m_view.mouseDown(event.place);
        break;
    case OverlayPointerEvent::Kind::Dragged:
        m_view.mouseDragged(event.place);
        break;
    case OverlayPointerEvent::Kind::Moved:
        m_view.mouseMoved(event.place);
        break;
    case OverlayPointerEvent::Kind::Up:
        m_view.mouseUp();
        break;
    }
}

void SelectionOverlayWindow::overlayKeyEvent(const OverlayKeyEvent& event) {
    if (event.isCancelCommand) {
        m_view.cancelOperation();
    } else {
        m_view.keyDown(event.keyCode);
    }
}

void SelectionOverlayWindow::overlayOutdated() {
    if (onOutdated) {
        onOutdated();
    }
}

void SelectionOverlayWindow::overlayInputRefused(const QString& reason) {
    if (onInputRefused) {
        onInputRefused(reason);
    }
}

std::vector<SelectionPicture> SelectionOverlayWindow::currentPictures() const {
    std::vector<SelectionPicture> pictures;
    for (const Screen& screen : m_settings.screens) {
        pictures.push_back(m_view.picture(screen));
    }
    return pictures;
}

void SelectionOverlayWindow::scheduleDisplay() {
    if (std::exchange(m_displayScheduled, true)) {
        return;
    }
    // After the events that are here already, so that a burst of motion is painted once.
    QMetaObject::invokeMethod(
        &m_context, [this] { display(); }, Qt::QueuedConnection);
}

void SelectionOverlayWindow::display() {
    m_displayScheduled = false;
    if (!m_session) {
        return;
    }
    const auto before = std::exchange(m_pictures, currentPictures());
    for (std::size_t i = 0; i < m_pictures.size(); ++i) {
        const QRegion changed = SelectionPicture::difference(before[i], m_pictures[i]);
        if (!changed.isEmpty()) {
            m_session->repaint(i, changed);
        }
    }
}

} // namespace snapvane
