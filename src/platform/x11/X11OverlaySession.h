#pragma once

#include "platform/x11/CompositorWatch.h"
#include "platform/x11/MotionGate.h"
#include "platform/x11/OverlayKeyboard.h"
#include "platform/x11/SubwindowRedirection.h"
#include "platform/x11/X11InputGrab.h"
#include "platform/x11/X11OverlaySurface.h"

#include "base/MainLoopWatchdog.h"

#include <QAbstractNativeEventFilter>

namespace snapvane::x11 {

/// One selection on the glass: its surfaces, its grab, and what comes in through them. Opened by
/// X11OverlayHost, owned by the client; main thread, Qt's connection.
class X11OverlaySession : public OverlaySession, public QAbstractNativeEventFilter {
public:
    using Surfaces = std::vector<std::unique_ptr<X11OverlaySurface>>;

    /// `retire` takes the surfaces over when they may not go at once.
    X11OverlaySession(const Server& server, const OverlayOptions& options, OverlayClient& client,
                      xcb_cursor_t cursor, std::function<void(Surfaces)> retire);
    ~X11OverlaySession() override;

    void orderFront() override;
    void repaint(std::size_t screenIndex, const QRegion& region) override;
    void conceal() override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    bool isOurs(xcb_window_t window) const;
    bool handleInput(const xcb_ge_generic_event_t& event);
    void handlePointer(const xcb_input_button_press_event_t& event);
    void handleButton(const xcb_input_button_press_event_t& event, DevicePoint position);
    void deliverMotion(DevicePoint position);
    OverlayPointerEvent pointerEvent(OverlayPointerEvent::Kind kind, DevicePoint position) const;
    void handleKey(const xcb_input_key_press_event_t& event);
    void handleExpose(const xcb_expose_event_t& event);
    void selectInput(xcb_window_t window);
    void schedulePaint();
    void paintAll();

    Server m_server;
    ScreenList m_screens;
    OverlayClient& m_client;
    xcb_cursor_t m_cursor;
    std::uint8_t m_inputOpcode = 0;
    bool m_translucent = false;
    std::function<void(Surfaces)> m_retire;
    std::optional<SubwindowRedirection> m_redirection;
    Surfaces m_surfaces;
    OverlayKeyboard m_keyboard;
    bool m_primaryDown = false;
    MotionGate m_motion;
    bool m_paintScheduled = false;
    QObject m_context;
    MainLoopWatchdog m_watchdog;
    std::unique_ptr<X11InputGrab> m_grab;
    std::optional<CompositorWatch> m_compositorWatch;
};

} // namespace snapvane::x11
