#include "platform/x11/X11ScreenPanel.h"

#include "base/Log.h"
#include "platform/PlatformError.h"
#include "platform/x11/PanelWindow.h"
#include "platform/x11/RootGrabber.h"
#include "platform/x11/RoundedShape.h"
#include "platform/x11/StackingOrder.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace snapvane::x11 {

namespace {

/// Black where the screen cannot be read: the panel is to be seen all the same.
QImage pictureOf(RootGrabber& grabber, const Screen& screen, const ScreenList& screens) {
    std::vector<DeviceRect> frames;
    for (const Screen& other : screens) {
        frames.push_back(other.nativeFrame);
    }
    try {
        return grabber.grab(screen.nativeFrame, frames);
    } catch (const PlatformError& error) {
        Log("Panels").error(QString::fromUtf8(error.what()));
    }
    QImage black(screen.nativeSize().width, screen.nativeSize().height, QImage::Format_RGB32);
    black.fill(Qt::black);
    return black;
}

/// The screen as Qt has it, whose scale the window then has from the beginning.
QScreen* qtScreen(const Screen& screen) {
    const QPoint corner(screen.nativeFrame.origin.x, screen.nativeFrame.origin.y);
    for (QScreen* candidate : QGuiApplication::screens()) {
        if (candidate->geometry().topLeft() == corner) {
            return candidate;
        }
    }
    return nullptr;
}

/// The least whole number of points that covers the pixels.
QSize coveringSize(const Screen& screen) {
    const auto points = [&screen](int pixels) {
        return static_cast<int>(std::ceil(pixels / screen.backingScale));
    };
    return {points(screen.nativeSize().width), points(screen.nativeSize().height)};
}

} // namespace

X11ScreenPanel::X11ScreenPanel(RootGrabber& grabber, const ScreenList& screens,
                               std::unique_ptr<QWidget> content, const Screen& screen,
                               const ScreenPanelOptions& options)
    : m_screen(screen), m_options(options),
      m_translucent(CompositorWatch::showsTransparency(qtServer())), m_content(std::move(content)) {
    if (QScreen* here = qtScreen(screen)) {
        m_content->setScreen(here);
    }
    m_content->resize(coveringSize(screen));
    m_content->move(screen.nativeFrame.origin.x, screen.nativeFrame.origin.y);
    if (m_translucent) {
        m_content->setWindowOpacity(0);
    } else {
        m_content->setAttribute(Qt::WA_OpaquePaintEvent);
        m_backdrop = pictureOf(grabber, screen, screens);
        m_backdrop.setDevicePixelRatio(screen.backingScale);
    }
    PanelWindow::prepare(*m_content, options.name, PanelInput::PointerAndKeyboard, m_translucent);
    setCompositorHints(qtServer(), window());
    m_focus = std::make_unique<BorrowedFocus>(qtServer(), window());
    m_compositorWatch.emplace(qtServer(), window(), m_translucent, [this] {
        if (const auto outdated = std::exchange(m_options.outdated, nullptr)) {
            outdated();
        }
    });
}

X11ScreenPanel::~X11ScreenPanel() {
    StackingOrder::remove(window());
    m_compositorWatch.reset();
    m_focus.reset();
    conceal();
    m_content->hide();
}

void X11ScreenPanel::setOpacity(double opacity) {
    if (m_translucent) {
        m_content->setWindowOpacity(opacity);
        // Qt sends it no sooner than it has something else to send.
        xcb_flush(qtServer().connection);
    }
}

void X11ScreenPanel::orderFront() {
    PanelWindow::place(*m_content, m_screen, {0, 0});
    cutToScreen();
    m_content->show();
    PanelWindow::place(*m_content, m_screen, {0, 0});
    StackingOrder::raise(qtServer(), window(), m_options.level);
    xcb_flush(qtServer().connection);
}

void X11ScreenPanel::takeFocus() {
    m_focus->take();
}

bool X11ScreenPanel::hasFocus() const {
    return m_focus->isHeld();
}

xcb_window_t X11ScreenPanel::window() const {
    return PanelWindow::of(*m_content);
}

void X11ScreenPanel::conceal() {
    if (!m_translucent) {
        return;
    }
    // A compositor that fades windows out, or lags behind the opacity, goes on showing what a
    // window held when it went: let that be nothing.
    const Server server = qtServer();
    const std::uint32_t transparent = 0;
    xcb_change_window_attributes(server.connection, window(), XCB_CW_BACK_PIXEL, &transparent);
    xcb_clear_area(server.connection, 0, window(), 0, 0, 0, 0);
    roundTrip(server);
}

void X11ScreenPanel::cutToScreen() {
    setRoundedShape(qtServer(), window(), m_screen.nativeSize(), 0, ShapeEdge::Centres);
}

} // namespace snapvane::x11
