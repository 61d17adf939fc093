#include "platform/x11/PanelWindow.h"

#include <QWidget>

#include <array>

namespace snapvane::x11::PanelWindow {

namespace {

Qt::WindowFlags windowFlags(PanelInput input) {
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                            Qt::NoDropShadowWindowHint;
    if (input != PanelInput::PointerAndKeyboard) {
        flags |= Qt::WindowDoesNotAcceptFocus;
    }
    if (input == PanelInput::ClickThrough) {
        flags |= Qt::WindowTransparentForInput;
    }
    return flags;
}

} // namespace

void prepare(QWidget& content, const QString& name, PanelInput input, bool translucent) {
    content.setWindowFlags(windowFlags(input));
    content.setWindowTitle(name);
    content.setAttribute(Qt::WA_ShowWithoutActivating);
    content.setAttribute(Qt::WA_TranslucentBackground, translucent);
    content.winId();
    setWindowIdentity(qtServer(), of(content), name.toUtf8());
}

xcb_window_t of(const QWidget& content) {
    return static_cast<xcb_window_t>(content.internalWinId());
}

void place(QWidget& content, const Screen& screen, PixelPoint corner) {
    // Qt takes the scale from the screen that it believes the window to be on: the one whose
    // unscaled corner, in its logical coordinates, the window is moved near to.
    const DevicePoint& origin = screen.nativeFrame.origin;
    content.move(origin.x + qRound(corner.x / screen.backingScale),
                 origin.y + qRound(corner.y / screen.backingScale));
    const DeviceRect target = ScreenMapping::deviceRect(screen, {corner.x, corner.y, 1, 1});
    const std::array<std::uint32_t, 2> values = {static_cast<std::uint32_t>(target.origin.x),
                                                 static_cast<std::uint32_t>(target.origin.y)};
    xcb_configure_window(qtServer().connection, of(content),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values.data());
}

} // namespace snapvane::x11::PanelWindow
