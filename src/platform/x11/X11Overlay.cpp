#include "platform/x11/X11Overlay.h"

#include "base/Async.h"
#include "base/Log.h"
#include "platform/x11/OpenMenus.h"
#include "platform/x11/RootGrabber.h"
#include "platform/x11/X11OverlaySession.h"
#include "platform/x11/X11Screens.h"

#include <QCoroTimer>

#include <xcb/composite.h>
#include <xcb/xcb_cursor.h>
#include <xcb/xfixes.h>

namespace snapvane::x11 {

namespace {

using namespace std::chrono_literals;

constexpr auto menuPatience = 300ms;
constexpr auto menuPollInterval = 10ms;
// Without a compositor what stood under a menu is painted again by its program, which takes a
// moment.
constexpr auto uncoveredWindowsPaint = 40ms;

// Several frames of a slow compositor.
constexpr auto concealedLifetime = 500ms;

using Surfaces = X11OverlaySession::Surfaces;

QCoro::Task<> pauseFor(std::chrono::milliseconds duration) {
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(duration);
    co_await timer;
}

const Log& overlayLog() {
    static const Log log("Overlay");
    return log;
}

} // namespace

X11OverlayHost::X11OverlayHost(X11Screens& screens, RootGrabber& grabber)
    : m_screens(screens), m_grabber(grabber) {}

X11OverlayHost::~X11OverlayHost() {
    if (m_crosshair != XCB_NONE) {
        xcb_free_cursor(qtServer().connection, m_crosshair);
    }
}

std::unique_ptr<OverlaySession> X11OverlayHost::open(const OverlayOptions& options,
                                                     OverlayClient& client) {
    const Server server = qtServer();
    const bool capable =
        hasExtension(server, &xcb_composite_id) && hasExtension(server, &xcb_input_id) &&
        hasExtension(server, &xcb_xfixes_id) && RenderFormats::of(server).argb != XCB_NONE &&
        RenderFormats::of(server).root != XCB_NONE;
    if (!capable || options.screens.empty()) {
        overlayLog().error(QStringLiteral("The display server cannot show a selection overlay."));
        return nullptr;
    }
    return std::make_unique<X11OverlaySession>(
        server, options, client, crosshair(), [this](Surfaces surfaces) {
            const auto retired = std::make_shared<Surfaces>(std::move(surfaces));
            QTimer::singleShot(concealedLifetime, &m_retired, [retired, server = qtServer()] {
                retired->clear();
                xcb_flush(server.connection);
            });
        });
}

QCoro::Task<> X11OverlayHost::menusClosed() {
    const Server server = qtServer();
    const auto screens = m_screens.nativeFrames();
    bool seen = false;
    for (auto waited = 0ms; waited < menuPatience; waited += menuPollInterval) {
        if (!isMenuAtPointer(server, screens)) {
            break;
        }
        seen = true;
        auto pause = pauseFor(menuPollInterval);
        co_await pause;
    }
    if (seen && !hasCompositor(server)) {
        auto pause = pauseFor(uncoveredWindowsPaint);
        co_await pause;
    }
    RootGrabber* grabber = &m_grabber;
    auto glass = runInBackground([grabber, screens] {
        grabber->waitForGlass(screens);
        return true;
    });
    try {
        co_await glass;
    } catch (const std::exception& error) {
        // The selection can go on; the capture itself will report what is wrong.
        overlayLog().error(QString::fromUtf8(error.what()));
    }
}

xcb_cursor_t X11OverlayHost::crosshair() {
    if (m_crosshair != XCB_NONE) {
        return m_crosshair;
    }
    const Server server = qtServer();
    xcb_cursor_context_t* context = nullptr;
    auto* screen = const_cast<xcb_screen_t*>(server.screen);
    if (xcb_cursor_context_new(server.connection, screen, &context) >= 0) {
        m_crosshair = xcb_cursor_load_cursor(context, "crosshair");
        xcb_cursor_context_free(context);
    }
    return m_crosshair;
}

} // namespace snapvane::x11
