#pragma once

#include "platform/ScreenPanel.h"
#include "platform/Screens.h"
#include "platform/x11/BorrowedFocus.h"
#include "platform/x11/CompositorWatch.h"

#include "base/MainLoopWatchdog.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace snapvane::x11 {

class RootGrabber;

/// A window of Qt's as large as its screen, or a little larger where Qt cannot say the size in its
/// rounded coordinates, and cut to the screen then. Made by X11Panels, owned by the caller; main
/// thread, Qt's connection.
class X11ScreenPanel : public ScreenPanel {
public:
    X11ScreenPanel(RootGrabber& grabber, const ScreenList& screens,
                   std::unique_ptr<QWidget> content, const Screen& screen,
                   const ScreenPanelOptions& options);
    ~X11ScreenPanel() override;
    X11ScreenPanel(const X11ScreenPanel&) = delete;
    X11ScreenPanel& operator=(const X11ScreenPanel&) = delete;

    const QImage& backdrop() const override { return m_backdrop; }
    bool fades() const override { return m_translucent; }
    void setOpacity(double opacity) override;
    void orderFront() override;
    void takeFocus() override;
    bool hasFocus() const override;

private:
    xcb_window_t window() const;
    void cutToScreen();
    void conceal();

    Screen m_screen;
    ScreenPanelOptions m_options;
    bool m_translucent;
    QImage m_backdrop;
    std::unique_ptr<QWidget> m_content;
    std::optional<CompositorWatch> m_compositorWatch;
    std::unique_ptr<BorrowedFocus> m_focus;
    // A hang must not leave the user with a covered screen.
    MainLoopWatchdog m_watchdog;
};

} // namespace snapvane::x11
