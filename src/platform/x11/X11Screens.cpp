#include "platform/x11/X11Screens.h"

#include "platform/x11/ReservedEdges.h"
#include "platform/x11/Xcb.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/randr.h>

namespace snapvane::x11 {

namespace {

/// Qt's scale factor for the monitor; Qt names its screens as RandR names the monitors.
double scaleOf(const QString& name, DevicePoint nativeTopLeft) {
    const auto screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        if (screen->name() == name) {
            return screen->devicePixelRatio();
        }
    }
    for (const QScreen* screen : screens) {
        // Qt leaves the upper-left corner of a screen unscaled.
        if (screen->geometry().topLeft() == QPoint(nativeTopLeft.x, nativeTopLeft.y)) {
            return screen->devicePixelRatio();
        }
    }
    return screens.isEmpty() ? 1.0 : screens.front()->devicePixelRatio();
}

QString atomName(const Server& server, xcb_get_atom_name_cookie_t cookie) {
    const auto reply = owned(xcb_get_atom_name_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return {};
    }
    return QString::fromUtf8(xcb_get_atom_name_name(reply.get()),
                             xcb_get_atom_name_name_length(reply.get()));
}

bool liesWithin(const DeviceRect& inner, const DeviceRect& outer) {
    const DevicePoint last = {inner.origin.x + inner.size.width - 1,
                              inner.origin.y + inner.size.height - 1};
    return outer.contains(inner.origin) && outer.contains(last);
}

/// True when another monitor shows all that this one shows; of equal ones the first counts.
bool isMirror(const std::vector<Monitor>& monitors, std::size_t index) {
    const DeviceRect& frame = monitors[index].screen.nativeFrame;
    for (std::size_t other = 0; other < monitors.size(); ++other) {
        const DeviceRect& otherFrame = monitors[other].screen.nativeFrame;
        const bool within = other != index && liesWithin(frame, otherFrame);
        if (within && (frame != otherFrame || other < index)) {
            return true;
        }
    }
    return false;
}

/// RandR 1.5 and later know monitors, which need not be outputs.
bool knowsMonitors(const Server& server) {
    if (!hasExtension(server, &xcb_randr_id)) {
        return false;
    }
    const auto cookie = xcb_randr_query_version(server.connection, 1, 5);
    const auto reply = owned(xcb_randr_query_version_reply(server.connection, cookie, nullptr));
    return reply && (reply->major_version > 1 || reply->minor_version >= 5);
}

std::vector<Monitor> monitorsFromRandr(const Server& server) {
    std::vector<Monitor> monitors;
    const auto cookie = xcb_randr_get_monitors(server.connection, server.root(), 1);
    const auto reply = owned(xcb_randr_get_monitors_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return monitors;
    }
    std::vector<xcb_get_atom_name_cookie_t> names;
    auto infos = xcb_randr_get_monitors_monitors_iterator(reply.get());
    for (; infos.rem > 0; xcb_randr_monitor_info_next(&infos)) {
        const xcb_randr_monitor_info_t& info = *infos.data;
        Monitor monitor;
        monitor.isPrimary = info.primary != 0;
        monitor.screen.id = info.name;
        monitor.screen.nativeFrame = {{info.x, info.y}, {info.width, info.height}};
        monitors.push_back(monitor);
        names.push_back(xcb_get_atom_name(server.connection, info.name));
    }
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        monitors[i].screen.name = atomName(server, names[i]);
    }
    std::erase_if(monitors, [](const Monitor& monitor) {
        const PixelSize size = monitor.screen.nativeFrame.size;
        return size.width < 1 || size.height < 1;
    });
    return monitors;
}

/// Where RandR tells of no monitor the whole X screen is one.
Monitor wholeRoot(const Server& server) {
    Monitor monitor;
    const auto cookie = xcb_get_geometry(server.connection, server.root());
    const auto reply = owned(xcb_get_geometry_reply(server.connection, cookie, nullptr));
    if (reply) {
        monitor.screen.nativeFrame = {{0, 0}, {reply->width, reply->height}};
    }
    return monitor;
}

std::vector<ScreenMapping::NativeScreen> readScreens(const Server& server) {
    static const bool monitorsKnown = knowsMonitors(server);
    std::vector<Monitor> monitors =
        monitorsKnown ? monitorsFromRandr(server) : std::vector<Monitor>();
    if (monitors.empty()) {
        monitors.push_back(wholeRoot(server));
    }
    for (Monitor& monitor : monitors) {
        monitor.screen.backingScale =
            scaleOf(monitor.screen.name, monitor.screen.nativeFrame.origin);
    }
    return primaryFirst(std::move(monitors));
}

} // namespace

std::vector<ScreenMapping::NativeScreen> primaryFirst(std::vector<Monitor> monitors) {
    auto primary = std::find_if(monitors.begin(), monitors.end(),
                                [](const Monitor& monitor) { return monitor.isPrimary; });
    if (primary == monitors.end()) {
        primary = std::find_if(monitors.begin(), monitors.end(), [](const Monitor& monitor) {
            return monitor.screen.nativeFrame.origin == DevicePoint{0, 0};
        });
    }
    if (primary != monitors.end()) {
        std::rotate(monitors.begin(), primary, std::next(primary));
    }
    std::vector<ScreenMapping::NativeScreen> screens;
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        if (!isMirror(monitors, i)) {
            screens.emplace_back(monitors[i].screen);
        }
    }
    return screens;
}

X11Screens::X11Screens() : m_server(qtServer()) {
    if (hasExtension(m_server, &xcb_randr_id)) {
        m_firstRandrEvent = xcb_get_extension_data(m_server.connection, &xcb_randr_id)->first_event;
    }
    m_announcement.setSingleShot(true);
    connect(&m_announcement, &QTimer::timeout, this, &X11Screens::announceChange);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &X11Screens::noteChange);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &X11Screens::noteChange);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &X11Screens::noteChange);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Screens::~X11Screens() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

ScreenList X11Screens::list() {
    if (m_stale) {
        auto screens = readScreens(m_server);
        reserveDockEdges(m_server, screens);
        m_list = ScreenMapping::layOut(screens);
        m_stale = false;
        if (m_announced.empty()) {
            m_announced = m_list;
        }
    }
    return m_list;
}

GlobalPoint X11Screens::pointerLocation() {
    const auto cookie = xcb_query_pointer(m_server.connection, m_server.root());
    const auto reply = owned(xcb_query_pointer_reply(m_server.connection, cookie, nullptr));
    const ScreenList screens = list();
    if (!reply || screens.empty()) {
        return {};
    }
    return ScreenMapping::pointerPlace(screens, {reply->root_x, reply->root_y}).inside;
}

std::vector<DeviceRect> X11Screens::nativeFrames() {
    std::vector<DeviceRect> frames;
    for (const Screen& screen : list()) {
        frames.push_back(screen.nativeFrame);
    }
    return frames;
}

bool X11Screens::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if (tellsOfScreens(*event)) {
        noteChange();
    } else if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t*>(event)->window ==
                   m_server.root()) {
        // Docks come and go with the window manager's lists; only what they reserve may differ.
        m_stale = true;
    }
    return false;
}

bool X11Screens::tellsOfScreens(const xcb_generic_event_t& event) const {
    const int type = event.response_type & 0x7f;
    if (type == XCB_CONFIGURE_NOTIFY) {
        return reinterpret_cast<const xcb_configure_notify_event_t&>(event).window ==
               m_server.root();
    }
    return m_firstRandrEvent >= 0 && (type == m_firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                      type == m_firstRandrEvent + XCB_RANDR_NOTIFY);
}

void X11Screens::noteChange() {
    m_stale = true;
    // Qt takes its own notice of the change first, from which the scale factors come.
    m_announcement.start(0);
}

void X11Screens::announceChange() {
    // Somebody may have read the new list before it is announced, so that the last one announced is
    // what counts.
    m_stale = true;
    if (list() != m_announced) {
        m_announced = m_list;
        Q_EMIT changed();
    }
}

} // namespace snapvane::x11
