#include "platform/x11/X11OverlaySession.h"

#include "base/Log.h"

#include <QCoreApplication>
#include <QPointer>

namespace snapvane::x11 {

namespace {

constexpr std::uint32_t primaryButton = 1;

const Log& overlayLog() {
    static const Log log("Overlay");
    return log;
}

} // namespace

X11OverlaySession::X11OverlaySession(const Server& server, const OverlayOptions& options,
                                     OverlayClient& client, xcb_cursor_t cursor,
                                     std::function<void(Surfaces)> retire)
    : m_server(server), m_screens(options.screens), m_client(client), m_cursor(cursor),
      m_retire(std::move(retire)), m_keyboard(server),
      m_motion(server, [this](DevicePoint position) { deliverMotion(position); }) {
    m_inputOpcode = xcb_get_extension_data(server.connection, &xcb_input_id)->major_opcode;
    // Every window keeps its pixels from here on, so that the screen is restored the moment the
    // surfaces go, without anybody having to paint.
    m_redirection.emplace(server);
    m_translucent = CompositorWatch::showsTransparency(server);
    for (const Screen& screen : m_screens) {
        m_surfaces.push_back(
            std::make_unique<X11OverlaySurface>(server, screen, options, m_translucent, cursor));
        selectInput(m_surfaces.back()->window());
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    xcb_flush(server.connection);
}

void X11OverlaySession::orderFront() {
    for (const auto& surface : m_surfaces) {
        surface->show();
    }
    m_grab = std::make_unique<X11InputGrab>(m_server, m_cursor, [this](const QString& reason) {
        m_client.overlayInputRefused(reason);
    });
    m_motion.setWindow(m_grab->window());
    m_compositorWatch.emplace(m_server, m_grab->window(), m_translucent, [this] {
        overlayLog().notice(QStringLiteral("Compositing was turned on or off during a selection."));
        m_client.overlayOutdated();
    });
    xcb_flush(m_server.connection);
}

X11OverlaySession::~X11OverlaySession() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
    m_compositorWatch.reset();
    m_grab.reset();
    if (hasCompositor(m_server)) {
        // A compositor that fades windows out keeps the last picture it has of them, so that the
        // concealed surfaces go only when it has certainly seen them move away.
        m_retire(std::move(m_surfaces));
    }
    m_surfaces.clear();
    m_redirection.reset();
    // Whoever grabs next does so on another connection; the server must have come this far.
    roundTrip(m_server);
}

void X11OverlaySession::repaint(std::size_t screenIndex, const QRegion& region) {
    m_surfaces.at(screenIndex)->markDirty(region);
    m_surfaces[screenIndex]->paint(screenIndex, m_client);
    xcb_flush(m_server.connection);
}

void X11OverlaySession::conceal() {
    for (const auto& surface : m_surfaces) {
        surface->conceal();
    }
    xcb_flush(m_server.connection);
}

bool X11OverlaySession::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_GE_GENERIC) {
        return handleInput(*reinterpret_cast<const xcb_ge_generic_event_t*>(event));
    }
    if (type == XCB_CLIENT_MESSAGE) {
        return m_motion.handle(*reinterpret_cast<const xcb_client_message_event_t*>(event));
    }
    if (type == XCB_EXPOSE) {
        const auto& expose = *reinterpret_cast<const xcb_expose_event_t*>(event);
        if (isOurs(expose.window)) {
            handleExpose(expose);
            return true;
        }
    }
    return false;
}

bool X11OverlaySession::isOurs(xcb_window_t window) const {
    const bool surface = std::any_of(m_surfaces.begin(), m_surfaces.end(),
                                     [window](const auto& s) { return s->window() == window; });
    return surface || (m_grab && m_grab->window() == window);
}

bool X11OverlaySession::handleInput(const xcb_ge_generic_event_t& event) {
    if (event.extension != m_inputOpcode) {
        return false;
    }
    switch (event.event_type) {
    case XCB_INPUT_BUTTON_PRESS:
    case XCB_INPUT_BUTTON_RELEASE:
    case XCB_INPUT_MOTION: {
        const auto& pointer = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
        if (!isOurs(pointer.event)) {
            return false;
        }
        handlePointer(pointer);
        return true;
    }
    case XCB_INPUT_KEY_PRESS: {
        const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
        if (!isOurs(key.event)) {
            return false;
        }
        handleKey(key);
        return false; // A hot key works during a selection as well.
    }
    default:
        return false;
    }
}

void X11OverlaySession::handlePointer(const xcb_input_button_press_event_t& event) {
    if (event.root != m_server.root()) {
        return; // The pointer is on another X screen of the same server.
    }
    // Positions come as 16.16 fixed point; the whole part is the pixel.
    const DevicePoint position = {event.root_x >> 16, event.root_y >> 16};
    if (event.event_type == XCB_INPUT_MOTION) {
        m_motion.note(position);
    } else if (event.detail == primaryButton) {
        handleButton(event, position);
    }
}

void X11OverlaySession::handleButton(const xcb_input_button_press_event_t& event,
                                     DevicePoint position) {
    using Kind = OverlayPointerEvent::Kind;
    const bool pressed = event.event_type == XCB_INPUT_BUTTON_PRESS;
    if (pressed || m_primaryDown) {
        // Where the button went down or up is what counts; motion before it is over.
        m_motion.forget();
    }
    const QPointer<QObject> self(&m_context);
    if (!pressed && m_primaryDown) {
        m_client.overlayPointerEvent(pointerEvent(Kind::Dragged, position));
    }
    if (self) {
        m_primaryDown = pressed;
        m_client.overlayPointerEvent(pointerEvent(pressed ? Kind::Down : Kind::Up, position));
    }
}

void X11OverlaySession::deliverMotion(DevicePoint position) {
    m_client.overlayPointerEvent(pointerEvent(m_primaryDown ? OverlayPointerEvent::Kind::Dragged
                                                            : OverlayPointerEvent::Kind::Moved,
                                              position));
}

OverlayPointerEvent X11OverlaySession::pointerEvent(OverlayPointerEvent::Kind kind,
                                                    DevicePoint position) const {
    return {kind, ScreenMapping::pointerPlace(m_screens, position)};
}

void X11OverlaySession::handleKey(const xcb_input_key_press_event_t& event) {
    m_client.overlayKeyEvent(
        m_keyboard.translate(event.detail, event.mods.effective, event.group.effective));
}

void X11OverlaySession::handleExpose(const xcb_expose_event_t& event) {
    for (const auto& surface : m_surfaces) {
        if (surface->window() == event.window) {
            surface->markExposed(QRect(event.x, event.y, event.width, event.height));
        }
    }
    schedulePaint();
}

void X11OverlaySession::selectInput(xcb_window_t window) {
    // Until the grab is there, what happens on the surfaces themselves arrives this way.
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const selection = {{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                         XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS |
                             XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                             XCB_INPUT_XI_EVENT_MASK_MOTION | XCB_INPUT_XI_EVENT_MASK_KEY_PRESS};
    xcb_input_xi_select_events(m_server.connection, window, 1, &selection.head);
}

void X11OverlaySession::schedulePaint() {
    if (m_paintScheduled) {
        return;
    }
    m_paintScheduled = true;
    // The server tells of one lost region in several events; they are painted together.
    QMetaObject::invokeMethod(
        &m_context, [this] { paintAll(); }, Qt::QueuedConnection);
}

void X11OverlaySession::paintAll() {
    m_paintScheduled = false;
    for (std::size_t i = 0; i < m_surfaces.size(); ++i) {
        m_surfaces[i]->paint(i, m_client);
    }
    xcb_flush(m_server.connection);
}

} // namespace snapvane::x11
